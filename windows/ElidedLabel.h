// A label that elides its text.
#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>

namespace ladderwise {

/// Of texts that ask for attention, on the window colour of a palette, light or dark.
QColor WarningColour(const QPalette& palette);

/// A label whose text ends in "..." where it does not fit; the tool tip says all of it.
class ElidedLabel : public QWidget {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// `warning` paints the text in a colour that asks for attention; `list` is the tool tip.
    void SetText(const QString& text, bool warning, const QString& list);
    const QString& Text() const { return text; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text;
    bool warning = false;
};

}  // namespace ladderwise
