// The options window: the level below which phase and group delay are not drawn.
#pragma once

#include <QDialog>

#include "controls/InputBinder.h"

namespace ladderwise {

class OptionsWindow : public QDialog {
    Q_OBJECT

public:
    OptionsWindow(DesignInputs& inputs, const InputActions& actions, QWidget* parent);

    InputBinder& Binder() { return binder; }

private:
    InputBinder binder;
};

}  // namespace ladderwise
