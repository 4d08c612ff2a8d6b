// The parts of the console program: arguments, settings by name and the JSON text, which is judged
// by another reader of JSON.
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "cli/Arguments.h"
#include "cli/JsonOutput.h"
#include "pipeline/NamedSettings.h"

namespace ladderwise {
namespace {

TEST(Arguments, UsageErrors) {
    // clang-format off
    const struct { std::vector<std::string> Words; const char* Named; } cases[] = {
        {{"--jsn", "x"}, "\"--json\""}, {{""}, "unknown option \"\""},
        {{"--set"}, "--set needs a value"}, {{"--json", ""}, "--json needs a value"},
        {{"--set", "f0"}, "NAME=VALUE"}, {{"--size", "1280"}, "WIDTHxHEIGHT"},
        {{"--size", "199x300"}, "WIDTHxHEIGHT"}, {{"--size", "300x16385"}, "WIDTHxHEIGHT"},
        {{"--size", "x300"}, "WIDTHxHEIGHT"}, {{"--size", "300x300x"}, "WIDTHxHEIGHT"},
        {{"--size", "99999999999x300"}, "WIDTHxHEIGHT"}};
    // clang-format on
    for (const auto& c : cases)
        EXPECT_NE(ParseArguments(c.Words).Error.find(c.Named), std::string::npos)
            << ParseArguments(c.Words).Error;
}

TEST(Settings, UnknownNamesAndWordsNameTheNearest) {
    // clang-format off
    const struct { const char *Name, *Value, *Nearest; } cases[] = {
        {"f1", "1", "f0"}, {"riple", "1", "ripple"}, {"R-Source", "1", "r-source"},
        {"pass", "low-pass-prototyp", "low-pass-prototype"}, {"form", "clcl", "clc"},
        {"response", "Bessel-Freq", "bessel-freq"}, {"sweep", "3octaves", "3-octaves"},
        {"parts", "idea", "ideal"}, {"std", "offf", "off"}, {"cap-tol", "12", "10"},
        {"ind-tol", "100", "10"}, {"worst-case", "onn", "on"}, {"traces", "mag10,gdd", "gd"},
        {"traces", "mag10,,gd", "gd"}};
    // clang-format on
    const auto fresh = std::make_unique<Calculation>();
    for (const auto& c : cases) {
        auto calculation = std::make_unique<Calculation>();
        const auto reason = ApplySetting(*calculation, c.Name, c.Value, {});
        ASSERT_TRUE(reason) << c.Name << "=" << c.Value;
        EXPECT_NE(reason->find("\"" + std::string(c.Nearest) + "\""), std::string::npos) << *reason;
        const auto inUse = SettingsInUse(*calculation), before = SettingsInUse(*fresh);
        for (std::size_t i = 0; i < inUse.size(); ++i)
            EXPECT_EQ(inUse[i].Value, before[i].Value) << inUse[i].Name << " was changed";
    }
    for (const char* const seed : {"", "x", "-1", "1.5", "4294967296"})
        EXPECT_TRUE(ApplySetting(*std::make_unique<Calculation>(), "seed", seed, {})) << seed;
}

using Settings = std::vector<std::pair<std::string, std::string>>;

std::string JsonOf(Calculation& calculation, const Settings& settings) {
    std::vector<RecordedMessage> messages;
    const MessageCallback record = [&](const std::string& caption, const std::string& text) {
        messages.push_back({caption, text});
    };
    for (const auto& [name, value] : settings)
        EXPECT_FALSE(ApplySetting(calculation, name, value, record)) << name;
    Calculate(calculation, record);
    return JsonText(calculation, messages);
}

QJsonObject ParsedJson(const std::string& text) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError)
        << error.errorString().toStdString() << " at " << error.offset;
    return document.object();
}

TEST(Json, NortonValues) {
    Calculation calculation;
    const QJsonObject json = ParsedJson(JsonOf(calculation, {{"pass", "norton"}, {"a", "1.5"}}));
    const QJsonObject norton = json["norton"].toObject();
    EXPECT_TRUE(norton["A"] == 1.5 && norton["K"] == 2.0 && norton["M"] == 1.0);
    EXPECT_EQ(norton["capacitors"].toArray().size(), 8);
    EXPECT_EQ(norton["inductors"][1], json["elements"][4]["V1"]);
}

