// Measured files from the disk, as window and console open them. QtCore.
#pragma once

#include "files/DiskFile.h"
#include "measured/MeasuredSet.h"

namespace ladderwise {

using FileReader = FileContent (*)(const std::string& path, std::size_t limit);

/// Reads a measured file. A window reads regular files alone: it would wait for a pipe's other end.
MeasuredNetwork OpenMeasured(const std::string& path, FileReader read = ReadWholeFile);

}  // namespace ladderwise
