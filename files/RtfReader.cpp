// The reader of rich text: groups, control words and text in one pass.
#include "files/RtfReader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <utility>

namespace ladderwise {

namespace {

/// Where the text of a group goes.
enum class Destination { Body, Nowhere, FontTable, Title, Instruction, Bookmark };

/// What a control word does.
enum class Act {
    Text,  ///< stands for a text
    Par,
    Pard,
    Plain,
    Bold,
    Italic,
    Underline,
    NoUnderline,
    Script,  ///< value: 1, -1 or 0
    Outline,
    Font,
    FixedPitch,
    Unicode,
    Fallback,
    Binary,
    InTable,
    HeaderRow,
    RowStart,
    Cell,
    Row,
    ListMark,
    To  ///< value: a Destination
};

struct Word {
    std::string_view Name;
    Act Does;
    int Value = 0;
    std::string_view Text{};
};

constexpr int To(Destination destination) {
    return static_cast<int>(destination);
}

// clang-format off
constexpr Word words[] = {
    {"par", Act::Par}, {"sect", Act::Par}, {"page", Act::Par}, {"pard", Act::Pard}, {"plain", Act::Plain},
    {"b", Act::Bold}, {"i", Act::Italic}, {"ul", Act::Underline}, {"ulnone", Act::NoUnderline},
    {"super", Act::Script, 1}, {"sub", Act::Script, -1}, {"nosupersub", Act::Script, 0},
    {"outlinelevel", Act::Outline}, {"f", Act::Font}, {"fmodern", Act::FixedPitch},
    {"u", Act::Unicode}, {"uc", Act::Fallback}, {"bin", Act::Binary},
    {"intbl", Act::InTable}, {"trhdr", Act::HeaderRow}, {"trowd", Act::RowStart}, {"cell", Act::Cell}, {"row", Act::Row},
    {"line", Act::Text, 0, "\n"}, {"tab", Act::Text, 0, "\t"}, {"bullet", Act::Text, 0, "\u2022"},
    {"emdash", Act::Text, 0, "\u2014"}, {"endash", Act::Text, 0, "\u2013"},
    {"lquote", Act::Text, 0, "\u2018"}, {"rquote", Act::Text, 0, "\u2019"},
    {"ldblquote", Act::Text, 0, "\u201c"}, {"rdblquote", Act::Text, 0, "\u201d"},
    {"emspace", Act::Text, 0, "\u2003"}, {"enspace", Act::Text, 0, "\u2002"},
    {"pntext", Act::ListMark}, {"listtext", Act::ListMark},
    {"fonttbl", Act::To, To(Destination::FontTable)}, {"title", Act::To, To(Destination::Title)},
    {"fldinst", Act::To, To(Destination::Instruction)}, {"bkmkstart", Act::To, To(Destination::Bookmark)},
    {"colortbl", Act::To, To(Destination::Nowhere)}, {"stylesheet", Act::To, To(Destination::Nowhere)},
    {"info", Act::To, To(Destination::Nowhere)}, {"pict", Act::To, To(Destination::Nowhere)},
    {"object", Act::To, To(Destination::Nowhere)}, {"header", Act::To, To(Destination::Nowhere)},
    {"footer", Act::To, To(Destination::Nowhere)}, {"footnote", Act::To, To(Destination::Nowhere)}};
// clang-format on

/// Windows-1252 from 0x80 to 0x9f; the rest of it is Latin-1. 0: not assigned.
constexpr std::array<char32_t, 32> upperControls = {
    0x20ac, 0,      0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017d, 0,      0,      0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0,      0x017e, 0x0178};

constexpr std::size_t LongestLink = 200;  ///< bytes; a longer target is none
constexpr char32_t Replacement = 0xfffd;  ///< stands for what is no character

std::string Utf8(char32_t c) {
    if (c == 0 || c > 0x10ffff || (c >= 0xd800 && c < 0xe000)) c = Replacement;
    if (c < 0x80) return {static_cast<char>(c)};
    const auto tail = [c](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3f)); };
    if (c < 0x800) return {static_cast<char>(0xc0 | c >> 6), tail(0)};
    if (c < 0x10000) return {static_cast<char>(0xe0 | c >> 12), tail(6), tail(0)};
    return {static_cast<char>(0xf0 | c >> 18), tail(12), tail(6), tail(0)};
}

