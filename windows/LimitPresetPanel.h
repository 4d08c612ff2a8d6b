// The lower part of the window "Limits": ready-made limits of usual tasks, from a few numbers.
#pragma once

#include <QGroupBox>
#include <functional>

#include "pipeline/DesignPromise.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;

namespace ladderwise {

class LimitPresetPanel : public QGroupBox {
    Q_OBJECT

public:
    /// `promise` gives that of the design in hand.
    LimitPresetPanel(std::function<DesignPromise()> promise, QWidget* parent);

    /// The numbers of the design in hand, but for what was typed over them.
    void Refresh();

signals:
    void Made(const LimitLines& lines, bool instead);  ///< to be added, or in place of all others
    void Refused(const QString& reason);

private:
    void Build();
    QLineEdit* AddField(int row, int column, const char* name, const char* caption,
                        const char* unit, const char* tip);
    void ShowFields();
    void Make(bool instead);
    LimitLines Lines() const;
    double NumberIn(const QLineEdit* field) const;

    std::function<DesignPromise()> promise;
    QGridLayout* grid;
    QComboBox* task;
    QLineEdit* bandFrom;
    QLineEdit* bandTo;
    QLineEdit* loss;
    QLineEdit* attenuation;
    QLineEdit* operating;
    QLineEdit* intermediate;
    QCheckBox* oscillatorHigh;
    DesignPromise filled;  ///< what the fields were filled from
};

}  // namespace ladderwise
