// The main window: design files, recent files, coefficients files and settings.
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

#include "app/MainWindow.h"
#include "controls/ElidedLabel.h"
#include "files/CoefficientsFile.h"
#include "files/DiskFile.h"
#include "files/SettingsFile.h"
#include "pipeline/SavedDesigns.h"

namespace ladderwise {

namespace {

constexpr const char* DesignFilter = "Design Files (*.tk_ldfilt)";
constexpr const char* Welcome =
    "Type a frequency and press Enter; choose pass and response above. Point at the plot to read "
    "it, right-click a part value to tune it. More under Help.";
constexpr int WelcomeTime = 60000;  ///< ms, or until the first calculation
constexpr int ReasonTime =
    10000;  ///< ms for which the status line tells why saving or opening failed

QString Name(const std::string& path) {
    return QString::fromStdString(path);
}

/// A path as captions show it, shortened.
QString Caption(const std::string& path) {
    return Name(ShortenedPath(QDir::toNativeSeparators(Name(path)).toStdString()));
}

std::string SettingsPath(const Folders& folders) {
    return folders.SettingsFolder + "/" + SettingsFileName;
}

}  // namespace

void MainWindow::SetFileDialogs(FileDialogs replacement) {
    dialogs = std::move(replacement);
}

void MainWindow::Start(const Folders& found, const std::string& design) {
    folders = found;
    ReadSettings();
    if (!design.empty()) OpenDesign(design);
}

DesignRecord MainWindow::Record() {
    DesignRecord record = RecordOf(calculation);
    RefreshRecord(record, report);
    return record;
}

void MainWindow::CalcIfTyped() {
    const DesignRecord before = Record();
    StoreInputs();
    if (!SameDesign(Record(), before)) Recalculate();
}

void MainWindow::ShowTitle() {
    const DesignRecord now = Record();
    if (!savedRecord) savedRecord = now;  // a fresh program has nothing to save
    QString title = currentFile.empty() ? "Ladderwise" : Caption(currentFile);
    title.replace("[*]", "[*][*]");
    const bool modified = !SameDesign(now, *savedRecord);
    if (!modified) setWindowModified(false);
    setWindowTitle(modified ? title + "[*]" : title);  // the toolkit puts its mark there
    if (modified) setWindowModified(true);
}

void MainWindow::ShowRecentFiles() {
    const std::vector<std::string>& paths = settings.Recent.Paths();
    for (std::size_t i = 0; i < MaxRecentFiles; ++i) {
        auto* const item = findChild<QAction*>(QString("PrevFile%1Menu").arg(i));
        const bool used = i < paths.size();
        QString caption = used ? Caption(paths[i]) : QString();
        item->setText(QString("&%1 ").arg(i + 1) + caption.replace("&", "&&"));
        item->setToolTip(used ? QDir::toNativeSeparators(Name(paths[i])) : QString());
        item->setVisible(used);
    }
}

bool MainWindow::WriteDesignFile(const std::string& path) {
    const DesignRecord record = Record();
    const std::string error = WriteWholeFile(path, EncodeRecord(record));
    if (!error.empty()) {
        currentFile.clear();
        ShowTitle();
        statusLabel->ShowNotice(Name(error), ReasonTime);
        report("Program Info", "Save File operation failed.");
        return false;
    }
    settings.Recent.Add(path);
    ShowRecentFiles();
    currentFile = path;
    savedRecord = record;
    ShowTitle();
    return true;
}

bool MainWindow::SaveDesign() {
    CalcIfTyped();
    return currentFile.empty() ? SaveDesignAs() : WriteDesignFile(currentFile);
}

bool MainWindow::SaveDesignAs() {
    CalcIfTyped();
    const QString folder =
        currentFile.empty() ? QDir::currentPath() : QFileInfo(Name(currentFile)).absolutePath();
    const QString name = dialogs.NameToSave(
        {"Save Design to File:", DesignFilter, DesignFileExtension,
         folder + "/" + Name(ProposedFileName(calculation.Design)) + "." + DesignFileExtension});
    return !name.isEmpty() && WriteDesignFile(FullPath(name.toStdString()));
}

bool MainWindow::MayLeaveDesign() {
    CalcIfTyped();
    if (savedRecord && SameDesign(Record(), *savedRecord)) return true;
    const QString design = currentFile.empty() ? Name(ProposedFileName(calculation.Design))
                                               : QFileInfo(Name(currentFile)).fileName();
    switch (dialogs.AskUnsaved(design)) {
        case UnsavedAnswer::Save:
            return SaveDesign();
        case UnsavedAnswer::Discard:
            return true;
        case UnsavedAnswer::Cancel:
            return false;
    }
    return false;
}

void MainWindow::OpenDesign(std::string path) {
    if (!MayLeaveDesign()) return;
    if (!path.empty() && !FileExists(path)) {
        report("Program Info", "This file doesn't exist. \n\n" + path);
        settings.Recent.Remove(path);
        ShowRecentFiles();
        path.clear();
    }
    if (path.empty()) {
        const QString name =
            dialogs.NameToOpen({"Open Design File:", DesignFilter, DesignFileExtension,
                                currentFile.empty() ? QDir::currentPath()
                                                    : QFileInfo(Name(currentFile)).absolutePath()});
        if (name.isEmpty()) return;
        path = FullPath(name.toStdString());
    }
    // One byte more than a record has: a longer file must not pass for one.
    const FileContent file = ReadRegularFile(path, FILT_STRUCT_SIZE + 1);
    if (!file.Error.empty()) return statusLabel->ShowNotice(Name(file.Error), ReasonTime);
    const auto record = DecodeRecord(file.Bytes);
    if (!record) return report("Program Info", IncompatibleFileText);
    settings.Recent.Add(path);
    ShowRecentFiles();
    currentFile = path;
    TakeRecord(*record);
    FinishDrawing();
    savedRecord = Record();
    ShowTitle();
}

void MainWindow::TakeRecord(const DesignRecord& record) {
    LoadRecord(record, calculation);
    ShowInputs();
    FilterMenuClick(nullptr);
}

void MainWindow::ChooseCoefficientsFile() {
    const QString folder = folders ? Name(folders->RunTimeFolder + "/Coefficients") : QString();
    const QString name =
        dialogs.NameToOpen({"Open Coefficients File:", "Coefficients Files (*.csv)", "csv",
                            QFileInfo(folder).isDir() ? folder : QDir::currentPath()});
    if (name.isEmpty() || !QFileInfo(name).isFile()) return ShowInputs();  // the check goes back
    const FileContent file = ReadWholeFile(name.toStdString(), MaxCoefficientsBytes + 1);
    const std::string fault =
        file.Error.empty() ? UseCoefficients(calculation, file.Bytes) : file.Error;
    if (!file.Error.empty()) UseCoefficients(calculation, {});
    if (!fault.empty()) report("Error", fault);
    SetControlStates();
    Recalculate();
}

void MainWindow::ReadSettings() {
    const auto found = ReadSettingsFile(SettingsPath(*folders), report);
    if (!found) {  // the first run
        settingsRead = PresentSettings();
        return statusLabel->ShowNotice(Welcome, WelcomeTime);
    }
    settings = *found;
    if (!settings.Threshold.empty())
        calculation.Inputs.Box(InputId::GDPhaseThreshold).Type(settings.Threshold);
    // A box keeps what it holds where the line is missing or damaged.
    if (!settings.SamplingFrequency.empty())
        findChild<QLineEdit*>("SamplingFrequencyBox")->setText(Name(settings.SamplingFrequency));
    findChild<QAction*>("MouseReadOutMenu")->setChecked(settings.ReadOutMenu);
    ShowRecentFiles();
    ShowInputs();
    Recalculate();
    FinishDrawing();
    savedRecord.reset();
    ShowTitle();
    settingsRead = PresentSettings();
}

ProgramSettings MainWindow::PresentSettings() const {
    ProgramSettings present = settings;
    present.Version = VersionText();
    present.SamplingFrequency = findChild<QLineEdit*>("SamplingFrequencyBox")->text().toStdString();
    present.Threshold = calculation.Inputs.Box(InputId::GDPhaseThreshold).Text;
    present.ReadOutMenu = findChild<QAction*>("MouseReadOutMenu")->isChecked();
    return present;
}

void MainWindow::WriteSettings() {
    if (folders) WriteSettingsFile(SettingsPath(*folders), PresentSettings(), settingsRead);
}

}  // namespace ladderwise
