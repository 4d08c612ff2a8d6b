// Fuzzes the reader of design files, and what opening does with a record: what is accepted survives
// being written and read again, and the calculation comes to its end with each pass type. One
// opening settles a record: a second one changes nothing any more.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "pipeline/Notes.h"
#include "pipeline/SavedDesigns.h"

using namespace ladderwise;

namespace {

constexpr std::size_t headerBytes = 280;
constexpr double mostRuns = 2;  ///< of a worst case, for speed

DesignRecord Opened(const DesignRecord& record) {
    const auto calculation = std::make_unique<Calculation>();
    LoadRecord(record, *calculation);
    Calculate(*calculation, [](const std::string&, const std::string&) {});
    CollectNotes(*calculation);
    DescribeStatus(*calculation);
    return RecordOf(*calculation);
}

void Calculated(DesignRecord& record, std::size_t pass) {
    double& runs = record.Number("WorstCaseSims");
    runs = std::min(runs, mostRuns);
    const auto& passes = TableOf(ChoiceId::Pass).Rows;
    if (pass < passes.size()) record.Text("PassItem") = passes[pass].Component;
    const DesignRecord once = Opened(record);
    if (!SameDesign(Opened(once), once)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes{reinterpret_cast<const char*>(data), size};
    auto record = DecodeRecord(bytes);
    if (!record) {  // its rest behind a good header, so that every input gets to the calculation
        std::string file = EncodeRecord({});
        const auto rest = bytes.substr(std::min(size, headerBytes), file.size() - headerBytes);
        record = DecodeRecord(file.replace(headerBytes, rest.size(), rest));
        if (!record) std::abort();
    }
    for (const auto& [name, values] : record->Numbers)
        for (const double value : values)
            if (!std::isfinite(value)) std::abort();
    RefreshRecord(*record, {});
    const std::string again = EncodeRecord(*record);
    const auto reread = DecodeRecord(again);
    if (!reread || EncodeRecord(*reread) != again) std::abort();
    Calculated(*record, size > 0 ? data[size - 1] % 8 : 0);
    return 0;
}
