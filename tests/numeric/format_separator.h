// A decimal separator for the length of a test. The settings are one for the whole program, so
// every test that changes them has to put them back.
#pragma once

#include "files/Formatfunctions.h"

namespace ladderwise {

class SeparatorScope {
public:
    explicit SeparatorScope(char separator) : before(SystemFormatSettings()) {
        SetSystemFormatSettings({separator});
    }
    ~SeparatorScope() { SetSystemFormatSettings(before); }
    SeparatorScope(const SeparatorScope&) = delete;
    SeparatorScope& operator=(const SeparatorScope&) = delete;

private:
    const FormatSettings before;
};

}  // namespace ladderwise
