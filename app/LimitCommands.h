// The commands about limits: those of the window, and tables of them from and to files.
#pragma once

#include "design/Messages.h"
#include "windows/LimitsWindow.h"

namespace ladderwise {

class DesignSession;
class FileCommands;

class LimitCommands {
public:
    /// `report` is the window's, which tests replace.
    LimitCommands(DesignSession& session, FileCommands& files, const MessageCallback& report)
        : session(session), files(files), report(report) {}

    /// What the window of the limits does.
    LimitActions Actions();

private:
    void Open();
    void Save();
    const DesignPromise& Promise();

    DesignSession& session;
    FileCommands& files;
    const MessageCallback& report;
    std::vector<double> promised;  ///< what the promise was made of
    DesignPromise promise;
};

}  // namespace ladderwise
