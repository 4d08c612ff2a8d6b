// The button that opens the help at a window's own page.
#pragma once

#include <QString>

class QPushButton;
class QWidget;

namespace ladderwise {

/// The help texts; each secondary window opens its own.
enum class HelpPage { Start, DirectCoupled, Transform };

inline constexpr int NumHelpPages = 3;

/// What shows the help: a window somewhere below the main window.
class HelpShower {
public:
    virtual ~HelpShower() = default;

    /// Shows a page, at a bookmark or at its start, and brings the window to the front.
    virtual void ShowPage(HelpPage page, const QString& bookmark) = 0;
};

/// A button "Help" named `name` for a window of which the main window is an ancestor, as it is of
/// the help window.
QPushButton* NewHelpButton(QWidget* parent, const char* name, HelpPage page,
                           const QString& bookmark = {});

}  // namespace ladderwise
