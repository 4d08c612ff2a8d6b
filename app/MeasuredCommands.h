// The commands about measured data: files that are added, taken away, read again or shown in
// another way.
#pragma once

#include <string>
#include <vector>

#include "design/MeasuredFile.h"
#include "design/Messages.h"
#include "windows/MeasuredWindow.h"

namespace ladderwise {

class DesignSession;
class FileCommands;
class SecondaryWindows;

class MeasuredCommands {
public:
    /// `report` is the window's, which tests replace.
    MeasuredCommands(DesignSession& session, FileCommands& files, const MessageCallback& report)
        : session(session), files(files), report(report) {}

    /// What the window of the measured files does.
    MeasuredActions Actions();

    /// Adds files (UTF-8, full paths) to those shown with the design. Those that cannot be used are
    /// named with their lines and reasons, and nothing is changed for them.
    void Add(const std::vector<std::string>& paths);

private:
    void Change(const MeasuredFiles& changed);
    void ReadAgain();

    DesignSession& session;
    FileCommands& files;
    const MessageCallback& report;
};

}  // namespace ladderwise
