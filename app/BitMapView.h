// The widget that shows the plot's off-screen image.
#pragma once

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

}  // namespace ladderwise
