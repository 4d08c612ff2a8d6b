// A help text as the help window shows it: rich text made a page, its headings for the list of
// contents, and a page that says why there is none.
#pragma once

#include <QString>
#include <vector>

#include "files/RtfReader.h"

namespace ladderwise {

struct HelpHeading {
    int Level;  ///< 1 for the highest
    QString Text;
    QString Anchor;  ///< within its page
};

/// A page ready to be shown; Problem is empty but for one that cannot be read.
struct HelpText {
    QString Title;
    QString Html;
    QString Plain;  ///< all words, for searching
    std::vector<HelpHeading> Headings{};
    QString Problem{};
};

/// The page that a document makes. Headings get the anchors "h0", "h1" and so on, bookmarks those
/// of their names.
HelpText HelpTextOf(const RtfDocument& document);

/// Reads the file `name` of `folder`; a missing, unreadable, foreign or empty one gives a page that
/// tells so, with Problem set.
HelpText LoadHelpText(const QString& folder, const QString& name);

}  // namespace ladderwise
