// One offscreen application object for all measurements that need fonts, images or widgets.
#pragma once

#include <QApplication>

#include "resources/Resources.h"

namespace ladderwise {

/// Makes the application object at the first call. It is never destroyed: at the end of the program
/// other static objects of the toolkit may be gone already.
inline void NeedApplication() {
    static int argc = 1;
    static char name[] = "bench";
    static char* argv[] = {name, nullptr};
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static auto* const application = new QApplication(argc, argv);
    Q_UNUSED(application);
    InitResources();
}

}  // namespace ladderwise
