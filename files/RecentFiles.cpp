// The list of design files used last.
#include "files/RecentFiles.h"

#include <algorithm>

namespace ladderwise {

namespace {

constexpr std::size_t longestCaption = 48;  ///< characters
constexpr std::size_t longestBeginning = 16;
constexpr std::string_view gap = " ... ";
constexpr std::string_view separators = "/\\";

bool StartsCharacter(char c) {
    return (c & 0xc0) != 0x80;  // UTF-8
}

std::size_t Length(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), StartsCharacter));
}

/// The last `count` characters.
std::string_view Last(std::string_view text, std::size_t count) {
    std::size_t start = text.size();
    while (start > 0 && count > 0)
        if (StartsCharacter(text[--start])) --count;
    return text.substr(start);
}

/// "C:\Users\" or "/home/": the root and the first folder.
std::string_view Beginning(std::string_view path) {
    const std::size_t root = path.find_first_of(separators);
    if (root == std::string_view::npos) return {};
    const std::size_t name = path.find_first_not_of(separators, root);
    if (name == std::string_view::npos) return {};
    const std::size_t folder = path.find_first_of(separators, name);
    const std::string_view beginning =
        path.substr(0, folder == std::string_view::npos ? name : folder + 1);
    return Length(beginning) <= longestBeginning ? beginning : path.substr(0, name);
}

}  // namespace

void RecentFiles::Add(const std::string& path) {
    std::erase(removed, path);
    for (auto* const list : {&paths, &added}) {
        std::erase(*list, path);
        list->insert(list->begin(), path);
        if (list->size() > MaxRecentFiles) list->pop_back();
    }
}

void RecentFiles::Remove(const std::string& path) {
    std::erase(paths, path);
    std::erase(added, path);
    removed.push_back(path);
}

void RecentFiles::MergeInto(const std::vector<std::string>& kept) {
    paths = added;
    for (const std::string& path : kept) {
        const auto holds = [&](const std::vector<std::string>& list) {
            return std::find(list.begin(), list.end(), path) != list.end();
        };
        if (paths.size() < MaxRecentFiles && !holds(paths) && !holds(removed))
            paths.push_back(path);
    }
}

std::string ShortenedPath(std::string_view path) {
    if (Length(path) <= longestCaption) return std::string(path);
    std::string_view beginning = Beginning(path);
    if (Length(beginning) > longestBeginning) beginning = {};
    const std::size_t room = longestCaption - Length(beginning) - gap.size();
    // The longest end that starts with a separator and fits.
    std::string_view end = Last(path, room);
    const std::size_t separator = end.find_first_of(separators);
    if (separator != std::string_view::npos) end.remove_prefix(separator);
    return std::string(beginning) + std::string(gap) + std::string(end);
}

}  // namespace ladderwise
