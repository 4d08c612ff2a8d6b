// The design file: one record of fixed size, as named numbers and texts and as bytes. The table
// below is the whole format; reading and writing walk through it. No Qt, no disk.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "design/Messages.h"

namespace ladderwise {

inline constexpr int FILT_STRUCT_SIZE = 3448;   ///< bytes of a design file
inline constexpr int OLDER_STRUCT_SIZE = 2680;  ///< bytes of the design files of version 1
inline constexpr int DesignVersionMajor = 2;
inline constexpr int DesignVersionMinor = 2;
inline constexpr const char* DesignFileExtension = "tk_ldfilt";
/// What the user is told of a file that is no design file.
inline constexpr const char* IncompatibleFileText =
    "Open File operation failed due to an incompatibility with this program.";

/// How a field stands in the file. Numbers are little-endian.
enum class RecordType {
    Int32,     ///< two's complement, 4 bytes
    Double,    ///< IEEE 754 binary64, 8 bytes
    Text,      ///< ASCII with a terminating zero in TextBytes bytes
    WideText,  ///< UTF-16 with a terminating zero
    Unused     ///< zero bytes
};
inline constexpr int TextBytes = 32;

/// One field of the record.
struct RecordField {
    int Offset;
    RecordType Type;
    int Count;  ///< numbers: how many stand one after the other; texts and unused: bytes
    const char* Name;
    double Default;           ///< of every number, as in a fresh program
    const char* DefaultText;  ///< of a text
    const char* Meaning;      ///< with the unit
};

/// Every field, by offset, without gaps: the last one ends the record.
const std::vector<RecordField>& RecordFields();

/// The field of a name; null if there is none.
const RecordField* FindField(std::string_view name);

/// Bytes that a field takes.
int SizeOf(const RecordField& field);

/// A record by name. Every field of the table has its entry; whole numbers are kept as doubles.
struct DesignRecord {
    std::map<std::string, std::vector<double>, std::less<>> Numbers;
    std::map<std::string, std::string, std::less<>> Texts;

    /// A record with the defaults of the table.
    DesignRecord();

    /// Names that the table does not have are errors of the program: std::out_of_range.
    double& Number(std::string_view name, std::size_t index = 0);
    double Number(std::string_view name, std::size_t index = 0) const;
    std::string& Text(std::string_view name);
    const std::string& Text(std::string_view name) const;
};

/// Sets identification, version and size as a written record has them and makes the phase and
/// group-delay threshold a level at or below 0 dB. Reports "FILT_STRUCT_SIZE not set correctly" if
/// the table has drifted from the file size.
void RefreshRecord(DesignRecord& record, const MessageCallback& report);

/// "Version 2.2", as the settings file keeps it.
std::string VersionText();

/// The FILT_STRUCT_SIZE bytes of a record. Numbers that an Int32 cannot hold are brought into its
/// range, texts are cut to their field.
std::string EncodeRecord(const DesignRecord& record);

/// The record of the bytes of a whole file; nothing if it is rejected: it must have the right size
/// (or the older one, whose fields past OLDER_STRUCT_SIZE keep their defaults), identification and
/// version. Nothing in an accepted record is out of hand: numbers that are not finite are the
/// field's default, texts end where their field ends.
std::optional<DesignRecord> DecodeRecord(std::string_view bytes);

}  // namespace ladderwise
