// Measures of texts.
#include "schematic/Shapes.h"

#include "numbers/UtilityFunctions.h"

namespace ladderwise {

TextMetrics TextMetrics::Scaled(double scale) const {
    return {[this, scale](const std::string& text) { return NearestInt(scale * Width(text)); },
            NearestInt(scale * Height)};
}

}  // namespace ladderwise
