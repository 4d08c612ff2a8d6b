// The button that opens the help at a window's own page.
#pragma once

#include "windows/HelpWindow.h"

class QPushButton;

namespace ladderwise {

/// A button "Help" named `name` for a window of which the main window is an ancestor, as it is of
/// the help window.
QPushButton* NewHelpButton(QWidget* parent, const char* name, HelpPage page,
                           const QString& bookmark = {});

}  // namespace ladderwise
