// The console program: sets inputs by name, runs the window's own calculation and writes tables,
// JSON and plots.
#include <QFile>
#include <QGuiApplication>
#include <QLocale>
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "cli/Arguments.h"
#include "cli/JsonOutput.h"
#include "cli/TableOutput.h"
#include "display/PlotExport.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NamedSettings.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/Notes.h"
#include "resources/Resources.h"

using namespace ladderwise;

namespace {

constexpr int ExitOk = 0;
constexpr int ExitCannotWrite = 1;
constexpr int ExitUsage = 2;

/// One design on its way through the program.
struct Session {
    Calculation Calc;
    std::vector<RecordedMessage> Messages;  ///< what the window would show in boxes
    std::vector<OverlayRun> Overlay;        ///< the traces of the worst-case runs
};

void PrintError(const std::string& text) {
    std::fprintf(stderr, "ladderwise-cli: %s\n", text.c_str());
}

MessageCallback Recorder(Session& session) {
    return [&session](const std::string& caption, const std::string& text) {
        session.Messages.push_back({caption, text});
        PrintError(caption + ": " + text);
    };
}

/// Sets every input in the order of the command line. False after a usage error.
bool ApplySettings(Session& session, const Arguments& arguments) {
    for (const auto& [name, value] : arguments.Settings) {
        const auto reason = ApplySetting(session.Calc, name, value, Recorder(session));
        if (!reason) continue;
        PrintError(*reason);
        return false;
    }
    return true;
}

void Design(Session& session, bool keepOverlay) {
    DesignInputs& inputs = session.Calc.Inputs;
    if (inputs.Pass() == PassType::Norton && inputs.IsOn(ChoiceId::AutoOptimize))
        OptimizeNorton(inputs, session.Calc.Design);
    Calculate(session.Calc, Recorder(session), [&](const AnalysedRun& run) {
        if (run.Number > 0 && keepOverlay)
            session.Overlay.push_back({run.Quantities, run.Response});
    });
}

/// Reports the notes on standard error; of an idle box only if the user has set it.
void PrintNotes(const Session& session, const Arguments& arguments) {
    for (const Note& note : CollectNotes(session.Calc)) {
        const bool set =
            std::any_of(arguments.Settings.begin(), arguments.Settings.end(),
                        [&](const auto& setting) { return setting.first == note.Name; });
        if (!note.Idle || set) PrintError(note.Text);
    }
}

/// Writes a text to a file or to standard output ("-").
bool WriteText(const std::string& name, const std::string& text) {
    QFile file(QString::fromLocal8Bit(name.c_str()));
    const bool open =
        name == "-" ? file.open(stdout, QIODevice::WriteOnly) : file.open(QIODevice::WriteOnly);
    const auto size = static_cast<qint64>(text.size());
    if (open && file.write(text.data(), size) == size && file.flush()) return true;
    PrintError("cannot write " + name);
    return false;
}

bool WritePlot(const Session& session, const Arguments& arguments) {
    const Calculation& calc = session.Calc;
    PlotContent content = ContentOf(calc.Design, calc.Inputs.Traces(), calc.Quantities, {});
    for (const OverlayRun& run : session.Overlay)
        content.Overlays.push_back(run.Traces());
    const QString path = QString::fromLocal8Bit(arguments.PlotFile.c_str());
    if (WritePlotFile(path, {arguments.Width, arguments.Height}, content, QGuiApplication::font()))
        return true;
    PrintError("cannot write " + arguments.PlotFile + " (a plot is a .png, .svg or .pdf file)");
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = ParseArguments({argv + 1, argv + argc});
    if (arguments.Help) return WriteText("-", UsageText()) ? ExitOk : ExitCannotWrite;
    if (!arguments.Error.empty()) {
        PrintError(arguments.Error);
        return ExitUsage;
    }
    const QString point = QLocale::system().decimalPoint();
    SetSystemFormatSettings({point == "," ? ',' : '.'});
    Session session;
    SeedFromClock(session.Calc);
    if (!ApplySettings(session, arguments)) return ExitUsage;
    Design(session, !arguments.PlotFile.empty());
    PrintNotes(session, arguments);
    bool written = true;
    if (arguments.Table) written = WriteText("-", TableText(session.Calc)) && written;
    if (!arguments.JsonFile.empty())
        written =
            WriteText(arguments.JsonFile, JsonText(session.Calc, session.Messages)) && written;
    if (!arguments.PlotFile.empty()) {
        // A plot needs fonts but no screen.
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        const QGuiApplication application(argc, argv);
        InitResources();
        written = WritePlot(session, arguments) && written;
    }
    return written ? ExitOk : ExitCannotWrite;
}
