// The rows of a table of limits while they are typed: texts that are limits count, those that are
// none yet stay as they are, with the reason. No Qt.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "design/LimitLine.h"

namespace ladderwise {

struct LimitEntry {
    LimitKind Kind = LimitKind::AttenMin;
    std::array<std::string, 3> Texts{};  ///< from and to in MHz, value in dB or ns
    std::optional<LimitLine> InForce{};  ///< the limit that the row stands for; none in a new one
    std::string Fault{};                 ///< why the texts are none; empty: they are InForce
};

class LimitEntries {
public:
    const std::vector<LimitEntry>& Rows() const { return rows; }

    /// The limits in force, in their order.
    LimitLines Lines() const;

    /// Takes over the limits of a document. Rows that stand for the same limit as before keep what
    /// was typed in them and is none yet; rows that never stood for one stay.
    void Show(const LimitLines& lines);

    /// What was typed. True if the limits in force are others now.
    bool SetKind(std::size_t row, LimitKind kind);
    bool SetText(std::size_t row, std::size_t which, const std::string& text);

    /// A new row at the end, empty.
    void Add();

    void Remove(const std::set<std::size_t>& which);

    /// Rows of a copied table at the end. The reason if there are none, or too many, and then
    /// nothing is changed.
    std::string Paste(const std::string& text);

private:
    bool Read(LimitEntry& entry);

    std::vector<LimitEntry> rows;
};

}  // namespace ladderwise
