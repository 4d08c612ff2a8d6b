// Limits into the document, and their files.
#include "app/LimitCommands.h"

#include <utility>

#include "app/DesignSession.h"
#include "app/FileCommands.h"
#include "design/LadderNumbers.h"
#include "files/DiskFile.h"
#include "limits/LimitTable.h"

namespace ladderwise {

namespace {

constexpr std::size_t MaxLimitBytes = 1u << 20;  ///< of a table of limits

}  // namespace

LimitActions LimitCommands::Actions() {
    return {[this](const LimitLines& lines) { session.ChangeLimits(lines); }, [this] { Open(); },
            [this] { Save(); }, [this] { return Promise(); }};
}

/// Of a response without ripple it takes a search, and the window asks whenever something is drawn.
const DesignPromise& LimitCommands::Promise() {
    const FilterDesign& design = session.Document.Work.Design;
    std::vector<double> now = LadderNumbers(design);
    now.insert(now.end(), {design.RippleDb, static_cast<double>(design.ResponseType)});
    if (SameLadderNumbers(now, promised)) return promise;
    promised = std::move(now);
    return promise = PromiseOf(session.Document.Work);
}

void LimitCommands::Open() {
    const std::string path = files.ChooseLimits();
    if (path.empty()) return;
    const FileContent file = ReadRegularFile(path, MaxLimitBytes);
    if (!file.Error.empty()) return report("Error", file.Error);
    const LimitTable table = ReadLimitTable(file.Bytes);
    if (!table.Error.empty()) return report("Error", path + ": " + table.Error);
    session.ChangeLimits(table.Lines);
}

void LimitCommands::Save() {
    const std::string path = files.NameForLimits();
    if (path.empty()) return;
    const std::string error = WriteWholeFile(path, LimitTableText(session.Document.Limits));
    if (!error.empty()) report("Error", error);
}

}  // namespace ladderwise
