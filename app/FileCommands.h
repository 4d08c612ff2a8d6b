// The commands about files: opening and saving designs, the files used last, coefficients files,
// the settings, and the question before a design that is not saved is left.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/FileDialogs.h"
#include "controls/Remembered.h"
#include "files/Directories.h"
#include "files/Settings.h"
#include "pipeline/DesignDocument.h"
#include "windows/ExportDialog.h"

class QAction;
class QLineEdit;
class QWidget;

namespace ladderwise {

/// What the commands need of the window.
struct FileHost {
    std::function<void()> ReadEntries;  ///< what was typed and not yet read counts
    /// Calculates and shows the settings, or the design, that were loaded; `amend` changes its
    /// ladder after that and tells whether it did.
    std::function<void(const std::function<bool()>& amend)> Loaded;
    std::function<void()> TitleChanged;   ///< name, or whether there is something to save
    std::function<void()> RecentChanged;  ///< the files used last
    std::function<void(const QString&, int ms)> Notice;
    std::function<void()> Opened;  ///< a design is open, with all that its file and companion hold
};

class FileCommands {
public:
    /// `report` is the window's, which tests replace. Two hidden controls of `window` stand for
    /// nothing but lines of the settings file.
    FileCommands(DesignDocument& document, FileHost host, const MessageCallback& report,
                 QWidget* window);

    /// Replaces the dialogs, for tests.
    void SetDialogs(FileDialogs replacement) { dialogs = std::move(replacement); }

    /// Opens a design file (UTF-8, full path), or, with an empty path, the one chosen in a dialog.
    /// A file that is no design file changes nothing.
    void OpenDesign(std::string path);
    void OpenRecent(std::size_t index);

    /// To its file; without one as SaveDesignAs. Asks where another window or program has changed
    /// the file. Values edited by hand and the list of
    /// measured files go into the companion beside it.
    bool SaveDesign();
    bool SaveDesignAs();  ///< true if it was saved
    bool WriteDesignFile(const std::string& path);

    /// Asks about a design that is not saved. False: the user wants to keep it.
    bool MayLeaveDesign();

    /// Asks what to do with unsaved work that was found.
    RecoveryAnswer AskRecovery(const UnsavedWork& work) const;

    /// The dialog that exports a design; what was exported last, and where to, is remembered.
    void Export(const ExportSubject& subject);
    ExportChoice LastExport() const { return ReadChoiceText(lastExport); }
    void RestoreExport(const Remembered& remembered);
    void KeepExport(Remembered& remembered) const;

    /// The full paths of measured files chosen in a dialog; none: it was cancelled.
    std::vector<std::string> ChooseMeasured() const;

    /// The full path of a table of limits chosen to be read, or to be written; empty: cancelled.
    std::string ChooseLimits() const;
    std::string NameForLimits() const;

    /// Asks for a coefficients file and uses it. False if none was chosen.
    bool ChooseCoefficients();

    /// The settings in the folders found; without them nothing is remembered.
    void ReadSettings(const Folders& found);
    void WriteSettings();

    const std::vector<std::string>& RecentFiles() const { return settings.Recent.Paths(); }

private:
    std::string AskForDesign() const;
    QString MeasuredFolder() const;
    void LoadDesign(const std::string& path);
    std::string WriteCompanion(const std::string& path) const;
    bool ChangedMeanwhile() const;
    ProgramSettings PresentSettings() const;
    QLineEdit* SamplingFrequencyBox() const;
    QAction* ReadOutMenu() const;
    bool Exists(const std::string& path);

    DesignDocument& document;
    FileHost host;
    const MessageCallback& report;
    QWidget* window;
    FileDialogs dialogs;
    std::optional<Folders> folders;
    ProgramSettings settings;
    ProgramSettings settingsRead;  ///< as they were after start-up
    std::string lastExport;        ///< its kind and options, as the dialog writes them
    std::string exportFolder;
};

}  // namespace ladderwise
