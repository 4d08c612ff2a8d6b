// Unsaved work on the disk: written soon after every change, offered by the next start if the
// program did not come to its normal end. Each running program has a place of its own.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <string>

#include "app/FileDialogs.h"
#include "files/PlatformFolders.h"
#include "pipeline/DesignDocument.h"

namespace ladderwise {

/// Said of work that holds elements of a later version.
inline constexpr const char* EditsLostText =
    "This version does not know the elements that were edited by hand. All values are calculated.";

class Recovery : public QObject {
    Q_OBJECT

public:
    explicit Recovery(const DesignDocument& document);

    using Offer = std::function<RecoveryAnswer(const UnsavedWork&)>;

    /// Takes a place in the folder (UTF-8, full path). Work that lies in places of programs that
    /// have ended is offered, the latest first, until some is accepted: that is returned. What is
    /// asked for later stays, as does what nobody was asked about.
    /// Without a folder nothing is kept.
    std::optional<UnsavedWork> Start(const std::string& folder, const Offer& offer);

    /// Something was done: what there is to keep is written soon.
    void NoteChange();

    /// Writes now, or deletes what has become needless.
    void Write();

    /// The desktop session is over: Write was the last word, and the window may close unasked.
    void EndSession() { sessionEnded = true; }
    bool SessionEnded() const { return sessionEnded; }

    /// The normal end: there is nothing to keep.
    void Finish();

private:
    /// "unsaved-1" and the like, held by one program at a time.
    struct Place {
        std::string Path;
        HeldFile Hold;
    };
    std::vector<Place> FreePlaces(const std::string& folder) const;

    const DesignDocument& document;
    std::optional<Place> place;
    QTimer due;
    std::string written;  ///< but for its time
    bool sessionEnded = false;
};

}  // namespace ladderwise
