// Design files and coefficients files of the console program.
#include "cli/DesignFiles.h"

#include "files/CoefficientsFile.h"
#include "files/DiskFile.h"
#include "pipeline/SavedDesigns.h"

namespace ladderwise {

std::string OpenDesignFile(Calculation& calculation, const std::string& path) {
    // One byte more than a record has: a longer file must not pass for one.
    const FileContent file = ReadWholeFile(path, FILT_STRUCT_SIZE + 1);
    if (!file.Error.empty()) return file.Error;
    const auto record = DecodeRecord(file.Bytes);
    if (!record) return path + ": " + IncompatibleFileText;
    LoadRecord(*record, calculation);
    return {};
}

std::string SaveDesignFile(const Calculation& calculation, const std::string& path,
                           const MessageCallback& report) {
    DesignRecord record = RecordOf(calculation);
    RefreshRecord(record, report);
    return WriteWholeFile(path, EncodeRecord(record));
}

std::string UseCoefficientsFile(Calculation& calculation, const std::string& path) {
    const FileContent file = ReadWholeFile(path, MaxCoefficientsBytes + 1);
    if (!file.Error.empty()) return file.Error;
    const std::string fault = UseCoefficients(calculation, file.Bytes);
    return fault.empty() ? fault : path + ": " + fault;
}

}  // namespace ladderwise
