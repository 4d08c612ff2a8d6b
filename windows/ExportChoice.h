// What the export dialog was asked for last, and that as a line of text for the settings. No Qt.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "display/PictureLayout.h"
#include "exchange/ExportTexts.h"

namespace ladderwise {

/// The kinds of files in the order of the dialog; all but the last are texts.
enum class ExportPage { Touchstone, Netlist, Schematic, Sweep, PartsList, Picture };
inline constexpr std::size_t NumExportPages = 6;

enum class PictureFormat { Png, Svg, Pdf };
inline constexpr std::array PictureEndings = {"png", "svg", "pdf"};

struct ExportChoice {
    ExportPage Page = ExportPage::Touchstone;
    ExportOptions Options{};
    bool OwnPoints = false;  ///< Options.Points in place of the sweep
    bool WithRuns = false;   ///< Options.Runs files beside that of the nominal design
    PictureLook Look{};
    PictureSize Size{};
    PictureFormat Format = PictureFormat::Png;
};

/// The kind of a text; that of the picture is none.
ExportKind KindOf(ExportPage page);

/// The ending of the files of a choice: "s2p", "cir", "asc", "csv", "png" ...
std::string EndingOf(const ExportChoice& choice);

/// One line of words and names with values.
std::string ChoiceText(const ExportChoice& choice);

/// Reads such a line; what is missing, unknown or unfit in it is as in a fresh program.
ExportChoice ReadChoiceText(std::string_view text);

}  // namespace ladderwise
