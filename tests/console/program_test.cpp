// The console program as its users run it: exit codes, standard error, locale and files.
#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>

namespace {

struct Outcome {
    int ExitCode = -1;
    QByteArray Out, Error;
};

/// Windows takes the form of numbers from the user's account, not from LC_ALL.
#ifdef Q_OS_WIN
constexpr bool ChoosesLocale = false;
#else
constexpr bool ChoosesLocale = true;
#endif

/// Runs the program to its end; `locale` is LC_ALL.
Outcome Launch(const QStringList& arguments, const QString& locale = "C") {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", locale);
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    // Fonts and the toolkit keep what they have loaded; only errors of memory count here.
    environment.insert("ASAN_OPTIONS", "detect_leaks=0");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(LADDERWISE_CLI, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << arguments.join(' ').toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput(),
            process.readAllStandardError().replace("\r\n", "\n")};
}

TEST(Program, ExitCodesAndStandardError) {
    const QTemporaryDir folder;
    const QString nowhere = folder.filePath("no/such/folder/file");
    QFile table(folder.filePath("3.csv"));
    ASSERT_TRUE(table.open(QIODevice::WriteOnly));
    table.write("3,1,2,1\n");
    table.close();
    const QString given = "coefficients=" + table.fileName();
    // clang-format off
    // The last one stands on standard error; empty: nothing does.
    const struct { QStringList Arguments; int ExitCode; QByteArray Error; } cases[] = {
        {{}, 0, ""},
        {{"--help"}, 0, ""},
        {{"--version"}, 0, ""},
        {{"--set", "ripple=\x1b[31m"}, 0, "Ripple \"\\x1b[31m\" is no number"},
        {{"--set", "f0=1", "--set", "bw=0.5", "--json", "-"}, 0, ""},
        {{"--set", "pass=notch", "--set", "f0=145.825", "--set", "bw=400"}, 0,
         "Bandwidth 400 MHz is above 290.19175 MHz: 290.19175 MHz used."},
        {{"--set", "r-load=2e6", "--set", "response=bessel-freq"}, 0,
         "R Load 2e6 ohm is above 1000000 ohm: 1000000 ohm used."},
        {{"--set", "ripple=9"}, 0, "ladderwise-cli: Ripple 9 dB is above 1 dB: 1 dB used.\n"},
        {{"--set", "pass=norton", "--set", "response=elliptic-a"}, 0,
         "ladderwise-cli: Program Info: Direct Coupled and Norton Transform filters can't use"},
        {{"--set", "response=chebyshev", "--set", "poles=4"}, 0, "R Load was moved to "},
        // What became of an entry comes first, before what the calculation has to say.
        {{"--set", "pass=norton", "--set", "r-load=60", "--set", "ripple=9"}, 0, "\nladderwise-cli: Error: Error: R_Load"},
        {{"--set", "coefficients=" + nowhere}, 2, "cannot read"},
        {{"--set", "coefficients=" LADDERWISE_CLI}, 2, "The file is too large."},
        {{"--set", given, "--set", "poles=5"}, 0, "has no order 5, only order 3: this is a Butterworth"},
        {{"--set", given}, 0, ""},
        {{"--json", nowhere}, 1, "cannot write " + nowhere.toLocal8Bit()},
        {{"--plot", nowhere + ".png"}, 1, "cannot write " + nowhere.toLocal8Bit()},
        {{"--plot", folder.filePath("plot.gif")}, 1, "a plot is a .png, .svg or .pdf file"},
        {{"--frob"}, 2, "unknown option \"--frob\""},
        {{"--set", "f1=3"}, 2, "the nearest valid one is \"f0\""},
        {{"--size", "0x0"}, 2, "--size takes"},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Arguments.join(' ').toStdString());
        const Outcome outcome = Launch(c.Arguments);
        EXPECT_EQ(outcome.ExitCode, c.ExitCode);
        EXPECT_TRUE(c.Error.isEmpty() ? outcome.Error.isEmpty() : outcome.Error.contains(c.Error))
            << outcome.Error.toStdString();
        EXPECT_EQ(outcome.Out.isEmpty(), c.ExitCode != 0);
    }
}

TEST(Program, TheTableIsTheDefault) {
    const Outcome table = Launch({"--table"});
    EXPECT_TRUE(table.Out.startsWith("3 Pole Butterworth LPF\nFo 200.00 MHz, "));
    // 1 / (2 pi 200 MHz 50 ohm) and 2 x 50 ohm / (2 pi 200 MHz).
    EXPECT_TRUE(table.Out.contains("C1 to ground    C1 = 15.915 pF"));
    EXPECT_TRUE(table.Out.contains("L2 in the line  L2 = 79.577 nH"));
    EXPECT_FALSE(table.Out.contains("bandwidth"));
    EXPECT_TRUE(table.Out.contains("attenuation at 2 Fo       18.13 dB"));  // 10 log10(1 + 2^6)
    EXPECT_EQ(Launch({}).Out, table.Out);
    EXPECT_TRUE(Launch({"--set", "r-load=25"}).Out.contains("ask for the form"));
    const QStringList traps = {"--set", "response=elliptic-c", "--set", "poles=2"};
    EXPECT_TRUE(Launch(traps).Out.contains("\ntraps                     467.73 MHz, 308.95 MHz\n"));
    EXPECT_FALSE(Launch({"--json", "-"}).Out.contains("Pole"));
}

TEST(Program, JudgesTheLimitsOfAFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("need.csv"), broken = folder.filePath("broken.csv");
    const auto write = [](const QString& name, const char* text) {
        QFile file(name);
        return file.open(QIODevice::WriteOnly) && file.write(text) > 0;
    };
    ASSERT_TRUE(
        write(path, "kind,from_mhz,to_mhz,value\natten-max,0,200,3.1\natten-min,400,600,18\n"));
    ASSERT_TRUE(write(broken, "kind,from_mhz,to_mhz,value\natten-min,400,300,18\n"));
    const QJsonObject json =
        QJsonDocument::fromJson(Launch({"--limits", path, "--json", "-"}).Out).object();
    EXPECT_TRUE(json["limits"]["met"].toBool());
    const QJsonValue stop = json["limits"]["rows"][1];
    EXPECT_EQ(stop["kind"].toString(), "atten-min");
    EXPECT_NEAR(stop["margin"].toDouble(), 10.0 * std::log10(65.0) - 18.0, 1e-9);
    EXPECT_EQ(stop["at_hz"].toDouble(), 400e6);
    const QByteArray table = Launch({"--limits", path}).Out;
    EXPECT_TRUE(
        table.contains("attenuation at least 18 dB from 400 MHz to 600 MHz: "
                       "holds by 0.13 dB at 400 MHz\n"))
        << table.toStdString();
    const Outcome refused = Launch({"--limits", broken});
    EXPECT_EQ(refused.ExitCode, 2);
    EXPECT_TRUE(refused.Error.contains("broken.csv: line 2: it ends below its beginning"));
}

TEST(Program, ListsFiltersWithTheSettingsThatMakeThem) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("need.csv");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("kind,from_mhz,to_mhz,value\natten-max,28,30,0.8\natten-min,56,60,30\n");
    file.close();
    const QStringList asked = {"--set", "parts=real", "--limits", path, "--choose", "4"};
    const QByteArray text = Launch(asked + QStringList{"--json", "-"}, "de_DE.UTF-8").Out;
    const QJsonObject json = QJsonDocument::fromJson(text).object();
    const QJsonArray choices = json["choices"].toArray();
    ASSERT_EQ(choices.size(), 4);
    EXPECT_TRUE(json["nearest_misses"].toArray().isEmpty());
    for (const auto& item : choices) {
        const QJsonValue row = item;
        QStringList words = {"--json", "-"};
        const QJsonObject set = row["set"].toObject();
        for (auto setting = set.begin(); setting != set.end(); ++setting)
            words += {"--set",
                      setting.key() + "=" +
                          (setting->isString() ? setting->toString()
                                               : QString::number(setting->toDouble(), 'g', 17))};
        const Outcome made = Launch(words);
        EXPECT_EQ(made.ExitCode, 0) << made.Error.toStdString();
        EXPECT_EQ(QJsonDocument::fromJson(made.Out)["elements"], row["elements"]);
        EXPECT_GT(row["margin_db"].toDouble(), 0.0);
        EXPECT_GT(row["passing_share"].toDouble(), 0.0);
    }
    EXPECT_TRUE(Launch(asked).Out.contains("Fewest parts at the load that is set: "));
    for (const QStringList& unfit :
         {QStringList{"--choose", "4"}, {"--only", "std"}, {"--limits", path, "--choose", "5001"}})
        EXPECT_EQ(Launch(unfit).ExitCode, 2);
}

TEST(Program, JsonKeepsItsPointInACommaLocale) {
    if (!ChoosesLocale) GTEST_SKIP() << "no locale of its own";
    const QStringList design = {"--set", "f0=145.825", "--json", "-"};
    const Outcome point = Launch(design), comma = Launch(design, "de_DE.UTF-8");
    EXPECT_EQ(point.Out, comma.Out);
    const QJsonObject json = QJsonDocument::fromJson(comma.Out).object();
    EXPECT_NEAR(json["inputs"]["f0"].toDouble(), 145.825e6, 1e-6);
    // What is typed and what people read does follow the locale.
    const Outcome typed = Launch({"--set", "f0=145,834"}, "de_DE.UTF-8");
    EXPECT_TRUE(typed.Out.contains("Fo 145,83 MHz")) << typed.Out.toStdString();
    EXPECT_TRUE(typed.Error.isEmpty());
}

TEST(Program, JsonTextsKeepTheirPointToo) {
    if (!ChoosesLocale) GTEST_SKIP() << "no locale of its own";
    const char* const designs[][5] = {
        {"response=chebyshev", "poles=4", "r-load=75.5", "ripple=5.5", "f0=-1.5"},
        {"pass=direct-coupled", "bw=3.3", "f0=145.825", "tank-values=,,9999", "tlin=0.5"},
        {"response=elliptic-c", "atten=5.5", "worst-case=on", "runs=2", "seed=3"},
    };
    for (const auto& design : designs) {
        QStringList point, comma;
        for (const QString setting : design) {
            point << "--set" << setting;
            comma << "--set" << QString(setting).replace('.', ',');
        }
        EXPECT_EQ(Launch(point + QStringList{"--json", "-"}).Out,
                  Launch(comma + QStringList{"--json", "-"}, "de_DE.UTF-8").Out);
    }
}

TEST(Program, PlotsInThreeFormats) {
    const QTemporaryDir folder;
    const struct {
        const char *Name, *Start;
    } cases[] = {{"plot.png", "\x89PNG"}, {"plot.SVG", "<?xml"}, {"plot.pdf", "%PDF"}};
    for (const auto& c : cases) {
        const QString path = folder.filePath(c.Name);
        const Outcome outcome =
            Launch({"--plot", path, "--size", "640x480", "--set", "worst-case=on", "--set",
                    "runs=2", "--set", "traces=mag10,gd,rl"});
        EXPECT_EQ(outcome.ExitCode, 0) << outcome.Error.toStdString();
        EXPECT_TRUE(outcome.Out.isEmpty());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << c.Name;
        EXPECT_TRUE(file.read(8).startsWith(c.Start)) << c.Name;
        EXPECT_GT(file.size(), 1000);
    }
}

}  // namespace
