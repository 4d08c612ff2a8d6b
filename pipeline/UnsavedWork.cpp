// The text of unsaved work.
#include "pipeline/UnsavedWork.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "numbers/TextLines.h"

namespace ladderwise {

namespace {

constexpr std::string_view WorkHeader = "Ladderwise unsaved work 1";
constexpr std::string_view WorkEnd = "end";
constexpr std::string_view HexDigits = "0123456789abcdef";

using Words = std::vector<std::string_view>;

// --- writing

std::string Hex(std::string_view bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += HexDigits[byte >> 4];
        text += HexDigits[byte & 15];
    }
    return text;
}

template <typename Number>
std::string NumberText(Number x) {
    std::array<char, 64> room;
    return {room.data(), std::to_chars(room.data(), room.data() + room.size(), x).ptr};
}

template <typename... Parts>
void AddLine(std::string& text, std::string_view key, const Parts&... parts) {
    text += key;
    ((text += ' ', text += parts), ...);
    text += '\n';
}

void AddSlots(std::string& text, const std::string& key, const std::vector<KeptSlot>& slots) {
    for (const KeptSlot& slot : slots)
        AddLine(text, key, slot.Type, NumberText(slot.Values[0]), NumberText(slot.Values[1]),
                NumberText(slot.Values[2]), NumberText(slot.Values[3]));
}

void AddDesign(std::string& text, const std::string& key, const KeptDesign& design) {
    AddLine(text, key, Hex(EncodeRecord(design.Record)));
    AddSlots(text, key + "-slot", design.Ladder);
    AddSlots(text, key + "-calculated", design.Calculated);
    for (const HeldPart& part : design.Held)
        AddLine(text, key + "-held", NumberText(part.Place.Slot), NumberText(part.Place.Row),
                NumberText(part.Value), NumberText(part.Tolerance));
}

template <typename Values>
void AddMarkers(std::string& text, std::string_view key, const Values& values, int count) {
    for (int i = 1; i <= count; ++i)
        AddLine(text, key, NumberText(values[i]));
}

void AddStamp(std::string& text, const char* key, const std::optional<FileStamp>& stamp) {
    if (stamp) AddLine(text, key, NumberText(stamp->Size), Hex(stamp->Digest));
}

void AddMeasured(std::string& text, std::string_view key, const MeasuredFiles& files) {
    for (const MeasuredFile& file : files)
        AddLine(text, key, Hex(file.Path), NumberText(int{file.PortsSwapped}),
                NumberText(file.SourceDelay), NumberText(file.LoadDelay),
                NumberText(int{file.Hidden}), NumberText(file.Colour), Hex(file.Others));
}

void AddLimits(std::string& text, std::string_view key, const LimitLines& lines) {
    for (const LimitLine& line : lines)
        AddLine(text, key, NameOf(line.Kind), NumberText(line.From), NumberText(line.To),
                NumberText(line.Value));
}

// --- reading; what is no such thing is thrown as a NoWork, never out of DecodeWork

struct NoWork {};

std::string BytesOf(std::string_view hex) {
    if (hex.size() % 2 != 0) throw NoWork{};
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const std::size_t high = HexDigits.find(hex[i]), low = HexDigits.find(hex[i + 1]);
        if (high == HexDigits.npos || low == HexDigits.npos) throw NoWork{};
        bytes += static_cast<char>(16 * high + low);
    }
    return bytes;
}

template <typename Number>
Number NumberOf(std::string_view text) {
    Number x{};
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), x);
    if (fault != std::errc() || end != text.data() + text.size()) throw NoWork{};
    return x;
}

DesignRecord KeptRecord(std::string_view hex) {
    auto record = DecodeRecord(BytesOf(hex));
    if (!record) throw NoWork{};
    return std::move(*record);
}

/// The lines of a text by their keys, in their order.
class KeyedLines {
public:
    explicit KeyedLines(const std::vector<std::string_view>& lines) {
        for (const std::string_view line : lines) {
            Words words;
            for (std::size_t at = 0; at <= line.size();) {
                const std::size_t end = std::min(line.find(' ', at), line.size());
                words.push_back(line.substr(at, end - at));
                at = end + 1;
            }
            const std::string_view key = words.front();
            words.erase(words.begin());
            values[key].push_back(std::move(words));
        }
    }

    /// The values of all lines of a key, `count` in each.
    std::vector<Words> All(std::string_view key, std::size_t count) const {
        const auto found = values.find(key);
        if (found == values.end()) return {};
        for (const Words& words : found->second)
            if (words.size() != count) throw NoWork{};
        return found->second;
    }

