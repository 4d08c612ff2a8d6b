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

#include "app/pipeline/NamedSettings.h"
#include "app/pipeline/PlotQuantities.h"
#include "cli/Arguments.h"
#include "cli/JsonOutput.h"

namespace ladderwise {
namespace {

TEST(Arguments, WhatIsAskedFor) {
    const Arguments none = ParseArguments({});
    EXPECT_TRUE(none.Table);
    EXPECT_TRUE(none.Error.empty());
    const Arguments all = ParseArguments({"--set", "f0=1=2", "--json", "-", "--set",
                                          "bw=", "--plot", "a b.png", "--size", "200x16384"});
    EXPECT_TRUE(all.Error.empty()) << all.Error;
    EXPECT_FALSE(all.Table);
    EXPECT_EQ(all.JsonFile, "-");
    EXPECT_EQ(all.PlotFile, "a b.png");
    EXPECT_EQ(all.Width, 200);
    EXPECT_EQ(all.Height, 16384);
    const std::vector<std::pair<std::string, std::string>> settings = {{"f0", "1=2"}, {"bw", ""}};
    EXPECT_EQ(all.Settings, settings);
    EXPECT_TRUE(ParseArguments({"--json", "x", "--table"}).Table);
    EXPECT_TRUE(ParseArguments({"-h"}).Help);
}

TEST(Arguments, UsageErrors) {
    const struct {
        std::vector<std::string> Words;
        const char* Named;  ///< stands in the error
    } cases[] = {{{"--jsn", "x"}, "\"--json\""},
                 {{"table"}, "\"--table\""},
                 {{""}, "unknown option \"\""},
                 {{"--set"}, "--set needs a value"},
                 {{"--json", ""}, "--json needs a value"},
                 {{"--set", "f0"}, "NAME=VALUE"},
                 {{"--size", "1280"}, "WIDTHxHEIGHT"},
                 {{"--size", "199x300"}, "WIDTHxHEIGHT"},
                 {{"--size", "300x16385"}, "WIDTHxHEIGHT"},
                 {{"--size", "x300"}, "WIDTHxHEIGHT"},
                 {{"--size", "300x"}, "WIDTHxHEIGHT"},
                 {{"--size", "300x300x"}, "WIDTHxHEIGHT"},
                 {{"--size", "99999999999x300"}, "WIDTHxHEIGHT"}};
    for (const auto& c : cases)
        EXPECT_NE(ParseArguments(c.Words).Error.find(c.Named), std::string::npos)
            << ParseArguments(c.Words).Error;
}

TEST(Settings, UnknownNamesAndWordsNameTheNearest) {
    const struct {
        const char *Name, *Value, *Nearest;
    } cases[] = {{"f1", "1", "f0"},
                 {"riple", "1", "ripple"},
                 {"R-Source", "1", "r-source"},
                 {"pass", "lowpass", "low-pass"},
                 {"pass", "low-pass-prototyp", "low-pass-prototype"},
                 {"response", "butterwort", "butterworth"},
                 {"response", "Bessel-Freq", "bessel-freq"},
                 {"form", "clcl", "clc"},
                 {"sweep", "3octaves", "3-octaves"},
                 {"parts", "idea", "ideal"},
                 {"std", "offf", "off"},
                 {"cap-tol", "12", "1"},
                 {"ind-tol", "100", "10"},
                 {"worst-case", "onn", "on"},
                 {"traces", "mag10,gdd", "gd"},
                 {"traces", "mag10,,gd", "gd"}};
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

TEST(Settings, EveryWordOfTheHelpIsAcceptedAndInUse) {
    const std::string lists[] = {"pass", "response", "form", "sweep", "parts", "std", "worst-case"};
    for (const SettingHelp& help : SettingsHelp()) {
        EXPECT_NE(UsageText().find("\n  " + help.Name + " "), std::string::npos);
        if (std::find(std::begin(lists), std::end(lists), help.Name) == std::end(lists)) continue;
        for (std::size_t start = 0; start < help.Values.size();) {
            const std::size_t end = std::min(help.Values.find(", ", start), help.Values.size());
            const std::string word = help.Values.substr(start, end - start);
            start = end + 2;
            auto calculation = std::make_unique<Calculation>();
            EXPECT_FALSE(ApplySetting(*calculation, help.Name, word, {})) << word;
            for (const SettingInUse& setting : SettingsInUse(*calculation)) {
                if (setting.Name != help.Name) continue;
                EXPECT_EQ(std::get<std::string>(setting.Value), word);
            }
        }
    }
}

using Settings = std::vector<std::pair<std::string, std::string>>;

std::string JsonOf(Calculation& calculation, const Settings& settings) {
    std::vector<RecordedMessage> messages;
    const MessageCallback record = [&](const std::string& caption, const std::string& text) {
        messages.push_back({caption, text});
    };
    for (const auto& [name, value] : settings)
        EXPECT_FALSE(ApplySetting(calculation, name, value, record)) << name;
    ReadInputs(calculation.Inputs, calculation.Design, record);
    const auto quantities = std::make_unique<DisplayQuantities>();
    Calculate(calculation, record, [&](int run) {
        if (run == 0) DerivePlotQuantities(calculation, run, *quantities, record);
    });
    return JsonText(calculation, *quantities, messages);
}

QJsonObject ParsedJson(const std::string& text) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError)
        << error.errorString().toStdString() << " at " << error.offset;
    return document.object();
}

TEST(Json, MembersTypesAndCounts) {
    Calculation calculation;
    const QJsonObject json = ParsedJson(JsonOf(calculation, {{"pass", "band-pass"},
                                                             {"poles", "4"},
                                                             {"worst-case", "on"},
                                                             {"runs", "3"},
                                                             {"seed", "4294967295"},
                                                             {"traces", "gd,pulse"}}));
    const QJsonObject inputs = json["inputs"].toObject();
    for (const SettingHelp& help : SettingsHelp())
        EXPECT_TRUE(inputs.contains(QString::fromStdString(help.Name))) << help.Name;
    EXPECT_EQ(inputs["f0"].toDouble(), 200e6);
    EXPECT_EQ(inputs["seed"].toDouble(), 4294967295.0);
    EXPECT_EQ(inputs["traces"].toString(), "gd,pulse");
    EXPECT_EQ(json["form"].toString(), "clc");
    EXPECT_EQ(json["r_load"].toDouble(), 50.0);
    for (const char* const list :
         {"sweep_hz", "transfer", "reflection_db", "magnitude_db", "phase_deg", "group_delay_s"})
        EXPECT_EQ(json[QLatin1String(list)].toArray().size(), 1024) << list;
    EXPECT_TRUE(json.contains("pulse"));
    EXPECT_EQ(json["worst_case"]["runs"].toInt(), 3);
    EXPECT_EQ(json["worst_case"]["low_db"].toArray().size(), 1024);

    const FilterDesign& design = calculation.Design;
    for (int i : {0, 511, 1023}) {  // 17 digits: the very same doubles
        EXPECT_EQ(json["sweep_hz"][i].toDouble(), design.SweepFreqs[i]);
        EXPECT_EQ(json["transfer"][i][0].toDouble(), design.Response.TransferRe[i]);
        EXPECT_EQ(json["transfer"][i][1].toDouble(), design.Response.TransferIm[i]);
    }
    const QJsonArray elements = json["elements"].toArray();
    ASSERT_EQ(elements.size(), 4);
    for (int k = 0; k < 4; ++k) {
        const QJsonObject element = elements[k].toObject();
        EXPECT_EQ(element["slot"].toInt(), k + 1);
        EXPECT_EQ(element["type"].toString(), k % 2 == 0 ? "ShuntParLC" : "SeriesSerLC");
        EXPECT_EQ(element["V2"].toDouble(), design.Elements[k + 1].V2);
        EXPECT_TRUE(element["V3"].isNull());
        EXPECT_TRUE(element["V4"].isNull());
    }
    EXPECT_TRUE(json["phase_deg"][0].isNull());  // deep in the stop band: blank
    EXPECT_TRUE(json["phase_deg"][512].isDouble());
}

TEST(Json, WhatIsNoNumberIsNull) {
    Calculation calculation;
    JsonOf(calculation, {});
    FilterDesign& design = calculation.Design;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    design.Elements[1] = {ElementType::ShuntSerParLC, std::nan(""), 9.9e47, infinity, 1e47};
    design.Elements[2] = {ElementType::SeriesInd, -infinity, 1e-12, 1e-9, 1e-12};
    design.Response.TransferRe[7] = std::nan("");
    design.Response.ReflectionDb[7] = -infinity;
    const auto quantities = std::make_unique<DisplayQuantities>();
    quantities->PhaseDeg = {BlankMarker, std::nan(""), 0.0};
    quantities->GroupDelay = {BlankMarker, -2e-9};
    const QJsonObject json = ParsedJson(JsonText(calculation, *quantities, {}));
    const QJsonValue first = json["elements"][0], second = json["elements"][1];
    for (const char* const name : {"V1", "V2", "V3"})
        EXPECT_TRUE(first[QLatin1String(name)].isNull()) << name;
    EXPECT_EQ(first["V4"].toDouble(), 1e47);
    for (const char* const name : {"V1", "V2", "V3", "V4"})
        EXPECT_TRUE(second[QLatin1String(name)].isNull()) << name;
    EXPECT_TRUE(json["transfer"][7][0].isNull());
    EXPECT_TRUE(json["reflection_db"][7].isNull());
    EXPECT_TRUE(json["phase_deg"][0].isNull());
    EXPECT_TRUE(json["phase_deg"][1].isNull());
    EXPECT_EQ(json["phase_deg"][2].toDouble(-1), 0.0);
    EXPECT_TRUE(json["group_delay_s"][0].isNull());
    EXPECT_EQ(json["group_delay_s"][1].toDouble(), -2e-9);
}

TEST(Json, TypedTextsOfAnyBytesStayReadable) {
    const QString bad(QChar(0xfffd));
    const struct {
        std::string Typed;
        QString Shown;
    } cases[] = {
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
    for (const auto& c : cases) {
        Calculation calculation;
        const QJsonObject json = ParsedJson(JsonOf(calculation, {{"r-source", c.Typed}}));
        const QJsonObject note = json["notes"].toArray().first().toObject();
        EXPECT_EQ(note["kind"].toString(), "replaced");
        EXPECT_EQ(note["name"].toString(), "r-source");
        EXPECT_EQ(note["typed"].toString(), c.Shown) << c.Shown.toStdString();
        EXPECT_EQ(note["in_use"].toString(), "50");
        EXPECT_EQ(note["colour"].toString(), "silver");
    }
}

TEST(Json, MessagesAreListed) {
    Calculation calculation;
    const QJsonObject json = ParsedJson(JsonOf(calculation, {{"response", "coefficients"}}));
    const QJsonArray messages = json["messages"].toArray();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0]["caption"].toString(), "Error");
    EXPECT_EQ(messages[0]["text"].toString(), "The file read failed. \n Defaulted to Butterworth");
    EXPECT_TRUE(json["notes"].toArray().isEmpty());
}

}  // namespace
}  // namespace ladderwise
