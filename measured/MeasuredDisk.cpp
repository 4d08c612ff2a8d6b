// From the disk to networks.
#include "measured/MeasuredDisk.h"

#include <utility>

namespace ladderwise {

MeasuredNetwork OpenMeasured(const std::string& path, FileReader read) {
    const FileContent file = read(path, MaxTouchstoneBytes + 1);
    if (!file.Error.empty()) return {path, {}, file.Error};
    TouchstoneResult result = ReadTouchstone(file.Bytes);
    if (!result.Error.empty()) return {path, {}, path + ": " + result.Error};
    return {path, std::move(result.Network), {}};
}

}  // namespace ladderwise