    std::optional<std::string_view> Optional(std::string_view key) const {
        const auto lines = All(key, 1);
        if (lines.size() > 1) throw NoWork{};
        return lines.empty() ? std::nullopt : std::optional(lines.front().front());
    }

    std::string_view One(std::string_view key) const {
        const auto value = Optional(key);
        if (!value) throw NoWork{};
        return *value;
    }

private:
    std::map<std::string_view, std::vector<Words>> values;
};

std::vector<KeptSlot> KeptSlotsIn(const KeyedLines& lines, const std::string& key) {
    std::vector<KeptSlot> slots;
    for (const Words& words : lines.All(key, 5)) {
        KeptSlot slot{std::string(words[0]), {}};
        for (std::size_t row = 0; row < slot.Values.size(); ++row)
            slot.Values[row] = NumberOf<double>(words[row + 1]);
        slots.push_back(slot);
    }
    if (slots.size() >= NumSlots) throw NoWork{};
    return slots;
}

HeldParts KeptHeldIn(const KeyedLines& lines, const std::string& key) {
    HeldParts held;
    for (const Words& words : lines.All(key, 4)) {
        const HeldPart part{{NumberOf<int>(words[0]), NumberOf<int>(words[1])},
                            NumberOf<double>(words[2]),
                            NumberOf<double>(words[3])};
        const ValuePlace& at = part.Place;
        if (at.Slot < 1 || at.Slot >= NumSlots || at.Row < 0 || at.Row > 3) throw NoWork{};
        held.push_back(part);
    }
    return held;
}

std::optional<KeptDesign> KeptDesignIn(const KeyedLines& lines, const std::string& key) {
    const auto record = lines.Optional(key);
    if (!record) return {};
    return KeptDesign{KeptRecord(*record), KeptSlotsIn(lines, key + "-slot"),
                      KeptHeldIn(lines, key + "-held"), KeptSlotsIn(lines, key + "-calculated")};
}

template <typename Values>
int ReadMarkers(const KeyedLines& lines, std::string_view key, Values& values) {
    const auto found = lines.All(key, 1);
    if (found.size() > MaxMarkers) throw NoWork{};
    int count = 0;
    for (const Words& words : found)
        values[++count] = NumberOf<double>(words.front());
    return count;
}

std::optional<FileStamp> KeptStamp(const KeyedLines& lines, std::string_view key) {
    for (const Words& words : lines.All(key, 2))
        return FileStamp{NumberOf<std::size_t>(words[0]), BytesOf(words[1])};
    return {};
}

MeasuredFiles KeptMeasured(const KeyedLines& lines, std::string_view key) {
    MeasuredFiles files;
    for (const Words& words : lines.All(key, 7))
        files.push_back({BytesOf(words[0]), words[1] == "1", NumberOf<double>(words[2]),
                         NumberOf<double>(words[3]), words[4] == "1", NumberOf<int>(words[5]),
                         BytesOf(words[6])});
    return files;
}

LimitLines KeptLimits(const KeyedLines& lines, std::string_view key) {
    LimitLines limits;
    for (const Words& words : lines.All(key, 4)) {
        const auto kind = LimitKindNamed(words[0]);
        if (!kind) throw NoWork{};
        limits.push_back({*kind, NumberOf<double>(words[1]), NumberOf<double>(words[2]),
                          NumberOf<double>(words[3])});
        if (!FaultOf(limits.back()).empty() || limits.size() > MaxLimitLines) throw NoWork{};
    }
    return limits;
}

MarkerState KeptMarkers(const KeyedLines& lines) {
    MarkerState markers;
    for (const Words& words : lines.All("read-out", 3)) {
        markers.RefFreq = NumberOf<double>(words[0]);
        markers.RefDb = NumberOf<double>(words[1]);
        markers.RefAtPeak = words[2] == "1";
    }
    markers.FreqMarkerCount = ReadMarkers(lines, "frequency-marker", markers.FreqMarkers);
    markers.DbMarkerCount = ReadMarkers(lines, "level-marker", markers.DbMarkers);
    return markers;
}

}  // namespace

std::vector<KeptSlot> KeptSlotsOf(const ElementList& elements, int count) {
    std::vector<KeptSlot> slots;
    for (int slot = 1; slot <= count; ++slot) {
        const CircuitElement& element = elements[slot];
        slots.push_back(
            {InfoOf(element.Type).Name, {element.V1, element.V2, element.V3, element.V4}});
    }
    return slots;
}

std::vector<KeptSlot> KeptLadderOf(const DesignState& design) {
    if (!HasEdits(design)) return {};
    return KeptSlotsOf(design.Elements, SlotsInUse(design));
}

