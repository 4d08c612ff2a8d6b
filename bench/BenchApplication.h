// One offscreen application object for all measurements that need fonts, images or widgets.
#pragma once

#include <QApplication>

#include "resources/Resources.h"

namespace ladderwise {

/// Makes the application object at the first call; it lives as long as the program.
inline void NeedApplication() {
    static int argc = 1;
    static char name[] = "bench";
    static char* argv[] = {name, nullptr};
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication application(argc, argv);
    InitResources();
}

}  // namespace ladderwise
