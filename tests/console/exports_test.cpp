// Exports, measured files and the companion of a design file, as users of the console meet them.
#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include "cli/Exports.h"
#include "design/Connections.h"

namespace ladderwise {
namespace {

struct Ended {
    int ExitCode;
    QByteArray Out, Error;
};

Ended RunIn(const QTemporaryDir& folder, const QString& arguments) {
    QProcess process;
    process.setWorkingDirectory(folder.path());
    process.start(LADDERWISE_CLI, arguments.split(' ', Qt::SkipEmptyParts));
    EXPECT_TRUE(process.waitForFinished(60000));
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray ContentOf(const QTemporaryDir& folder, const QString& name) {
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Write(const QTemporaryDir& folder, const QString& name, const QByteArray& content) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

TEST(Connections, OfTheElementsInWords) {
    const SlotDesignators names = {"L1", "C2", "L3", "C4"};
    const SlotDesignators stubs = {"TL1", "TL1", "TL2", "TL2"};
    EXPECT_EQ(ConnectionText(ElementType::SeriesLC, names), "parallel L1 C2 in the line");
    EXPECT_EQ(ConnectionText(ElementType::ShuntLC, names), "series L1 C2 to ground");
    EXPECT_EQ(ConnectionText(ElementType::ShuntSerParLC, names),
              "series L1 C2 (parallel L3 C4) to ground");
    EXPECT_EQ(ConnectionText(ElementType::DualSeriesLC, names),
              "parallel L1 C2 in the line, parallel L3 C4 in the line");
    EXPECT_EQ(ConnectionText(ElementType::ShuntTLSCTLOC, stubs),
              "shorted TL1 to ground, open TL2 to ground");
    EXPECT_EQ(ConnectionOfPart(ElementType::DualShuntLC, names, 3), "series L3 C4 to ground");
}

TEST(Exports, ArgumentsThatCannotBeMetEndWithTheirReason) {
    const QTemporaryDir folder;
    Write(folder, "bad.s2p", "! x\n# Hz S RI R 50\n1 0 0 1 0 1 0\n");
    const struct {
        QString Arguments;
        QByteArray Error;
    } cases[] = {
        {"--touchstone a.s2p --touchstone-version 2 --reference 50", "--reference is of version 1"},
        {"--touchstone a.s2p --touchstone-version 3", "takes 1 or 2, not \"3\""},
        {"--touchstone a.s2p --reference -5", "takes a positive number"},
        {"--touchstone a.s2p --from 5 --to 4", "the frequencies end above their start"},
        {"--touchstone a.s2p --touchstone-runs 2", "needs a worst case"},
        {"--netlist a.cir", "--netlist needs --netlist-for"},
        {"--netlist a.cir --netlist-for pspice", "takes ngspice or ltspice"},
        {"--plot a.png --white", "--white needs --picture"},
        {"--picture both", "--picture needs the file name of --plot"},
        {"--plot a.png --size 297x210mm", "--size in mm needs --picture"},
        {"--plot a.png --picture all", "takes plot or schematic or both"},
        {"--measured bad.s2p", "bad.s2p: line 3: 7 numbers"},
        {"--measured none.s2p", "cannot read none.s2p"},
        {"--read-board bad.s2p", "bad.s2p: line 3: 7 numbers"},
        {"--read-board none.s2p --free q,coils", "or none, not \"coils\""},
        {"--free q", "--free needs --read-board"},
    };
    for (const auto& c : cases) {
        const Ended ended = RunIn(folder, c.Arguments);
        EXPECT_EQ(ended.ExitCode, 2) << c.Arguments.toStdString();
        EXPECT_TRUE(ended.Error.contains(c.Error)) << ended.Error.toStdString();
        EXPECT_FALSE(QFile::exists(folder.filePath("a.s2p")));
    }
}

TEST(Exports, AFileOfTheDesignReadsAsItsBoard) {
    const QTemporaryDir folder;
    const QString design = "--set f0=14 --set poles=5 --set parts=real --set ind-q=80";
    RunIn(folder, design + " --touchstone a.s2p --from 1 --to 60 --points 101");
    const Ended ended = RunIn(folder, design + " --read-board a.s2p --json - --free q,ports");
    ASSERT_EQ(ended.ExitCode, 0) << ended.Error.toStdString();
    const QJsonObject board = QJsonDocument::fromJson(ended.Out).object()["board"].toObject();
    EXPECT_TRUE(board["understood"].toBool());
    EXPECT_TRUE(board["hypothesis"].isNull());
    EXPECT_NEAR(board["q"].toDouble(), 80.0, 2.0);
    EXPECT_EQ(board["port_delay_s"].toArray().size(), 2);
    EXPECT_TRUE(board["next"].toArray().isEmpty());
    const QJsonArray parts = board["parts"].toArray();
    ASSERT_EQ(parts.size(), 5);
    for (const QJsonValue& part : parts) {
        const double nominal = part["nominal"].toDouble();
        EXPECT_FALSE(part["undetermined"].toBool());
        EXPECT_NEAR(part["actual"].toDouble(), nominal, 0.003 * nominal);
        EXPECT_LT(part["low"].toDouble(), nominal);
        EXPECT_GT(part["high"].toDouble(), nominal);
    }
    EXPECT_EQ(parts[1]["designator"], "L2");
    EXPECT_EQ(parts[1]["slot"], 2);
    EXPECT_EQ(parts[1]["row"], 0);
    // Another filter's file is no board of this one.
    const Ended foreign = RunIn(folder, "--set f0=14 --set pass=high-pass --read-board a.s2p");
    EXPECT_TRUE(foreign.Out.contains("not understood: wrong schematic, a short, or data out of"));
}

TEST(Exports, TablesForSpreadsheets) {
    const QTemporaryDir folder;
    const Ended ended = RunIn(folder, "--set parts=real --csv a.csv --parts-list p.csv");
    EXPECT_EQ(ended.ExitCode, 0);
    EXPECT_TRUE(ended.Out.isEmpty());
    const QList<QByteArray> rows = ContentOf(folder, "a.csv").split('\n');
    ASSERT_EQ(rows.size(), 1 + 1024 + 1);
    EXPECT_EQ(rows[0],
              "Frequency (Hz),Transfer real,Transfer imaginary,Magnitude (dB),Phase (deg),"
              "Group delay (s),Reflection (dB)\r");
    EXPECT_TRUE(rows[1].startsWith("2e+07,0.971")) << rows[1].toStdString();
    // 15.915 pF is 0.53 % below 16 pF; 0.25 ohm at 200 MHz: Q = 1 / (w C R) = 200.
    const QByteArray part = ContentOf(folder, "p.csv").split('\n')[1];
    EXPECT_TRUE(part.startsWith("C1,capacitor,C1 to ground,15.915 pF,1.591549430918953"));
    EXPECT_TRUE(part.endsWith("e-11,F,,16.000 pF,0.531,5,200,2,\r")) << part.toStdString();
    RunIn(folder, "--parts-list p.csv --csv-separator ;");
    EXPECT_TRUE(ContentOf(folder, "p.csv").contains(";15,915 pF;1,591549430918953"));
}

TEST(Exports, PicturesInMillimetres) {
    const QTemporaryDir folder;
    for (const char* const file : {"a.png", "a.svg", "a.pdf"}) {
        const QString size = " --picture both --white --size 297x210mm";
        EXPECT_EQ(RunIn(folder, "--plot " + QString(file) + size).ExitCode, 0);
    }
    // Width and height of a PNG stand at bytes 16 to 23: 300 pixels to the inch.
    const QByteArray png = ContentOf(folder, "a.png"), svg = ContentOf(folder, "a.svg");
    EXPECT_EQ(png.mid(16, 8).toHex(), "00000db4000009b0");
    EXPECT_TRUE(svg.contains("<svg width=\"297mm\" height=\"210mm\""))
        << svg.left(300).toStdString();
    EXPECT_TRUE(svg.contains(">15.9 pF</text>"));
    EXPECT_TRUE(ContentOf(folder, "a.pdf").contains("/MediaBox [0 0 842"));
}

TEST(Exports, RunsOfAWorstCaseAreTheDrawnOnes) {
    const QTemporaryDir folder;
    const QString arguments =
        "--set worst-case=on --set seed=3 --set runs=3 --touchstone w.s2p "
        "--touchstone-runs 2 --from 200 --to 200 --points 1";
    EXPECT_EQ(RunIn(folder, arguments).ExitCode, 0);
    const QByteArray nominal = ContentOf(folder, "w.s2p"), first = ContentOf(folder, "w-run1.s2p"),
                     second = ContentOf(folder, "w-run2.s2p");
    EXPECT_TRUE(first.contains("\n! Values of worst-case run 1\n# Hz S RI R 50\n200000000 "));
    EXPECT_FALSE(first.contains("edited"));
    EXPECT_NE(nominal.split('\n').last(2), first.split('\n').last(2));
    EXPECT_NE(second.split('\n').last(2), first.split('\n').last(2));
    EXPECT_FALSE(QFile::exists(folder.filePath("w-run3.s2p")));
}

TEST(Exports, MeasuredFilesStandInTheJsonAsRead) {
    const QTemporaryDir folder;
    Write(folder, "two.s2p", "# MHz S RI R 75\n2 .1 0 .2 .5 .3 0 .4 0\n1 0 0 0 0 0 0 0 0\n");
    Write(folder, "one.s2p", "# MHz S RI\n2 .1 -.25\n");
    const Ended ended = RunIn(folder, "--measured two.s2p --measured one.s2p --json -");
    const QJsonArray measured = QJsonDocument::fromJson(ended.Out).object()["measured"].toArray();
    ASSERT_EQ(measured.size(), 2);
    const QJsonObject two = measured[0].toObject(), one = measured[1].toObject();
    EXPECT_EQ(two["file"].toString(), "two.s2p");
    EXPECT_EQ(two["points"].toInt(), 2);
    EXPECT_EQ(two["hz"].toArray()[1].toDouble(), 2e6);
    EXPECT_EQ(two["s"].toArray()[1].toArray()[1].toArray()[1].toDouble(), 0.5);
    EXPECT_EQ(two["reference_ohm"].toDouble(), 75.0);
    EXPECT_EQ(two["messages"].toArray().size(), 1);
    EXPECT_TRUE(one["s"].toArray()[1].isNull());
    EXPECT_EQ(one["s"].toArray()[0].toArray()[0].toArray()[1].toDouble(), -0.25);
}

TEST(Exports, MeasuredFilesAreJudgedAsFarAsTheyReach) {
    const QTemporaryDir folder;
    // What the design itself sends through, as if it had been measured, from 50 MHz to 250 MHz.
    ASSERT_EQ(RunIn(folder, "--touchstone m.s2p --from 50 --to 250 --points 2001").ExitCode, 0);
    Write(folder, "l.csv",
          "kind,from_mhz,to_mhz,value\natten-max,60,80,1\natten-min,200,300,30\n"
          "atten-min,400,500,10\n");
    const QString arguments = "--limits l.csv --measured m.s2p ";
    const QJsonObject json =
        QJsonDocument::fromJson(RunIn(folder, arguments + "--json -").Out).object();
    const QJsonObject limits = json["measured"].toArray()[0].toObject()["limits"].toObject();
    const QJsonArray rows = limits["rows"].toArray();
    const QJsonArray ofDesign = json["limits"].toObject()["rows"].toArray();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_FALSE(limits["met"].toBool());
    const char* const reach[] = {"whole", "part", "nothing"};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(rows[i].toObject()["reach"].toString(), reach[i]);
    for (int i = 0; i < 2; ++i)
        EXPECT_NEAR(rows[i].toObject()["margin"].toDouble(),
                    ofDesign[i].toObject()["margin"].toDouble(), 1e-3);
    EXPECT_TRUE(rows[2].toObject()["margin"].isNull());
    const QString table = QString::fromUtf8(RunIn(folder, arguments + "--table").Out);
    EXPECT_TRUE(table.contains("measured in m: not measured there")) << table.toStdString();
}

TEST(Companions, EditedValuesAndMeasuredFilesComeBackWithTheDesign) {
    QTemporaryDir folder;
    Write(folder, "m.s1p", "1 .5 0\n");
    ASSERT_EQ(RunIn(folder, "--save a.tk_ldfilt --measured m.s1p").ExitCode, 0);
    const QByteArray companion = ContentOf(folder, "a.tk_ldfilt.json");
    EXPECT_TRUE(companion.contains("\"file\": \"m.s1p\"")) << companion.toStdString();
    // By hand: L2 of 79.577 nH made 100 nH, and a member of another version.
    Write(folder, "a.tk_ldfilt.json",
          QByteArray(companion).replace(
              "\"measured\"",
              "\"later\": {\"x\": 1.50},\n\"edited\": [{\"slot\": 2, \"row\": 1, \"type\": "
              "\"SeriesInd\", \"calculated\": 7.957747e-8, \"value\": 1e-7}], \"measured\""));
    const Ended opened = RunIn(folder, "a.tk_ldfilt --json - --save b.tk_ldfilt");
    const QJsonObject json = QJsonDocument::fromJson(opened.Out).object();
    EXPECT_EQ(json["elements"][1]["V1"].toDouble(), 1e-7);
    EXPECT_EQ(json["measured"].toArray().size(), 1);
    // Analysed, too: 1 and l = w L / R between equal ends lose 1 + (1 - l)^2 at the corner.
    EXPECT_NEAR(json["results"]["loss_at_f0_db"].toDouble(), 5.1720, 1e-4);
    const QByteArray again = ContentOf(folder, "b.tk_ldfilt.json");
    EXPECT_TRUE(again.contains("\"value\": 1e-07")) << again.toStdString();
    EXPECT_TRUE(again.contains("\"x\": 1.50"));
    // Another ladder: said, and calculated as it is. Damage: said.
    EXPECT_TRUE(RunIn(folder, "a.tk_ldfilt --set f0=100").Error.contains("another ladder"));
    Write(folder, "a.tk_ldfilt.json", "{\n\"ladder");
    const Ended damaged = RunIn(folder, "a.tk_ldfilt");
    EXPECT_EQ(damaged.ExitCode, 0);
    EXPECT_TRUE(damaged.Error.contains("a.tk_ldfilt.json: line 2: "))
        << damaged.Error.toStdString();
}

}  // namespace
}  // namespace ladderwise