char32_t FromWindows1252(unsigned byte) {
    if (byte < 0x80 || byte >= 0xa0) return byte;
    const char32_t c = upperControls[byte - 0x80];
    return c == 0 ? Replacement : c;
}

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Stands for itself, as it is in UTF-8.
bool IsPlain(char c) {
    return c >= ' ' && c <= '~' && c != '\\' && c != '{' && c != '}';
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int HexDigit(char c) {
    if (IsDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// The target of a HYPERLINK field: HYPERLINK "file" \l "bookmark", either part alone or both.
std::string LinkTarget(std::string_view instruction) {
    if (instruction.find("HYPERLINK") == std::string_view::npos) return {};
    std::string file, bookmark;
    bool local = false;
    for (std::size_t at = 0; at < instruction.size(); ++at) {
        if (instruction.substr(at, 2) == "\\l") local = true;
        if (instruction[at] != '"') continue;
        const std::size_t end = std::min(instruction.find('"', at + 1), instruction.size());
        const std::string_view quoted = instruction.substr(at + 1, end - at - 1);
        (local ? bookmark : file) = quoted;
        at = end;
    }
    const std::string target = bookmark.empty() ? file : file + "#" + bookmark;
    return target.size() <= LongestLink ? target : "";
}

class Reader {
public:
    explicit Reader(std::string_view source) : bytes(source) {}

    RtfDocument Read() {
        if (bytes.substr(0, 5) != "{\\rtf") return {};
        document.IsRtf = true;
        while (at < bytes.size())
            Step();
        state = {};  // whatever was left open
        EndParagraph();
        return std::move(document);
    }

private:
    /// What a group hands down to the groups within it, and gets back at its end.
    struct State {
        Destination Where = Destination::Body;
        RtfRun Look;
        int FallbackLength = 1;  ///< characters that stand for \u in readers without Unicode
        int HeadingLevel = 0;
        bool InTable = false;
    };

    void Step() {
        const char c = bytes[at++];
        if (c == '{') {
            fallbackLeft = 0;
            if (++depth <= MaxRtfDepth) stack.push_back(state);
        } else if (c == '}') {
            fallbackLeft = 0;
            if (depth > 0 && depth-- <= MaxRtfDepth) CloseGroup();
        } else if (c == '\\') {
            Control();
        } else if (IsPlain(c) && fallbackLeft == 0) {
            const std::size_t start = at - 1;
            while (at < bytes.size() && IsPlain(bytes[at]))
                ++at;
            Append(bytes.substr(start, at - start));
        } else if (c != '\r' && c != '\n' && c != '\0') {
            Put(FromWindows1252(static_cast<unsigned char>(c)));
        }
    }

    void CloseGroup() {
        const State closed = std::move(state);
        state = std::move(stack.back());
        stack.pop_back();
        if (closed.Where == state.Where) return;
        if (closed.Where == Destination::Instruction) {
            state.Look.Link = LinkTarget(collected);
        } else if (closed.Where == Destination::Bookmark) {
            if (!collected.empty()) block.Bookmarks.push_back(collected);
        } else if (closed.Where == Destination::Title) {
            document.Title = collected;
        }
    }

    void Control() {
        if (at >= bytes.size()) return;
        if (IsLetter(bytes[at])) return ControlWord();
        const char symbol = bytes[at++];
        if (symbol == '\'') {
            const int high = at < bytes.size() ? HexDigit(bytes[at]) : -1;
            const int low = at + 1 < bytes.size() ? HexDigit(bytes[at + 1]) : -1;
            if (high < 0 || low < 0) return;
            at += 2;
            Put(FromWindows1252(static_cast<unsigned>(16 * high + low)));
        } else if (symbol == '*') {
            // The next word names a destination that may be skipped; those known are not.
            optional = true;
        } else if (symbol == '~') {
            Put(0xa0);
        } else if (symbol == '_') {
            Put(0x2011);
        } else if (symbol == '\n' || symbol == '\r') {
            EndParagraph();
        } else if (symbol == '\\' || symbol == '{' || symbol == '}') {
            Put(static_cast<unsigned char>(symbol));
        }
    }

    void ControlWord() {
        const std::size_t start = at;
        while (at < bytes.size() && IsLetter(bytes[at]))
            ++at;
        const std::string_view name = bytes.substr(start, at - start);
        const bool negative = at < bytes.size() && bytes[at] == '-';
        std::size_t digits = at + (negative ? 1 : 0);
        bool given = false;
        std::int64_t value = 0;
        for (; digits < bytes.size() && IsDigit(bytes[digits]); ++digits, given = true)
            value = std::min<std::int64_t>(10 * value + (bytes[digits] - '0'), LargestParameter);
        if (given) at = digits;
        if (at < bytes.size() && bytes[at] == ' ') ++at;
        const auto* const known = std::find_if(std::begin(words), std::end(words),
                                               [name](const Word& w) { return w.Name == name; });
        const bool skippable = std::exchange(optional, false);
        if (depth > MaxRtfDepth) {
            if (name == "bin") SkipBytes(value);
        } else if (known != std::end(words)) {
            Do(*known, given, negative ? -value : value);
        } else if (skippable) {
            state.Where = Destination::Nowhere;
        }
    }

    void Do(const Word& word, bool given, std::int64_t value) {
        const bool on = !given || value != 0;
        switch (word.Does) {
            case Act::Text:
                return Append(word.Text);
            case Act::Par:
                return EndParagraph();
            case Act::Pard:
                state.HeadingLevel = 0;
                state.InTable = false;
                return;
            case Act::Plain:
                state.Look = {{}, false, false, false, false, 0, state.Look.Link};
                return;
            case Act::Bold:
                state.Look.Bold = on;
                return;
            case Act::Italic:
                state.Look.Italic = on;
                return;
            case Act::Underline:
                state.Look.Underline = on;
                return;
            case Act::NoUnderline:
                state.Look.Underline = false;
                return;
            case Act::Script:
                state.Look.Script = on ? word.Value : 0;
                return;
            case Act::Outline:
                state.HeadingLevel = static_cast<int>(std::clamp<std::int64_t>(value, 0, 8)) + 1;
                return;
            case Act::Font:
                font = value;
                if (state.Where != Destination::FontTable)
                    state.Look.Code = fixedPitch.count(value) != 0;
                return;
            case Act::FixedPitch:
                if (state.Where == Destination::FontTable) fixedPitch.insert(font);
                return;
            case Act::Unicode:
                return PutUtf16(static_cast<std::uint16_t>(value));
            case Act::Fallback:
                state.FallbackLength = static_cast<int>(std::clamp<std::int64_t>(value, 0, 100));
                return;
            case Act::Binary:
                return SkipBytes(value);
            case Act::InTable:
                state.InTable = true;
                return;
            case Act::HeaderRow:
                headerRow = true;
                return;
            case Act::RowStart:
                headerRow = false;
                return;
            case Act::Cell:
                return EndCell();
            case Act::Row:
                return EndRow();
            case Act::ListMark:
                listItem = listItem || state.Where == Destination::Body;
                state.Where = Destination::Nowhere;
                return;
            case Act::To:
                // Within what is skipped nothing is of interest but the title.
                if (state.Where == Destination::Body || word.Value == To(Destination::Title)) {
                    state.Where = static_cast<Destination>(word.Value);
                    collected.clear();
                }
                return;
        }
    }

    void SkipBytes(std::int64_t count) {
        if (count > 0)
            at += std::min<std::size_t>(static_cast<std::size_t>(count), bytes.size() - at);
    }

    /// One half of a character that UTF-16 needs two for waits for the other.
    void PutUtf16(std::uint16_t unit) {
        fallbackLeft = 0;
        if (unit >= 0xd800 && unit < 0xdc00) {
            highSurrogate = unit;
        } else if (unit >= 0xdc00 && unit < 0xe000 && highSurrogate != 0) {
            Append(Utf8(0x10000 + ((std::exchange(highSurrogate, 0) - 0xd800u) << 10) +
                        (unit - 0xdc00u)));
        } else {
            Append(Utf8(unit));
        }
        fallbackLeft = state.FallbackLength;
    }

    void Put(char32_t c) {
        if (fallbackLeft > 0) {
            --fallbackLeft;
            return;
        }
        Append(Utf8(c));
    }

    void Append(std::string_view text) {
        optional = false;
        const std::size_t size = text.size() + state.Look.Link.size();
        if (depth > MaxRtfDepth || textSize + size > MaxRtfText) return;
        if (state.Where != Destination::Body) {
            if (state.Where != Destination::Nowhere && state.Where != Destination::FontTable) {
                collected += text;
                textSize += size;
            }
            return;
        }
        textSize += size;
        std::vector<RtfRun>& runs = block.Cells[0];
        if (runs.empty() || !runs.back().LooksLike(state.Look)) runs.push_back(state.Look);
        runs.back().Text += text;
    }

    /// Hands the paragraph over; an empty one is no more than space between two others.
    void EndParagraph() {
        if (state.Where != Destination::Body) return;
        if (state.InTable) return Append("\n");
        if (block.Cells[0].empty()) {
            listItem = false;
            return;
        }
        if (state.HeadingLevel > 0) {
            block.Kind = RtfBlockKind::Heading;
            block.Level = state.HeadingLevel;
        } else if (listItem) {
            block.Kind = RtfBlockKind::ListItem;
        }
        Emit();
    }

    void EndCell() {
        if (state.Where != Destination::Body) return;
        if (cells.size() < MaxCells) cells.push_back(std::move(block.Cells[0]));
        block.Cells[0].clear();
        listItem = false;
    }

    void EndRow() {
        if (state.Where != Destination::Body || cells.empty()) return;
        block.Kind = RtfBlockKind::TableRow;
        block.Level = headerRow ? 1 : 0;
        block.Cells = std::exchange(cells, {});
        Emit();
    }

    void Emit() {
        document.Blocks.push_back(std::exchange(block, {}));
        listItem = false;
    }

    static constexpr std::int64_t LargestParameter = 1u << 31;
    static constexpr std::size_t MaxCells = 64;  ///< of one row; more are dropped

    std::string_view bytes;
    std::size_t at = 0;
    RtfDocument document;
    State state;
    std::vector<State> stack;
    int depth = 0;  ///< of groups, skipped ones included
    RtfBlock block;
    std::vector<std::vector<RtfRun>> cells;  ///< complete ones of the current row
    std::string collected;                   ///< text of a destination beside the body
    std::set<std::int64_t> fixedPitch;
    std::int64_t font = 0;
    std::uint16_t highSurrogate = 0;
    int fallbackLeft = 0;
    std::size_t textSize = 0;
    bool optional = false;
    bool headerRow = false;
    bool listItem = false;
};

}  // namespace

bool RtfRun::LooksLike(const RtfRun& other) const {
    return Bold == other.Bold && Italic == other.Italic && Underline == other.Underline &&
           Code == other.Code && Script == other.Script && Link == other.Link;
}

std::string RtfBlock::PlainText() const {
    std::string text;
    for (const std::vector<RtfRun>& cell : Cells) {
        if (!text.empty()) text += ' ';
        for (const RtfRun& run : cell)
            text += run.Text;
    }
    return text;
}

RtfDocument ReadRtf(std::string_view bytes) {
    return Reader(bytes).Read();
}

}  // namespace ladderwise
