// The commands.
#include "app/MenuCommands.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QWidget>

#include "app/ClientArea.h"
#include "app/DesignSession.h"
#include "app/FileCommands.h"
#include "app/MainPanel.h"
#include "app/PlotArea.h"
#include "app/SecondaryWindows.h"
#include "app/ValueGrid.h"
#include "pipeline/SavedDesigns.h"
#include "windows/ExportDialog.h"
#include "windows/PrintScreen.h"
#include "windows/SeedDialog.h"

namespace ladderwise {

MenuCommands::MenuCommands(DesignSession& session, FileCommands& files, SecondaryWindows& windows,
                           ClientArea& client, const MessageCallback& report, QWidget* window)
    : session(session),
      files(files),
      windows(windows),
      client(client),
      report(report),
      window(window) {}

void MenuCommands::Run(Command command) {
    switch (command) {
        case Command::Open:
            return files.OpenDesign({});
        case Command::Save:
            files.SaveDesign();
            return;
        case Command::SaveAs:
            files.SaveDesignAs();
            return;
        case Command::MeasuredData:
            return windows.ShowMeasuredData(session.Document.Measured, session.MeasuredSummaries());
        case Command::OpenRecent0:
        case Command::OpenRecent1:
        case Command::OpenRecent2:
        case Command::OpenRecent3:
            return files.OpenRecent(RecentIndex(command));
        case Command::Export:
            return ExportDesign();
        case Command::CopyPicture:
            return CopyPictureOfDesign();
        case Command::Print:
            return PrintPage();
        case Command::Exit:
            return;  // the window's own
        case Command::Undo:
            return session.Undo();
        case Command::Redo:
            return session.Redo();
        case Command::PartDefinitions:
            return windows.ShowPartDefinitions();
        case Command::BringBack:
            return BringBack();
        case Command::BringBackLoad:
            return BringBackLoad();
        case Command::PartValues:
            return ShowPartValues();
        case Command::PartShares:
            return windows.ShowShares(session.ShareTables());
        case Command::Options:
            return windows.ShowOptions();
        case Command::Limits:
            return windows.ShowLimits(session.Judged());
        case Command::Board:
            return windows.ShowBoard();
        case Command::Choices:
            session.ReadEntries();
            return windows.ShowChoices();
        case Command::ManyBoards:
            return session.BuildManyBoards();
        case Command::WorstBoard:
            return session.TakeWorstBoard();
        case Command::FixSeed:
            return ToggleFixedSeed();
        case Command::SetSeed:
            return SetSeed();
        case Command::Help:
            return windows.ShowHelp();
        case Command::MathErrors:
            return windows.ShowMathErrors();
        case Command::About:
            return windows.ShowAbout();
    }
}

void MenuCommands::PressAt(QPoint at) {
    session.FinishDrawing();
    session.Document.Markers.ClickX = at.x();
    session.Document.Markers.ClickY = at.y();
}

void MenuCommands::RunMarkerCommand(MarkerCommand command) {
    const Calculation& work = session.Document.Work;
    ApplyMarkerCommand(command, session.Document.Markers, client.Area()->Sweep(), work.Design.F0,
                       work.Quantities.MagnitudeDb);
    session.DrawMarkers();
}

void MenuCommands::ShowReference(bool shown) {
    session.Document.ShowReference(shown);
    session.Calculate();
}

void MenuCommands::SetReference() {
    session.ReadEntries();
    session.FinishChoosing();
    session.FinishDrawing();
    session.Document.SetReference(report);
    session.Calculate();
}

void MenuCommands::ExchangeWithReference() {
    session.ReadEntries();
    session.FinishChoosing();
    session.FinishDrawing();
    const PassType before = session.Document.Work.Design.PassType;
    session.Document.ExchangeReference(report);
    session.ShowLoaded(before);
}

void MenuCommands::CopyPartsTable() {
    session.FinishChoosing();
    QApplication::clipboard()->setText(
        QString::fromStdString(PartsTableText(session.Document.Work.Design)));
}

void MenuCommands::BringBack() {
    session.StoreInputs();
    client.Grid()->ForgetRejected();
    const PassType before = session.Document.Work.Design.PassType;
    if (!BringBackEdits(session.Document.Work)) return;
    session.ShowBroughtBack();
    const PassType pass = session.Document.Work.Design.PassType;
    if (pass != before) windows.ShowFor(pass);
}

void MenuCommands::BringBackLoad() {
    session.ReadEntries();
    Calculation& work = session.Document.Work;
    if (ladderwise::BringBackLoad(work.Inputs, work.Design)) session.Recalculate();
}

void MenuCommands::ShowPartValues() {
    partValues = !partValues;
    client.Area()->ShowPartValues(partValues);
    session.Redraw();
}

void MenuCommands::ToggleFixedSeed() {
    session.FinishDrawing();
    session.Document.FixSeed(!session.Document.Work.FixedSeed);
    session.DrawMarkers();
}

void MenuCommands::SetSeed() {
    session.FinishDrawing();
    const auto seed = AskForSeed(window, session.Document.PresentSeed(), report);
    if (!seed) return;
    session.Document.Work.FixedSeed = seed;
    session.Calculate();
}

/// What was typed counts, and what waits to be drawn is drawn: the design that leaves is the one
/// that is shown.
void MenuCommands::SettleDesign() {
    client.Grid()->FinishEditing();
    session.ReadEntries();
    session.FinishChoosing();
    session.FinishDrawing();
}

void MenuCommands::ExportDesign() {
    SettleDesign();
    const DesignDocument& document = session.Document;
    const std::string name =
        document.File().empty() ? ProposedFileName(document.Work.Design) : document.File();
    std::vector<OverlayRun> runs;
    const ExportSubject subject{document.Work, [&] { return session.Picture(runs); },
                                [&](int count) { return session.WorstCaseLadders(count); },
                                QFileInfo(QString::fromStdString(name)).completeBaseName()};
    files.Export(subject);
}

void MenuCommands::CopyPictureOfDesign() {
    SettleDesign();
    std::vector<OverlayRun> runs;
    CopyPicture(session.Picture(runs), files.LastExport());
}

void MenuCommands::PrintPage() {
    SettleDesign();
    std::vector<OverlayRun> runs;
    const DesignDocument& document = session.Document;
    PrintScreen(window, session.Picture(runs),
                QString::fromStdString(DesignTitle(document.Work.Design)),
                QString::fromStdString(document.File()));
}

}  // namespace ladderwise
