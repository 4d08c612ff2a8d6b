// What the files of the JSON output share.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// A list of `count` items, each made by `item(index)`.
template <typename Item>
std::string JsonListOf(std::size_t count, Item item) {
    std::string list = "[";
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) list += ", ";
        list += item(i);
    }
    return list + "]";
}

/// One slot of a ladder, counted from 1.
std::string ElementObject(const CircuitElement& element, std::size_t slot);

/// Members of an object: a name and what stands behind it as JSON.
using JsonMembers = std::vector<std::pair<std::string, std::string>>;

}  // namespace ladderwise
