// Placement of the schematic pictures.
#include "display/SchematicStrip.h"

#include "display/ValueGridContent.h"

namespace ladderwise {

std::vector<StripPicture> PlaceSchematics(const FilterDesign& design, int gridTop, int scroll) {
    std::vector<StripPicture> pictures;
    for (int i = 1; i <= ShownElements(design); ++i) {
        const ElementType type = design.Elements[static_cast<std::size_t>(i)].Type;
        pictures.push_back({IsElement(type) ? type : ElementType::errorBitMap,
                            ValueGridLeft + SchematicWidth * i - scroll,
                            gridTop - SchematicHeight});
    }
    return pictures;
}

}  // namespace ladderwise
