// The networks of measured files, and what is shown of them beside a design: layers of the plot and
// what there is to say about each file. What reads the disk hands them in. No Qt.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "limits/LimitMargin.h"
#include "measured/MeasuredLayers.h"

namespace ladderwise {

/// A measured network and the file it is from.
struct MeasuredNetwork {
    std::string File;
    NetworkData Network{};
    std::string Error{};  ///< "FILE: line 7: ..."; empty if Network holds the file
};

/// What there is to say about a file, in sentences of its user's units.
struct MeasuredSummary {
    std::string Name;       ///< without its folder
    std::string ShortName;  ///< on the plot
    std::string Data;       ///< "201 points, 10 MHz to 1 GHz, two ports at 50 Ω"; or the fault
    bool IsUsable = true;
    std::vector<std::string>
        Remarks{};  ///< how it is seen, what was not measured, what was changed
};

/// How a file keeps the limits of a design.
struct MeasuredVerdict {
    std::string ShortName;
    LimitReport Report{};
};

class MeasuredSet {
public:
    MeasuredSet();
    ~MeasuredSet();

    void Put(MeasuredNetwork network);
    /// Forgets all of them, to be read again.
    void Clear();
    /// Null for a file that was not put in.
    const MeasuredNetwork* Find(const std::string& path) const;

    /// The layers of the files that are shown and usable, between the terminations of `design` and
    /// with its threshold. They point into this set and live until the next call. What has not
    /// changed since the last call is not calculated anew.
    std::vector<PlotLayer> LayersOf(const MeasuredFiles& files, const FilterDesign& design);

    /// Of the same files how each keeps limits, over its own frequencies.
    std::vector<MeasuredVerdict> Judge(const MeasuredFiles& files, const FilterDesign& design,
                                       const LimitLines& lines);

    /// Of every file, hidden or not.
    std::vector<MeasuredSummary> Describe(const MeasuredFiles& files, const FilterDesign& design);

private:
    struct Shown;  ///< the traces of a file, and what they were calculated from
    Shown& ShownOf(std::size_t index, const MeasuredFile& file, const MeasuredNetwork& network,
                   const FilterDesign& design);

    std::map<std::string, MeasuredNetwork> networks;
    std::vector<std::unique_ptr<Shown>> shown;  ///< by place in the list
};

}  // namespace ladderwise
