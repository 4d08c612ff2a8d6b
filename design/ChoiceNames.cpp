// Names of choices.
#include "design/ChoiceNames.h"

namespace ladderwise {

std::string MissingStageText(MissingStage missing) {
    switch (missing) {
        case MissingStage::None:
            return "";
        case MissingStage::EllipticPrototype:
            return "The ladder is empty: this version builds no elliptic prototypes yet.";
        case MissingStage::DirectCoupledSynthesis:
            return "The ladder is empty: this version builds no direct-coupled filters yet.";
        case MissingStage::NortonTransform:
            return "The ladder is empty: this version builds no Norton-transformed filters yet.";
    }
    return "";
}

}  // namespace ladderwise
