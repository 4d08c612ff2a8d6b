// The widget that shows the plot's off-screen image, and a label that elides its text.
#pragma once

#include <QLabel>
#include <QWidget>

#include "display/Plot.h"

namespace ladderwise {

/// Shows the image of a Plot as it is: no copy, no scaling.
class BitMapView : public QWidget {
    Q_OBJECT

public:
    BitMapView(const Plot& plot, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Plot& plot;
};

/// A label whose text ends in "..." where it does not fit; the tool tip has it whole.
class ElidedLabel : public QWidget {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// `warning` paints the text in a colour that asks for attention.
    void SetText(const QString& text, bool warning);
    const QString& Text() const { return text; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text;
    bool warning = false;
};

}  // namespace ladderwise
