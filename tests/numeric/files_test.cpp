// File formats: the design record to the byte, coefficients files, the settings file.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "files/CoefficientsFile.h"
#include "files/FileReadSave.h"
#include "files/Settings.h"
#include "support.h"

using namespace ladderwise;

namespace {

std::string Int32(int value) {
    const auto bits = static_cast<unsigned>(value);
    return {char(bits), char(bits >> 8), char(bits >> 16), char(bits >> 24)};
}

/// A record of `size` bytes with header values put in by hand.
std::string File(std::size_t size, int structSize, int major, int minor) {
    std::string bytes = EncodeRecord({});
    bytes.resize(size);
    return bytes.replace(268, 12, Int32(major) + Int32(minor) + Int32(structSize));
}

/// The field's line in the documents.
std::string DocumentedRow(const RecordField& field) {
    const char* const types[] = {"int32", "double", "text ", "UTF-16 ", "unused "};
    const bool number = field.Type == RecordType::Int32 || field.Type == RecordType::Double;
    std::ostringstream row;
    row << "\n| " << field.Offset << " | " << types[static_cast<int>(field.Type)];
    if (!number || field.Count > 1) row << (number ? " x " : "") << field.Count;
    row << " | " << field.Name << " | ";
    number ? row << field.Default : row << field.DefaultText;
    row << " | " << field.Meaning << " |\n";
    return row.str();
}

}  // namespace

TEST(DesignRecord, FieldsLieEdgeToEdge) {
    std::ifstream file(LADDERWISE_TEST_DATA "/../../docs/files.md");
    const std::string docs{std::istreambuf_iterator<char>(file), {}};
    int offset = 0;
    for (const RecordField& field : RecordFields()) {
        EXPECT_NE(docs.find(DocumentedRow(field)), std::string::npos) << DocumentedRow(field);
        EXPECT_EQ(field.Offset, offset) << field.Name;
        EXPECT_EQ(FindField(field.Name), &field);
        EXPECT_LT(std::string(field.DefaultText).size(), static_cast<std::size_t>(TextBytes));
        EXPECT_TRUE(field.Type != RecordType::Double || offset % 8 == 0) << field.Name;
        offset += SizeOf(field);
    }
    EXPECT_EQ(offset, FILT_STRUCT_SIZE);
    EXPECT_EQ(FindField("TLIN")->Offset, OLDER_STRUCT_SIZE);
    const std::string bytes = EncodeRecord({});
    EXPECT_EQ(bytes.substr(0, 6), std::string("T\0a\0r\0", 6));
    EXPECT_EQ(bytes.substr(268, 12), Int32(2) + Int32(2) + Int32(3448));
    EXPECT_EQ(bytes.substr(296, 8), std::string("\0\0\0\0\x84\xd7\xa7\x41", 8));  // 200e6
}

