// Measured files into the document.
#include "app/MeasuredCommands.h"

#include <algorithm>
#include <utility>

#include "app/DesignSession.h"
#include "app/FileCommands.h"
#include "files/DiskFile.h"
#include "measured/MeasuredDisk.h"

namespace ladderwise {

MeasuredActions MeasuredCommands::Actions() {
    return {[this] { Add(files.ChooseMeasured()); },
            [this](const MeasuredFiles& changed) { Change(changed); }, [this] { ReadAgain(); }};
}

void MeasuredCommands::Add(const std::vector<std::string>& paths) {
    MeasuredFiles& shown = session.Document.Measured;
    std::string faults, remarks;
    bool added = false;
    const auto append = [](std::string& texts, const std::string& text) {
        texts += (texts.empty() ? "" : "\n\n") + text;
    };
    for (const std::string& path : paths) {
        const bool there = std::any_of(shown.begin(), shown.end(),
                                       [&](const MeasuredFile& file) { return file.Path == path; });
        if (there) {
            append(remarks, path + " is shown already.");
            continue;
        }
        MeasuredNetwork network = OpenMeasured(path, ReadRegularFile);
        if (!network.Error.empty()) {
            append(faults, network.Error);
            continue;
        }
        session.Measured().Put(std::move(network));
        shown.push_back(NewMeasuredFile(path, shown));
        added = true;
    }
    if (added) session.Redraw();
    if (!faults.empty()) report("Error", faults);
    if (!remarks.empty()) report("Program Info", remarks);
}

void MeasuredCommands::Change(const MeasuredFiles& changed) {
    session.Document.Measured = changed;
    session.Redraw();
}

void MeasuredCommands::ReadAgain() {
    session.Measured().Clear();
    session.Redraw();
    session.TellMeasuredFaults();
}

}  // namespace ladderwise