std::vector<KeptSlot> CalculatedLadderOf(const DesignState& design) {
    if (!HasEdits(design)) return {};
    return KeptSlotsOf(*design.CalculatedElements, SlotsInUse(design));
}

ElementList ElementsOf(const std::vector<KeptSlot>& slots) {
    ElementList elements{};
    for (std::size_t i = 0; i < slots.size(); ++i) {
        CircuitElement& element = elements[i + 1];
        for (int code = 0; code < NumElementTypes; ++code)
            if (slots[i].Type == InfoOf(static_cast<ElementType>(code)).Name)
                element.Type = static_cast<ElementType>(code);
        for (int row = 0; row < 4; ++row)
            element.Value(row) = slots[i].Values[static_cast<std::size_t>(row)];
    }
    return elements;
}

bool PutBackLadder(DesignState& design, const KeptDesign& kept) {
    const auto areKnown = [](const ElementList& elements, std::size_t count) {
        return std::all_of(elements.begin() + 1,
                           elements.begin() + 1 + static_cast<std::ptrdiff_t>(count),
                           [](const CircuitElement& element) { return IsElement(element.Type); });
    };
    const ElementList elements = ElementsOf(kept.Ladder);
    if (!areKnown(elements, kept.Ladder.size())) return false;
    design.Elements = elements;
    design.NumElements = static_cast<int>(kept.Ladder.size());
    const ElementList calculated = ElementsOf(kept.Calculated);
    if (kept.Calculated.size() == kept.Ladder.size() &&
        areKnown(calculated, kept.Calculated.size()))
        design.CalculatedElements = calculated;
    return true;
}

std::string EncodeWork(const UnsavedWork& work) {
    std::string text;
    AddLine(text, WorkHeader);
    AddLine(text, "time", NumberText(work.Time));
    AddLine(text, "name", Hex(work.Name));
    AddLine(text, "file", Hex(work.File));
    if (work.Saved) AddDesign(text, "saved", *work.Saved);
    AddStamp(text, "file-stamp", work.Stamps.Design);
    AddStamp(text, "companion-stamp", work.Stamps.Companion);
    AddDesign(text, "design", work.Design);
    if (work.Discarded) AddDesign(text, "discarded", *work.Discarded);
    if (work.Reference) AddDesign(text, "reference", *work.Reference);
    AddLine(text, "reference-shown", NumberText(int{work.ReferenceShown}));
    const MarkerState& markers = work.Markers;
    if (markers.HasReference())
        AddLine(text, "read-out", NumberText(markers.RefFreq), NumberText(markers.RefDb),
                NumberText(int{markers.RefAtPeak}));
    AddMarkers(text, "frequency-marker", markers.FreqMarkers, markers.FreqMarkerCount);
    AddMarkers(text, "level-marker", markers.DbMarkers, markers.DbMarkerCount);
    AddMeasured(text, "measured", work.Measured);
    AddMeasured(text, "saved-measured", work.SavedMeasured);
    AddLimits(text, "limit", work.Limits);
    AddLimits(text, "saved-limit", work.SavedLimits);
    AddLine(text, WorkEnd);
    return text;
}

std::optional<UnsavedWork> DecodeWork(std::string_view text) {
    const auto lines = LinesOf(text);
    if (!text.ends_with('\n') || lines.front() != WorkHeader || lines.back() != WorkEnd) return {};
    try {
        const KeyedLines keyed(lines);
        UnsavedWork work;
        work.Time = NumberOf<std::int64_t>(keyed.One("time"));
        work.Name = BytesOf(keyed.One("name"));
        work.File = BytesOf(keyed.One("file"));
        work.Saved = KeptDesignIn(keyed, "saved");
        work.Stamps = {KeptStamp(keyed, "file-stamp"), KeptStamp(keyed, "companion-stamp")};
        auto design = KeptDesignIn(keyed, "design");
        if (!design) return {};
        work.Design = std::move(*design);
        work.Discarded = KeptDesignIn(keyed, "discarded");
        work.Reference = KeptDesignIn(keyed, "reference");
        work.ReferenceShown = keyed.One("reference-shown") == "1";
        work.Markers = KeptMarkers(keyed);
        work.Measured = KeptMeasured(keyed, "measured");
        work.SavedMeasured = KeptMeasured(keyed, "saved-measured");
        work.Limits = KeptLimits(keyed, "limit");
        work.SavedLimits = KeptLimits(keyed, "saved-limit");
        return work;
    } catch (const NoWork&) {
        return {};
    }
}

}  // namespace ladderwise