TEST(DesignRecord, AcceptsExactlyTheKnownSizesAndVersions) {
    std::string otherProgram = EncodeRecord({}), longerName = otherProgram;
    otherProgram[2] = 'A';
    longerName[38] = '!';
    const struct {
        std::string Bytes;
        bool Accepted;
    } cases[] = {
        {File(3448, 3448, 2, 2), true},
        {File(3447, 3448, 2, 2), false},
        {File(3449, 3448, 2, 2), false},
        {File(2680, 2680, 2, 2), true},
        {File(2680, 3448, 2, 2), false},
        {File(3448, 2680, 2, 2), false},
        {File(2680, 2680, 1, 1), true},
        {File(300, 300, 2, 2), false},
        {File(3448, 3448, 2, -2), true},
        {File(3448, 3448, 2, 3), false},
        {File(3448, 3448, 2, -3), false},
        {File(3448, 3448, 2, -2147483647 - 1), false},
        {File(3448, 3448, 1, -1), true},
        {File(3448, 3448, 1, 2), false},
        {File(3448, 3448, 1, -2), false},
        {File(3448, 3448, 3, 0), false},
        {File(3448, 3448, 0, 0), false},
        {otherProgram, false},
        {longerName, false},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(DecodeRecord(cases[i].Bytes).has_value(), cases[i].Accepted) << "case " << i;
}

TEST(DesignRecord, KeepsWhatFitsAndTamesTheRest) {
    DesignRecord record;
    record.Number("F0") = 1.0 / 3.0;
    record.Number("TankValue10") = 7;
    record.Number("NumPoles") = 1e99;
    record.Number("RL") = NaN;
    record.Text("PassItem") = std::string(40, 'x');
    record.Number("GDPhaseThreshold") = 15;
    RefreshRecord(record, {});
    std::string bytes = EncodeRecord(record);
    const auto read = DecodeRecord(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->Number("F0"), 1.0 / 3.0);
    EXPECT_EQ(read->Number("TankValue10"), 7);
    EXPECT_EQ(read->Number("NumPoles"), 2147483647);
    EXPECT_EQ(read->Number("RL"), 50);
    EXPECT_EQ(read->Text("PassItem"), std::string(31, 'x'));
    EXPECT_EQ(read->Number("GDPhaseThreshold"), -15);
    // An older file ends before the tanks; a text may fill its field.
    bytes.replace(424, 32, std::string(32, 'y')).resize(2680);
    const auto older = DecodeRecord(bytes.replace(276, 4, Int32(2680)));
    ASSERT_TRUE(older);
    EXPECT_EQ(older->Number("TankValue10"), 50);
    EXPECT_EQ(older->Text("PassItem"), std::string(32, 'y'));
}

TEST(CoefficientsFile, Reads) {
    const auto result = ReadCoefficients(
        "\xef\xbb\xbf# a comment\r\n\r\n 2 ,\t1.5, +2e-1 # more\r3; 1,25; 2,5;0.5;9;;\n"
        "11,1,1,1,1,1,1,1,1,1,1,1");
    ASSERT_EQ(result.Error, "");
    EXPECT_FALSE(HasOrder(result.Rows, 1));
    EXPECT_EQ(result.Rows[2][1], 0.2);
    EXPECT_EQ(result.Rows[3][0], 1.25);
    EXPECT_EQ(result.Rows[3][3], 9);
    const std::pair<const char*, const char*> faults[] = {
        {"", "The file has no row of g-values."},
        {"1,2\n\n3,1,2", "Line 3: order 3 needs 3 values, but the row has 2."},
        {"2,1,-1", "Line 1: g2 is no positive number: \"-1\"."},
        {"2,,1", "Line 1: g1 is no positive number: \"\"."},
        {"1,nan", "Line 1: g1 is no positive number: \"nan\"."},
        {"1,1e999", "Line 1: g1 is no positive number: \"1e999\"."},
        {"1,0x1", "Line 1: g1 is no positive number: \"0x1\"."},
        {"1,2\n1,2", "Line 2: order 1 stands in line 1 already."},
        {"13,1", "Line 1: the row starts with \"13\" instead of an order from 1 to 12."},
        {"1.0,1", "Line 1: the row starts with \"1.0\" instead of an order from 1 to 12."},
        {"1,1,1,1,1,1,1,1,1,1,1,1,1,1", "Line 1: the row has 13 values, more than 12."}};
    for (const auto& [text, message] : faults)
        EXPECT_EQ(ReadCoefficients(text).Error, message);
}

TEST(SettingsFile, LosesOnlyDamagedLines) {
    std::vector<std::string> messages;
    const auto record = [&](const std::string&, const std::string& text) {
        messages.push_back(text);
    };
    ProgramSettings settings{VersionText(), "Here for FileReadSave.cpp", "20.0", false, {}};
    for (const char* path : {"/e", "/d", "/a , b/c", "/b", "/a", "/a , b/c"})
        settings.Recent.Add(path);
    const std::string text = SettingsText(settings);
    EXPECT_EQ(
        text,
        "1 , Version 2.2 , Version String\n10 , Here for FileReadSave.cpp , Sampling Frequency\n"
        "12 , 20.0 , Plot Threshold\n30 , 1 , Mouse Read Out Menu\n50 , /a , b/c , Previous File\n"
        "50 , /a , Previous File\n50 , /b , Previous File\n50 , /d , Previous File\n");
    ProgramSettings read;
    ReadSettingsText(text, read, record);
    EXPECT_EQ(SettingsText(read), text);
    ReadSettingsText("1 , x , y\n" + text.substr(0, text.find("30")), read, record);
    EXPECT_EQ(messages, std::vector<std::string>{"Incomplete ini File"});
    EXPECT_EQ(SettingsText(read), text);
    ReadSettingsText("12 , 7 , k\r\n99 , a , b\n50 , /cut\n\x01\n50 , /z , k", read, record);
    EXPECT_EQ(messages.back(), "Error on INI File Read function. \nHave an invalid identifier.");
    EXPECT_EQ(messages.size(), 2u);
    EXPECT_EQ(read.Threshold, "7");
    EXPECT_EQ(read.Recent.Paths().front(), "/z");
    // Blank lines are no settings.
    const std::string four = "12 , 8 , k\n\n\n30 , 0 , k\n \n1 , v , k\n10 , s , k\n\n";
    EXPECT_FALSE(ReadSettingsText(four, read, record));
    EXPECT_TRUE(ReadSettingsText(four + "50 , /y , k", read, record));
    EXPECT_EQ(read.Threshold + read.Recent.Paths()[0], "8/y");
}

TEST(SettingsFile, KeepsTheThresholdWhateverTheLocale) {
    for (const char written : {'.', ','})
        for (const char reading : {'.', ','})
            for (const bool older : {false, true}) {  // files once had the separator of the locale
                ProgramSettings settings, read;
                settings.Threshold = std::string("25") + written + "5";
                std::string text;
                {
                    const SeparatorScope scope(written);
                    text = SettingsText(settings);
                }
                EXPECT_NE(text.find("12 , 25.5 , "), std::string::npos);
                if (older) text.replace(text.find("25.5"), 4, settings.Threshold);
                const SeparatorScope scope(reading);
                ReadSettingsText(text, read, {});
                double value = 0.0;
                EXPECT_TRUE(TryParseDouble(read.Threshold, value));
                EXPECT_EQ(value, 25.5);
            }
}

TEST(RecentFiles, ShortensLongPaths) {
    const std::string middle(40, 'm');
    const std::pair<std::string, std::string> cases[] = {
        {"/home/me/x.tk_ldfilt", "/home/me/x.tk_ldfilt"},
        {"/home/me/" + middle + "/designs/x.tk_ldfilt", "/home/ ... /designs/x.tk_ldfilt"},
        {"C:\\Users\\" + middle + "\\x.tk_ldfilt", "C:\\Users\\ ... \\x.tk_ldfilt"},
        {"/home/" + middle + middle, "/home/ ... " + middle.substr(3)},
        {middle + middle, " ... " + middle + "mmm"},
    };
    for (const auto& [path, caption] : cases)
        EXPECT_EQ(ShortenedPath(path), caption);
}
