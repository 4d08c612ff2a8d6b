// A label that elides its text.
#pragma once

#include <QColor>
#include <QPalette>
#include <QTimer>
#include <QWidget>

namespace ladderwise {

/// Of texts that ask for attention, on the window colour of a palette, light or dark.
QColor WarningColour(const QPalette& palette);

/// A label whose text ends in "..." where it does not fit; the tool tip says all of it.
class ElidedLabel : public QWidget {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// Warnings come first, in a colour that asks for attention, then the hints.
    void SetText(const QString& newWarnings, const QString& newHints);
    /// Shows a notice in the place of the text, for `duration` ms or until EndNotice(). The status
    /// bar's own messages lie over the label where a permanent widget of the bar comes or goes.
    void ShowNotice(const QString& notice, int duration);
    void EndNotice();
    /// What it says: the notice, else warnings and hints.
    QString Text() const;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString warnings;
    QString hints;
    QString notice;
    QTimer noticeTime;
};

}  // namespace ladderwise
