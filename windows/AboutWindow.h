// The About window: name, version, build, licence and libraries.
#pragma once

#include <QDialog>

namespace ladderwise {

class AboutWindow : public QDialog {
    Q_OBJECT

public:
    explicit AboutWindow(QWidget* parent);

    /// What a report of a fault should name: version, compiler, toolkit, system; one line each.
    static QString BuildText();
};

}  // namespace ladderwise
