// The list of design files used last, and how menus show them. Several instances of the program
// share one list. No Qt, no disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ladderwise {

inline constexpr std::size_t MaxRecentFiles = 4;

/// Full path names, most recent first, none twice.
class RecentFiles {
public:
    /// Puts a path at the top; the fifth falls out.
    void Add(const std::string& path);
    void Remove(const std::string& path);

    /// Takes `kept`, the list that other instances have left meanwhile, and does to it what was
    /// done here: what was added here stands above, what was removed here is gone.
    void MergeInto(const std::vector<std::string>& kept);

    const std::vector<std::string>& Paths() const { return paths; }

private:
    std::vector<std::string> paths;
    std::vector<std::string> added;  ///< here and not removed again, most recent first
    std::vector<std::string> removed;
};

/// A path for captions: as it is up to 48 characters; a longer one with its beginning (up to the
/// first folder) and as much of its end as fits, split at slashes or backslashes, with " ... "
/// between them. A file name too long for that keeps its end.
std::string ShortenedPath(std::string_view path);

}  // namespace ladderwise
