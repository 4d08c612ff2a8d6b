// The dialog for the seed of the worst case.
#include "windows/SeedDialog.h"

#include <QInputDialog>

namespace ladderwise {

std::optional<std::uint32_t> AskForSeed(QWidget* owner, std::uint32_t present,
                                        const MessageCallback& report) {
    bool accepted = false;
    const QString text = QInputDialog::getText(
        owner, "Worst-Case Seed", "Seed of the random draws, 0 to 4294967295:", QLineEdit::Normal,
        QString::number(present), &accepted);
    if (!accepted) return {};
    bool whole = false;
    const uint seed = text.trimmed().toUInt(&whole);
    if (whole) return seed;
    report("Error",
           "\"" + text.toStdString() + "\" is no seed: a whole number from 0 to 4294967295 is.");
    return {};
}

}  // namespace ladderwise