TEST(Json, MembersTypesAndCounts) {
    Calculation calculation;
    const Settings settings = {
        {"response", "coefficients"}, {"pass", "band-pass"}, {"poles", "4"},
        {"worst-case", "on"},         {"runs", "3"},         {"seed", "4294967295"},
        {"traces", "gd,pulse"},       {"gd-scale", "2e-9"}};
    const QJsonObject json = ParsedJson(JsonOf(calculation, settings));
    EXPECT_EQ(json["messages"][0]["caption"].toString(), "Error");
    EXPECT_TRUE(json["messages"][0]["text"].toString().contains("read failed. \n Default"));
    const QJsonObject inputs = json["inputs"].toObject();
    for (const SettingHelp& help : SettingsHelp()) {
        EXPECT_TRUE(inputs.contains(QString::fromStdString(help.Name))) << help.Name;
        EXPECT_NE(UsageText().find("\n  " + help.Name + " "), std::string::npos);
    }
    for (const auto& [name, word] : {settings[1], settings[3]})
        EXPECT_EQ(inputs[QString::fromStdString(name)].toString().toStdString(), word);
    EXPECT_TRUE(inputs["gd-scale"].isDouble());  // no longer "auto"
    EXPECT_EQ(inputs["seed"].toDouble(), 4294967295.0);
    EXPECT_EQ(inputs["traces"].toString(), "gd,pulse");
    for (const char* const list :
         {"sweep_hz", "transfer", "reflection_db", "magnitude_db", "phase_deg", "group_delay_s"})
        EXPECT_EQ(json[QLatin1String(list)].toArray().size(), 1024) << list;
    EXPECT_EQ(json["worst_case"]["runs"].toInt(), 3);
    EXPECT_EQ(json["worst_case"]["low_db"].toArray().size(), 1024);

    const FilterDesign& design = calculation.Design;
    for (int i : {0, 511, 1023}) {  // 17 digits: the very same doubles
        EXPECT_EQ(json["sweep_hz"][i].toDouble(), design.SweepFreqs[i]);
        EXPECT_EQ(json["transfer"][i][0].toDouble(), design.Response.TransferRe[i]);
        EXPECT_EQ(json["transfer"][i][1].toDouble(), design.Response.TransferIm[i]);
    }
    ASSERT_EQ(json["elements"].toArray().size(), 4);
    const QJsonValue element = json["elements"][1];
    EXPECT_EQ(element["slot"].toInt(), 2);
    EXPECT_EQ(element["type"].toString(), "SeriesSerLC");
    EXPECT_EQ(element["V2"].toDouble(), design.Elements[2].V2);
    EXPECT_TRUE(element["V3"].isNull());
    EXPECT_TRUE(json["phase_deg"][0].isNull());  // deep in the stop band: blank
    EXPECT_TRUE(json["phase_deg"][512].isDouble());
}

TEST(Json, EllipticResults) {
    Calculation calculation;
    const Settings settings = {
        {"response", "elliptic-c"}, {"poles", "2"}, {"ripple", "0.1"}, {"atten", "40"}};
    const QJsonValue lowPass = ParsedJson(JsonOf(calculation, settings))["elliptic"];
    EXPECT_EQ(lowPass["attenuation_used_db"].toDouble(), 40);
    EXPECT_NEAR(lowPass["trap_hz"][1].toDouble() / 200e6, 1.35070677736, 1e-10);
    EXPECT_NEAR(lowPass["passband_edge_hz"].toDouble() / 200e6, 0.91941508804, 1e-10);
    EXPECT_NEAR(lowPass["stopband_edge_hz"].toDouble() / 200e6, 1.30337901587, 1e-10);
    const QJsonObject notch = ParsedJson(JsonOf(calculation, {{"pass", "notch"}}));
    EXPECT_EQ(notch["elliptic"]["trap_hz"].toArray().size(), 4);
    EXPECT_EQ(notch["elliptic"]["stopband_edge_hz"].toArray().size(), 2);
    EXPECT_FALSE(ParsedJson(JsonOf(calculation, {{"response", "gauss"}})).contains("elliptic"));
}

TEST(Json, WhatIsNoNumberIsNull) {
    Calculation calculation;
    JsonOf(calculation, {});
    FilterDesign& design = calculation.Design;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    design.Elements[1] = {ElementType::ShuntSerParLC, std::nan(""), 9.9e47, infinity, 1e47};
    design.Response.TransferRe[7] = std::nan("");
    design.Response.ReflectionDb[7] = -infinity;
    calculation.Quantities.PhaseDeg = {BlankMarker, std::nan(""), 0.0};
    calculation.Quantities.GroupDelay = {BlankMarker, -2e-9};
    const QJsonObject json = ParsedJson(JsonText(calculation, {}));
    const QJsonValue first = json["elements"][0];
    for (const QJsonValue& none :
         {first["V1"], first["V2"], first["V3"], json["transfer"][7][0], json["reflection_db"][7],
          json["phase_deg"][0], json["phase_deg"][1], json["group_delay_s"][0]})
        EXPECT_TRUE(none.isNull());
    EXPECT_EQ(first["V4"].toDouble(), 1e47);
    EXPECT_EQ(json["phase_deg"][2].toDouble(-1), 0.0);
    EXPECT_EQ(json["group_delay_s"][1].toDouble(), -2e-9);
}

TEST(Json, TypedTextsOfAnyBytesStayReadable) {
    const QString bad(QChar(0xfffd));
    const std::pair<std::string, QString> cases[] = {
        {"say \"5\"", "say \"5\""},
        {"back\\slash", "back\\slash"},
        {std::string("\x01\t\r\n\x1f\x7f\0z", 8), QString::fromLatin1("\x01\t\r\n\x1f\x7f\0z", 8)},
        {"5 \xce\xa9 \xf0\x9f\x93\xbb", QString::fromUtf8("5 \xce\xa9 \xf0\x9f\x93\xbb")},
        {"\xff", bad},
        {"a\xc3", "a" + bad},                         // cut off
        {"\xc0\xaf", bad + bad},                      // overlong
        {"\xe0\x80\xaf", bad + bad + bad},            // overlong
        {"\xed\xa0\x80", bad + bad + bad},            // a surrogate
        {"\xf4\x90\x80\x80", bad + bad + bad + bad},  // beyond U+10FFFF
        {"\x80z", bad + "z"}};
    for (const auto& [typed, shown] : cases) {
        Calculation calculation;
        const std::string text = JsonOf(calculation, {{"r-source", typed}});
        EXPECT_EQ(text.find('\x1f'), std::string::npos);  // some readers would take it
        const QJsonObject json = ParsedJson(text);
        const QJsonObject note = json["notes"].toArray().first().toObject();
        EXPECT_EQ(note["kind"].toString(), "replaced");
        EXPECT_EQ(note["name"].toString(), "r-source");
        EXPECT_EQ(note["typed"].toString(), shown) << typed;
        EXPECT_EQ(note["in_use"].toString(), "50");
        EXPECT_EQ(note["colour"].toString(), "silver");
    }
}

}  // namespace
}  // namespace ladderwise
