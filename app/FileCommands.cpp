// Designs, coefficients and settings to and from the disk.
#include "app/FileCommands.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <utility>

#include "files/CoefficientsFile.h"
#include "files/DiskFile.h"
#include "files/SettingsFile.h"
#include "measured/CompanionFile.h"
#include "pipeline/SavedDesigns.h"

namespace ladderwise {

namespace {

constexpr const char* ExportName = "Export";  // remembered: kind and options
constexpr const char* ExportFolderName = "ExportFolder";
constexpr const char* DesignFilter = "Design Files (*.tk_ldfilt)";
constexpr const char* MeasuredFilter = "Touchstone Files (*.s1p *.s2p *.ts *.S1P *.S2P *.TS)";
constexpr const char* LimitsFilter = "Limits (*.csv *.txt)";
constexpr const char* LimitsEnding = "csv";
constexpr const char* Welcome =
    "Type a frequency and press Enter; choose pass and response above. Point at the plot to read "
    "it, right-click a part value to tune it. More under Help.";
constexpr int WelcomeTime = 60000;  ///< ms, or until the first calculation
constexpr int ReasonTime =
    10000;  ///< ms for which the status line tells what saving or opening came to

QString Name(const std::string& path) {
    return QString::fromStdString(path);
}

std::string SettingsPath(const Folders& folders) {
    return folders.SettingsFolder + "/" + SettingsFileName;
}

/// Where a dialog about a design starts.
QString StartFolder(const std::string& file) {
    return file.empty() ? QDir::currentPath() : Name(FolderOf(file));
}

/// Of a design file whose bytes were just read or written, and of what lies beside it.
DesignStamps StampsOf(const std::string& path, const std::string& bytes) {
    DesignStamps stamps{StampOf(bytes), {}};
    const FileContent companion = ReadRegularFile(CompanionPath(path), MaxCompanionBytes);
    if (companion.Error.empty()) stamps.Companion = StampOf(companion.Bytes);
    return stamps;
}

}  // namespace

FileCommands::FileCommands(DesignDocument& document, FileHost host, const MessageCallback& report,
                           QWidget* window)
    : document(document),
      host(std::move(host)),
      report(report),
      window(window),
      dialogs(StandardFileDialogs(window)) {}

/// Keeps what the design file has no room for; gives the reason if that failed. A file of that name
/// that is no companion stays as it is.
std::string FileCommands::WriteCompanion(const std::string& path) const {
    std::string fault;
    // Limits that could not be read leave the rest as it is.
    const auto note = [&fault](const std::string& caption, const std::string& text) {
        if (caption == "Error") fault = text;
    };
    DesignCompanion companion = OpenCompanion(path, note);
    if (document.File().empty())
        companion = {};
    else if (document.File() != path)
        companion = OpenCompanion(document.File(), note);
    companion.Edited = EditsOf(document.Work.Design);
    companion.Measured = document.Measured;
    companion.Limits = document.Limits;
    companion.Held = document.Work.Inputs.Held;
    if (!fault.empty()) return companion.IsEmpty() ? std::string() : fault;
    return SaveCompanion(companion, path);
}

/// True if the design file or its companion holds something else than it did.
bool FileCommands::ChangedMeanwhile() const {
    const DesignStamps& stamps = document.Stamps();
    if (!stamps.Design) return false;
    const std::string& path = document.File();
    if (FileChangedSince(path, *stamps.Design) == FileChange::Changed) return true;
    const std::string companion = CompanionPath(path);
    if (!stamps.Companion) return FileExists(companion);
    return FileChangedSince(companion, *stamps.Companion) == FileChange::Changed;
}

bool FileCommands::WriteDesignFile(const std::string& path) {
    const std::string bytes = EncodeRecord(document.Record(report));
    const std::string error = WriteWholeFile(path, bytes);
    if (!error.empty()) {
        document.LoseFile();
        host.TitleChanged();
        host.Notice(Name(error), ReasonTime);
        report("Program Info", "Save File operation failed.");
        return false;
    }
    const std::string left = WriteCompanion(path);
    settings.Recent.Add(path);
    document.WasSavedTo(path, left.empty());
    document.KeepStamps(StampsOf(path, bytes));
    host.RecentChanged();
    host.TitleChanged();
    if (left.empty()) return true;
    QStringList lost;
    if (HasEdits(document.Work.Design)) lost << "the values edited by hand";
    if (!document.Measured.empty()) lost << "the list of measured files";
    if (!document.Limits.empty()) lost << "the limits";
    if (!document.Work.Inputs.Held.empty()) lost << "what is settled about single parts";
    if (lost.isEmpty()) lost << "what stands beside the design";
    host.Notice("Saved, but not " + lost.join(" and ") + ": " + Name(left), ReasonTime);
    return !document.NeedsCompanion();
}

bool FileCommands::SaveDesign() {
    host.ReadEntries();
    const std::string path = document.File();
    if (path.empty()) return SaveDesignAs();
    if (!ChangedMeanwhile()) return WriteDesignFile(path);
    if (!dialogs.AskChanged) return false;
    switch (dialogs.AskChanged(QFileInfo(Name(path)).fileName())) {
        case ChangedAnswer::Overwrite:
            return WriteDesignFile(path);
        case ChangedAnswer::Reload:
            LoadDesign(path);
            return false;
        case ChangedAnswer::SaveAs:
            return SaveDesignAs();
        case ChangedAnswer::Cancel:
            return false;
    }
    return false;
}

bool FileCommands::SaveDesignAs() {
    host.ReadEntries();
    const QString proposed =
        Name(ProposedFileName(document.Work.Design)) + "." + DesignFileExtension;
    const QString name =
        dialogs.NameToSave({"Save Design to File:", DesignFilter, DesignFileExtension,
                            StartFolder(document.File()) + "/" + proposed});
    return !name.isEmpty() && WriteDesignFile(FullPath(name.toStdString()));
}

bool FileCommands::MayLeaveDesign() {
    host.ReadEntries();
    if (!document.Modified()) return true;
    const QString design = document.File().empty() ? Name(ProposedFileName(document.Work.Design))
                                                   : QFileInfo(Name(document.File())).fileName();
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

RecoveryAnswer FileCommands::AskRecovery(const UnsavedWork& work) const {
    return dialogs.AskRecovery ? dialogs.AskRecovery(work) : RecoveryAnswer::Later;
}

/// False, with a message, if the file is gone.
bool FileCommands::Exists(const std::string& path) {
    if (FileExists(path)) return true;
    report("Program Info", "This file doesn't exist. \n\n" + path);
    settings.Recent.Remove(path);
    host.RecentChanged();
    return false;
}

/// The full path of the file chosen; empty: none.
std::string FileCommands::AskForDesign() const {
    const QString name = dialogs.NameToOpen(
        {"Open Design File:", DesignFilter, DesignFileExtension, StartFolder(document.File())});
    return name.isEmpty() ? std::string() : FullPath(name.toStdString());
}

void FileCommands::OpenDesign(std::string path) {
    if (!MayLeaveDesign()) return;
    if (path.empty() || !Exists(path)) path = AskForDesign();
    if (path.empty()) return;
    LoadDesign(path);
}

void FileCommands::LoadDesign(const std::string& path) {
    // One byte more than a record has: a longer file must not pass for one.
    const FileContent file = ReadRegularFile(path, FILT_STRUCT_SIZE + 1);
    if (!file.Error.empty()) return host.Notice(Name(file.Error), ReasonTime);
    if (!document.Load(file.Bytes, path)) return report("Program Info", IncompatibleFileText);
    settings.Recent.Add(path);
    host.RecentChanged();
    std::string fault;
    const DesignCompanion companion = OpenCompanion(
        path, [&fault](const std::string&, const std::string& text) { fault = text; });
    document.KeepStamps(StampsOf(path, file.Bytes));
    document.Measured = companion.Measured;
    document.Limits = companion.Limits;
    document.Work.Inputs.Held = companion.Held;
    host.Loaded([&] {
        if (!ApplyEdits(document.Work.Design, companion.Edited))
            fault = "The values edited by hand in " + CompanionPath(path) +
                    " belong to another ladder and are not used.";
        return HasEdits(document.Work.Design);
    });
    document.CountAsSaved();
    host.TitleChanged();
    if (!fault.empty()) host.Notice(Name(fault), ReasonTime);
    host.Opened();
}

void FileCommands::OpenRecent(std::size_t index) {
    if (index < RecentFiles().size()) OpenDesign(RecentFiles()[index]);
}

void FileCommands::Export(const ExportSubject& subject) {
    const auto nameToSave = [this](const QString& filter, const QString& ending,
                                   const QString& start) {
        return dialogs.NameToSave({"Export to File:", filter, ending, start, false});
    };
    const ExportHost exportHost{nameToSave,
                                [this](const QStringList& files) {
                                    return dialogs.AskReplace && dialogs.AskReplace(files);
                                },
                                report};
    const QString last = Name(exportFolder);
    const bool there = !last.isEmpty() && QFileInfo(last).isDir();
    ExportDialog dialog(subject, exportHost, LastExport(),
                        there ? last : StartFolder(document.File()), window);
    dialog.exec();
    lastExport = ChoiceText(dialog.Choice());
    exportFolder = dialog.Folder().toStdString();
}

void FileCommands::RestoreExport(const Remembered& remembered) {
    lastExport = remembered.Value(ExportName).toString().toStdString();
    exportFolder = remembered.Value(ExportFolderName).toString().toStdString();
}

void FileCommands::KeepExport(Remembered& remembered) const {
    if (lastExport.empty()) return;
    remembered.Store(ExportName, Name(lastExport));
    remembered.Store(ExportFolderName, Name(exportFolder));
}

std::vector<std::string> FileCommands::ChooseMeasured() const {
    const FileDialogTexts texts{"Add Measured Files:", MeasuredFilter, {}, MeasuredFolder()};
    const QStringList names = dialogs.NamesToOpen ? dialogs.NamesToOpen(texts) : QStringList();
    std::vector<std::string> paths;
    for (const QString& name : names)
        paths.push_back(FullPath(name.toStdString()));
    return paths;
}

/// Where the last one lies, else where the design does.
QString FileCommands::MeasuredFolder() const {
    return StartFolder(document.Measured.empty() ? document.File() : document.Measured.back().Path);
}

std::string FileCommands::ChooseLimits() const {
    const QString name = dialogs.NameToOpen(
        {"Open Limits:", LimitsFilter, LimitsEnding, StartFolder(document.File())});
    return name.isEmpty() ? std::string() : FullPath(name.toStdString());
}

std::string FileCommands::NameForLimits() const {
    const QString name = dialogs.NameToSave(
        {"Save Limits:", LimitsFilter, LimitsEnding, StartFolder(document.File()) + "/limits.csv"});
    return name.isEmpty() ? std::string() : FullPath(name.toStdString());
}

bool FileCommands::ChooseCoefficients() {
    const QString folder = folders ? Name(folders->RunTimeFolder + "/Coefficients") : QString();
    const QString name =
        dialogs.NameToOpen({"Open Coefficients File:", "Coefficients Files (*.csv)", "csv",
                            QFileInfo(folder).isDir() ? folder : QDir::currentPath()});
    if (name.isEmpty() || !QFileInfo(name).isFile()) return false;
    const FileContent file = ReadWholeFile(name.toStdString(), MaxCoefficientsBytes + 1);
    const std::string fault =
        file.Error.empty() ? UseCoefficients(document.Work, file.Bytes) : file.Error;
    if (!file.Error.empty()) UseCoefficients(document.Work, {});
    if (!fault.empty()) report("Error", fault);
    return true;
}

void FileCommands::ReadSettings(const Folders& found) {
    folders = found;
    const auto read = ReadSettingsFile(SettingsPath(found), report);
    if (!read) {  // the first run
        settingsRead = PresentSettings();
        return host.Notice(Welcome, WelcomeTime);
    }
    settings = *read;
    if (!settings.Threshold.empty())
        document.Work.Inputs.Box(InputId::GDPhaseThreshold).Type(settings.Threshold);
    // A box keeps what it holds where the line is missing or damaged.
    if (!settings.SamplingFrequency.empty())
        SamplingFrequencyBox()->setText(Name(settings.SamplingFrequency));
    ReadOutMenu()->setChecked(settings.ReadOutMenu);
    host.RecentChanged();
    host.Loaded({});
    document.Begin();
    host.TitleChanged();
    settingsRead = PresentSettings();
}

QLineEdit* FileCommands::SamplingFrequencyBox() const {
    return window->findChild<QLineEdit*>("SamplingFrequencyBox");
}

QAction* FileCommands::ReadOutMenu() const {
    return window->findChild<QAction*>("MouseReadOutMenu");
}

ProgramSettings FileCommands::PresentSettings() const {
    ProgramSettings present = settings;
    present.Version = VersionText();
    present.SamplingFrequency = SamplingFrequencyBox()->text().toStdString();
    present.Threshold = document.Work.Inputs.Box(InputId::GDPhaseThreshold).Text;
    present.ReadOutMenu = ReadOutMenu()->isChecked();
    return present;
}

void FileCommands::WriteSettings() {
    if (folders) WriteSettingsFile(SettingsPath(*folders), PresentSettings(), settingsRead);
}

}  // namespace ladderwise
