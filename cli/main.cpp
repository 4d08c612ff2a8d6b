// The console program: sets inputs by name, runs the window's own calculation and writes tables,
// JSON and plots.
#include <QGuiApplication>
#include <QLocale>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/Arguments.h"
#include "cli/BoardOutput.h"
#include "cli/ChoicesOutput.h"
#include "cli/DesignFiles.h"
#include "cli/Exports.h"
#include "cli/JsonOutput.h"
#include "cli/PartsOutput.h"
#include "cli/TableOutput.h"
#include "cli/Terminal.h"
#include "display/Picture.h"
#include "display/PlotExport.h"
#include "files/DiskFile.h"
#include "files/PlatformFolders.h"
#include "limits/LimitTable.h"
#include "measured/CompanionFile.h"
#include "measured/MeasuredDisk.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/LimitMargins.h"
#include "pipeline/NamedSettings.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/Notes.h"
#include "pipeline/ReferenceDesign.h"
#include "pipeline/SavedDesigns.h"
#include "resources/Resources.h"

using namespace ladderwise;

namespace {

constexpr int ExitOk = 0;
constexpr int ExitCannotWrite = 1;
constexpr int ExitUsage = 2;
constexpr std::size_t MaxLimitsBytes = 1u << 20;  ///< of a table of limits
constexpr int ExitFaultyTables = 70;              ///< an error of the program itself

/// One design on its way through the program.
struct Session {
    Calculation Calc;
    std::vector<RecordedMessage> Messages;  ///< what the window would show in boxes
    std::size_t MessagesPrinted = 0;
    std::vector<OverlayRun> Overlay;  ///< the traces of the worst-case runs
    std::vector<ElementList> Runs;    ///< the ladders of the first of them
    DesignCompanion Companion;        ///< of the design file that was opened
    std::vector<MeasuredNetwork> Measured;
    LimitLines Limits;
    BoardWork Boards;
    std::optional<MeasuredNetwork> Board;  ///< to be read
    MeasuredFiles Drawn;                   ///< those, with what the companion says about them
};

void PrintError(const std::string& text) {
    std::fprintf(stderr, "ladderwise-cli: %s\n", Printable(text).c_str());
}

MessageCallback Recorder(Session& session) {
    return [&session](const std::string& caption, const std::string& text) {
        session.Messages.push_back({caption, text});
    };
}

/// Prints the messages that no one has printed yet.
void PrintMessages(Session& session) {
    for (; session.MessagesPrinted < session.Messages.size(); ++session.MessagesPrinted) {
        const RecordedMessage& message = session.Messages[session.MessagesPrinted];
        std::string line = message.Caption + ": " + message.Text;  // a box breaks its lines
        std::replace(line.begin(), line.end(), '\n', ' ');
        PrintError(line);
    }
}

/// Sets every input in the order of the command line. False after a usage error.
bool ApplySettings(Session& session, const Arguments& arguments) {
    for (const auto& [name, value] : arguments.Settings) {
        if (name == CoefficientsSetting) {
            const std::string error = UseCoefficientsFile(session.Calc, value);
            if (error.empty()) continue;
            PrintMessages(session);
            PrintError(error);
            return false;
        }
        const auto reason = ApplySetting(session.Calc, name, value, Recorder(session));
        if (!reason) continue;
        PrintMessages(session);
        PrintError(*reason);
        return false;
    }
    return true;
}

/// Puts the values edited by hand that a design file had beside it into the ladder. Analysed as it
/// stands, it has no worst case.
bool TakeEdits(Session& session) {
    const std::vector<EditedValue>& edits = session.Companion.Edited;
    if (edits.empty()) return false;
    if (ApplyEdits(session.Calc.Design, edits)) return true;
    Recorder(session)(
        "Error",
        "the values edited by hand belong to another ladder than the one calculated; they were "
        "left out");
    return false;
}

/// True if the command line sets the input of that name.
bool Sets(const Arguments& arguments, const std::string& name) {
    return std::any_of(arguments.Settings.begin(), arguments.Settings.end(),
                       [&](const auto& setting) { return setting.first == name; });
}

/// K and M are searched where the command line asks for it. A file that has "Auto Optimize" checked
/// does not: it gives the ladder that it was saved with, here as in the window.
void Design(Session& session, const Arguments& arguments) {
    DesignInputs& inputs = session.Calc.Inputs;
    if (inputs.Pass() == PassType::Norton && inputs.IsOn(ChoiceId::AutoOptimize) &&
        Sets(arguments, TableOf(ChoiceId::AutoOptimize).Name))
        OptimizeNorton(inputs, session.Calc.Design);
    PrepareCalculation(session.Calc, Recorder(session));
    if (TakeEdits(session)) return AnalyseAsItStands(session.Calc, Recorder(session));
    FinishCalculation(session.Calc, Recorder(session), [&](const AnalysedRun& run) {
        if (run.Number > 0 && !arguments.PlotFile.empty())
            session.Overlay.push_back({run.Quantities, run.Response});
        if (run.Number > 0 && run.Number <= arguments.Exports.Options.Runs)
            session.Runs.push_back(session.Calc.Design.Elements);
    });
}

/// Reads the measured files: of the command line all or none, of the design those that can be read.
/// False after one of the command line that cannot.
bool ReadMeasured(Session& session, const Arguments& arguments) {
    for (const MeasuredFile& file : session.Companion.Measured) {
        MeasuredNetwork network = OpenMeasured(file.Path);
        if (!network.Error.empty()) {
            Recorder(session)("Error", network.Error);
            continue;
        }
        session.Measured.push_back(std::move(network));
        session.Drawn.push_back(file);
    }
    for (const std::string& path : arguments.MeasuredFiles) {
        session.Measured.push_back(OpenMeasured(path));
        if (session.Measured.back().Error.empty()) {
            session.Drawn.push_back(NewMeasuredFile(path, session.Drawn));
            continue;
        }
        PrintError(session.Measured.back().Error);
        return false;
    }
    if (arguments.BoardFile.empty()) return true;
    session.Board = OpenMeasured(arguments.BoardFile);
    if (!session.Board->Error.empty()) PrintError(session.Board->Error);
    return session.Board->Error.empty();
}

/// What the measured board says about the ladder in hand.
std::optional<BoardReading> ReadBoardOf(const Session& session, const Arguments& arguments) {
    if (!session.Board) return {};
    BoardOptions options;
    options.Freedom = arguments.Freedom;
    options.Limits = session.Limits;
    return ReadBoard(session.Board->Network, session.Calc.Design, options);
}

/// Reads the limits of the command line, else takes those of the design. False if the file cannot
/// be read or is no table of limits.
bool ReadLimits(Session& session, const std::string& path) {
    session.Limits = session.Companion.Limits;
    session.Calc.Inputs.Held = session.Companion.Held;
    if (path.empty()) return true;
    const FileContent file = ReadWholeFile(path, MaxLimitsBytes);
    if (!file.Error.empty()) {
        PrintError(file.Error);
        return false;
    }
    LimitTable table = ReadLimitTable(file.Bytes);
    if (!table.Error.empty()) PrintError(path + ": " + table.Error);
    session.Limits = std::move(table.Lines);
    return table.Error.empty();
}

/// Reports messages and notes on standard error: what became of the user's own entries first, since
/// a script may look no further than the first line. Of an idle box only if the user has set it.
void PrintRemarks(Session& session, const Arguments& arguments) {
    const std::vector<Note> notes = CollectNotes(session.Calc);
    const auto print = [&](bool replaced) {
        for (const Note& note : notes)
            if ((note.Kind == NoteKind::Replaced) == replaced &&
                (!note.Idle || Sets(arguments, note.Name)))
                PrintError(note.Text);
    };
    print(true);
    PrintMessages(session);
    print(false);
}

/// Saves the design where that is asked for, and beside it what its record has no room for. False
/// if it failed.
bool SaveDesign(Session& session, const Arguments& arguments) {
    if (arguments.SaveFile.empty()) return true;
    std::string error = SaveDesignFile(session.Calc, arguments.SaveFile, Recorder(session));
    PrintMessages(session);
    DesignCompanion companion = session.Companion;
    companion.Edited = EditsOf(session.Calc.Design);
    companion.Limits = session.Limits;
    companion.Held = session.Calc.Inputs.Held;
    for (const std::string& path : arguments.MeasuredFiles)
        companion.Measured.push_back(NewMeasuredFile(path, companion.Measured));
    if (error.empty()) error = SaveCompanion(companion, arguments.SaveFile);
    if (!error.empty()) PrintError(error);
    return error.empty();
}

/// True if every input and choice can be saved. Asked in programs built for debugging, where it
/// says what a new row of a table still lacks; others have passed the tests, which ask too.
bool EveryInputIsSaved() {
#ifndef NDEBUG
    const std::string fault = RecordFault(InputRows(), ChoiceTables());
    if (!fault.empty()) PrintError(fault);
    return fault.empty();
#else
    return true;
#endif
}

/// Writes a file, or to standard output ("-").
bool WriteOutput(const std::string& name, const std::string& bytes) {
    const std::string error = name == "-" ? WriteToOutput(bytes) : WriteWholeFile(name, bytes);
    if (!error.empty()) PrintError(error);
    return error.empty();
}

/// How each of the measured networks keeps the limits, hidden ones too; empty without limits.
std::vector<NamedReport> JudgeMeasuredFiles(const Session& session) {
    MeasuredSet measured;
    for (const MeasuredNetwork& network : session.Measured)
        measured.Put(network);
    MeasuredFiles files = session.Drawn;
    for (MeasuredFile& file : files)
        file.Hidden = false;
    std::vector<NamedReport> reports;
    for (MeasuredVerdict& verdict : measured.Judge(files, session.Calc.Design, session.Limits))
        reports.push_back({std::move(verdict.ShortName), std::move(verdict.Report)});
    return reports;
}

/// As the window's panel has them: all limits together first, each of them behind the figures.
std::vector<PictureRow> ResultLines(const Session& session, const LimitReport& limits,
                                    MeasuredSet& measured) {
    const Calculation& calc = session.Calc;
    std::vector<NamedReport> others;
    for (MeasuredVerdict& verdict : measured.Judge(session.Drawn, calc.Design, session.Limits))
        others.push_back({std::move(verdict.ShortName), std::move(verdict.Report)});
    std::vector<PictureRow> rows;
    for (const auto& some :
         {CompareLimits(limits, nullptr, others), ResultRows(calc.Design, calc.Results, nullptr),
          CompareEachLimit(limits, nullptr, others)})
        for (const ComparedResult& row : some)
            rows.push_back({row.Name, row.OfDesign, row.OfReference});
    for (const auto& [name, value] : DescribeWorstCase(calc.WorstCase))
        rows.push_back({name, value, {}});
    return rows;
}

bool WritePlot(const Session& session, const Arguments& arguments) {
    const Calculation& calc = session.Calc;
    MeasuredSet measured;
    for (const MeasuredNetwork& network : session.Measured)
        measured.Put(network);
    PlotContent content = ContentOf(calc.Design, ShownTraces(calc), calc.Quantities,
                                    measured.LayersOf(session.Drawn, calc.Design));
    content.WorstCaseRuns = calc.WorstCase.Runs;
    content.Limits = JudgeLimits(calc.Design, session.Limits);
    for (const OverlayRun& run : session.Overlay)
        content.Overlays.push_back(run.Traces());
    if (!content.Overlays.empty() && ShowsBands(calc.Design)) {
        BandCollector collector;
        collector.Begin(content.Choices);
        for (const PlotTraces& run : content.Overlays)
            collector.Take(run);
        content.Bands =
            std::make_shared<const TraceBands>(collector.Finish(content.Layers.front().Values));
    }
    const QFont font = QGuiApplication::font();
    const PlotFile file =
        arguments.Picture
            ? PaintPictureFile(arguments.PlotFile, arguments.Size,
                               {content, ResultLines(session, content.Limits, measured)},
                               {*arguments.Picture, arguments.White}, font)
            : PaintPlotFile(arguments.PlotFile, PixelsOf(arguments.Size), content, font);
    if (file.Error.empty()) return WriteOutput(arguments.PlotFile, file.Bytes);
    PrintError(file.Error);
    return false;
}

/// The toolkit's own words are of no use to anybody at a console, but for the last ones.
void TakeToolkitMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type != QtFatalMsg) return;
    PrintError(text.toStdString());
    std::_Exit(ExitCannotWrite);
}

