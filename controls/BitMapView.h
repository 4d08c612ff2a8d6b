// The widget that shows the plot's off-screen image, the crosshair with its read-outs, and which
// element is pointed at. Tells the main window where the mouse is.
#pragma once

#include <QWidget>
#include <optional>

#include "display/Plot.h"
#include "display/ReadOuts.h"

namespace ladderwise {

/// Shows the image of a Plot as it is: no copy, no scaling.
class BitMapView : public QWidget {
    Q_OBJECT

public:
    BitMapView(const Plot& plot, QWidget* parent);

    /// The crosshair and the read-outs in the plot's title band; none: the band shows the title.
    void ShowReadOuts(std::optional<CursorReadOuts> newReadOuts);

    /// Lights a part of the schematic strip; an empty rectangle: none.
    void Light(const QRect& part);

signals:
    void Hovered(QPoint at, bool held);  ///< the mouse moved; `held`: with its left button
    void Left();                         ///< the mouse has gone
    /// A button, or the key that opens a context menu; `held`: the left button, to be released.
    void Pressed(QPoint at, bool held);
    void Released(QPoint at);  ///< the left button
    void Escaped();            ///< its key
    void Stepped(int points);  ///< arrow keys: -1 or +1, with Ctrl ten times as far

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void PaintReadOuts(QPainter& painter);

    const Plot& plot;
    std::optional<CursorReadOuts> readOuts;
    QRect lit;
};

}  // namespace ladderwise
