// Rich text (RTF 1) to headings, paragraphs, lists and tables: the subset that help texts need and
// that word processors write for it. What it does not know it skips. No Qt.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ladderwise {

/// How deep groups may stand in each other; what lies deeper is skipped.
inline constexpr int MaxRtfDepth = 200;
/// Bytes of text that a document may grow to; the rest is dropped.
inline constexpr std::size_t MaxRtfText = 4u << 20;

/// A stretch of text of one look. UTF-8; '\n' is a line break, '\t' a tabulator.
struct RtfRun {
    std::string Text;
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool Code = false;  ///< a font of fixed pitch
    int Script = 0;     ///< 1 raised, -1 lowered
    std::string Link;   ///< target as written, "DCFilt.rtf#tanks" or "#keys"; empty: no link

    /// The same in everything but the text.
    bool LooksLike(const RtfRun& other) const;
};

enum class RtfBlockKind { Paragraph, Heading, ListItem, TableRow };

/// A paragraph or one row of a table.
struct RtfBlock {
    RtfBlockKind Kind = RtfBlockKind::Paragraph;
    int Level = 0;  ///< heading: 1 for the highest; table row: 1 for a row of headings
    std::vector<std::string> Bookmarks{};           ///< that stand in it
    std::vector<std::vector<RtfRun>> Cells = {{}};  ///< one but for a table row

    /// The text of all cells, without looks.
    std::string PlainText() const;
};

struct RtfDocument {
    bool IsRtf = false;  ///< the bytes begin as rich text does
    std::string Title;   ///< of the document's information; may be empty
    std::vector<RtfBlock> Blocks{};
};

/// Reads any bytes; what is no rich text gives an empty document. Bytes from 128 up and \'hh are
/// Windows-1252. Understood: \par \line \tab \plain \pard \b \i \ul \super \sub \outlinelevel,
/// fonts of fixed pitch, \u with \uc, quotes and dashes, bullets (\pntext, \listtext), rows and
/// cells of tables, bookmarks, HYPERLINK fields, the title. Source: Microsoft, "Rich Text Format
/// (RTF) Specification", version 1.9.1.
RtfDocument ReadRtf(std::string_view bytes);

}  // namespace ladderwise