/// Painting needs fonts but no screen, whatever the desktop has set up for its programs; and the
/// toolkit gets none of the words that are meant for this program.
bool DrawPlot(const Session& session, const Arguments& arguments) {
    qputenv("QT_QPA_PLATFORM", PaintingPlatform());
    qunsetenv("QT_QPA_PLATFORMTHEME");
    static char name[] = "ladderwise-cli";
    static char* words[] = {name, nullptr};
    static int count = 1;
    const QGuiApplication application(count, words);
    InitResources();
    return WritePlot(session, arguments);
}

ChoosingRequest RequestOf(const Session& session, const Arguments& arguments) {
    ChoosingRequest request;
    request.Inputs = session.Calc.Inputs;
    request.Present = session.Calc.Design;
    request.Limits = session.Limits;
    request.Only = arguments.Only;
    request.MostRows = arguments.ChosenRows;
    if (session.Calc.FixedSeed) request.Seed = *session.Calc.FixedSeed;
    return request;
}

int Run(const Arguments& arguments) {
    if (arguments.Help) return WriteOutput("-", UsageText()) ? ExitOk : ExitCannotWrite;
    if (arguments.Version)
        return WriteOutput("-", "ladderwise-cli " LADDERWISE_VERSION "\n") ? ExitOk
                                                                           : ExitCannotWrite;
    if (!arguments.Error.empty()) {
        PrintError(arguments.Error);
        return ExitUsage;
    }
    const QString point = QLocale::system().decimalPoint();
    SetSystemFormatSettings({point == "," ? ',' : '.'});
    const auto session = std::make_unique<Session>();
    SeedFromClock(session->Calc);
    if (!arguments.DesignFile.empty()) {
        const std::string error = OpenDesignFile(session->Calc, arguments.DesignFile);
        if (!error.empty()) {
            PrintError(error);
            return ExitUsage;
        }
        session->Companion = OpenCompanion(arguments.DesignFile, Recorder(*session));
    }
    if (!ApplySettings(*session, arguments) || !ReadMeasured(*session, arguments) ||
        !ReadLimits(*session, arguments.LimitsFile))
        return ExitUsage;
    session->Boards.Asked = arguments.Boards;
    session->Boards.Limits = session->Limits;
    ChooseParts(session->Calc, session->Boards);
    if (arguments.ChosenRows > 0 && session->Limits.empty()) {
        PrintError(NoLimitsToChooseBy);
        return ExitUsage;
    }
    Design(*session, arguments);
    if (!session->Boards.Error.empty()) {
        PrintError(session->Boards.Error);
        return ExitUsage;
    }
    BuildBoards(session->Calc, session->Boards);
    PrintRemarks(*session, arguments);
    const std::string unfit = ExportUsageError(arguments.Exports, session->Calc);
    if (!unfit.empty()) {
        PrintError(unfit);
        return ExitUsage;
    }
    const LimitReport limits = JudgeLimits(session->Calc.Design, session->Limits);
    const std::vector<NamedReport> measured = JudgeMeasuredFiles(*session);
    const ChoosingRequest request = RequestOf(*session, arguments);
    ChoosingMemory memory;
    const FilterList choices =
        arguments.ChosenRows > 0 ? ChooseFilters(request, memory) : FilterList{};
    bool written = SaveDesign(*session, arguments);
    written = WriteExports(arguments.Exports, session->Calc, session->Runs, WriteOutput) && written;
    const bool list = arguments.ChosenRows > 0;
    const std::optional<BoardReading> board = ReadBoardOf(*session, arguments);
    if (arguments.Table)
        written =
            WriteOutput("-", list ? ChoicesTable(request, choices)
                                  : TableText(session->Calc, limits, measured) +
                                        BoardText(session->Boards) +
                                        (board ? BoardTable(*board, arguments.BoardFile) : "")) &&
            written;
    JsonMembers more = list ? ChoicesMembers(request, choices) : JsonMembers{};
    const JsonMembers parts = BoardMembers(session->Calc, session->Boards);
    more.insert(more.end(), parts.begin(), parts.end());
    if (board) more.emplace_back("board", BoardObject(*board));
    if (!arguments.JsonFile.empty())
        written =
            WriteOutput(arguments.JsonFile, JsonText(session->Calc, session->Messages,
                                                     session->Measured, limits, more, measured)) &&
            written;
    if (!arguments.PlotFile.empty()) written = DrawPlot(*session, arguments) && written;
    return written ? ExitOk : ExitCannotWrite;
}

}  // namespace

int main(int argc, char** argv) {
    qInstallMessageHandler(TakeToolkitMessage);
    PrepareStreams();
    OutliveFileLimits();
    if (!EveryInputIsSaved()) return ExitFaultyTables;
    try {
        return Run(ParseArguments(ArgumentWords(argc, argv)));
    } catch (const std::bad_alloc&) {
        PrintError("not enough memory");
        return ExitCannotWrite;
    }
}
