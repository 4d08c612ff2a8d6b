// Writer and reader of JSON.
#include "exchange/Json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "numbers/PlainNumbers.h"
#include "numbers/Utf8.h"

namespace ladderwise {

namespace {

constexpr int JsonDigits = 17;  ///< any double survives the way to text and back
constexpr int DeepestNesting = 64;
constexpr std::string_view HexDigits = "0123456789abcdef";

void AppendJson(std::string& text, const JsonValue& value, int depth);

void AppendObject(std::string& text, const JsonObject& object, int depth) {
    const std::string indent(static_cast<std::size_t>(2 * depth), ' ');
    text += "{";
    for (std::size_t i = 0; i < object.size(); ++i) {
        text += (i > 0 ? ",\n  " : "\n  ") + indent + JsonQuoted(object[i].first) + ": ";
        AppendJson(text, object[i].second, depth + 1);
    }
    text += object.empty() ? "}" : "\n" + indent + "}";
}

void AppendList(std::string& text, const JsonList& list, int depth) {
    const bool broken = std::any_of(list.begin(), list.end(), [](const JsonValue& item) {
        return item.As<JsonObject>() != nullptr;
    });
    const std::string indent(static_cast<std::size_t>(2 * depth), ' ');
    text += "[";
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (broken)
            text += (i > 0 ? ",\n  " : "\n  ") + indent;
        else if (i > 0)
            text += ", ";
        AppendJson(text, list[i], depth + 1);
    }
    text += broken ? "\n" + indent + "]" : "]";
}

void AppendJson(std::string& text, const JsonValue& value, int depth) {
    if (const auto* object = value.As<JsonObject>())
        AppendObject(text, *object, depth);
    else if (const auto* list = value.As<JsonList>())
        AppendList(text, *list, depth);
    else if (const auto* numeral = value.As<JsonNumeral>())
        text += numeral->Text;
    else if (const auto* words = value.As<std::string>())
        text += JsonQuoted(*words);
    else if (const auto* truth = value.As<bool>())
        text += *truth ? "true" : "false";
    else
        text += "null";
}

struct JsonFault {
    std::size_t At;
    const char* Reason;
};

/// Reads from the front of a text by the grammar of RFC 8259.
class JsonReader {
public:
    explicit JsonReader(std::string_view bytes) : text(bytes) {}

    JsonValue Whole() {
        JsonValue value = Value(0);
        SkipBlanks();
        if (at < text.size()) Fail("something stands behind the end");
        return value;
    }

private:
    std::string_view text;
    std::size_t at = 0;

    [[noreturn]] void Fail(const char* reason) const { throw JsonFault{at, reason}; }
    char Next() const { return at < text.size() ? text[at] : '\0'; }
    void SkipBlanks() {
        while (at < text.size() &&
               std::string_view(" \t\r\n").find(text[at]) != std::string_view::npos)
            ++at;
    }
    bool Take(std::string_view word) {
        if (text.substr(at, word.size()) != word) return false;
        at += word.size();
        return true;
    }

    JsonValue Value(int depth) {
        if (depth > DeepestNesting) Fail("it is nested too deeply");
        SkipBlanks();
        if (Next() == '{') return Object(depth);
        if (Next() == '[') return List(depth);
        if (Next() == '"') return Text();
        if (Take("true")) return true;
        if (Take("false")) return false;
        if (Take("null")) return {};
        return Numeral();
    }

    JsonValue Object(int depth) {
        JsonObject object;
        ++at;
        SkipBlanks();
        if (Take("}")) return object;
        do {
            SkipBlanks();
            if (Next() != '"') Fail("a name in quotes is missing");
            std::string name = Text();
            SkipBlanks();
            if (!Take(":")) Fail("a colon is missing");
            object.emplace_back(std::move(name), Value(depth + 1));
            SkipBlanks();
        } while (Take(","));
        if (!Take("}")) Fail("a brace is missing");
        return object;
    }

    JsonValue List(int depth) {
        JsonList list;
        ++at;
        SkipBlanks();
        if (Take("]")) return list;
        do {
            list.push_back(Value(depth + 1));
            SkipBlanks();
        } while (Take(","));
        if (!Take("]")) Fail("a bracket is missing");
        return list;
    }

    void Digits() {
        if (Next() < '0' || Next() > '9') Fail("this is no value");
        while (Next() >= '0' && Next() <= '9')
            ++at;
    }

    JsonValue Numeral() {
        const std::size_t start = at;
        Take("-");
        if (!Take("0")) Digits();
        if (Take(".")) Digits();
        if (Take("e") || Take("E")) {
            if (!Take("+")) Take("-");
            Digits();
        }
        JsonValue value;
        value.Content = JsonNumeral{std::string(text.substr(start, at - start))};
        return value;
    }

    char32_t Unit() {
        std::uint32_t unit = 0;
        const std::string_view digits = text.substr(at, 4);
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
        if (error != std::errc() || end != digits.data() + 4) Fail("\\u is of four digits");
        at += 4;
        return unit;
    }

    std::string Escaped() {
        constexpr std::string_view letters = "\"\\/bfnrt", meant = "\"\\/\b\f\n\r\t";
        const std::size_t which = letters.find(Next());
        if (at < text.size() && which != std::string_view::npos) {
            ++at;
            return {meant[which]};
        }
        if (!Take("u")) Fail("a backslash before this means nothing");
        const char32_t high = Unit();
        if (high < 0xd800 || high > 0xdbff || !Take("\\u")) return Utf8Of(high);
        const char32_t low = Unit();
        if (low < 0xdc00 || low > 0xdfff) return Utf8Of(high) + Utf8Of(low);
        return Utf8Of(0x10000 + ((high - 0xd800) << 10) + (low - 0xdc00));
    }

    std::string Text() {
        std::string words;
        for (++at; Next() != '"';) {
            if (at >= text.size()) Fail("a quote is missing");
            if (static_cast<unsigned char>(Next()) < 0x20) Fail("a control character in a text");
            if (Take("\\"))
                words += Escaped();
            else
                words += text[at++];
        }
        ++at;
        return CleanUtf8(words);
    }
};

}  // namespace

JsonValue::JsonValue(double number)
    : Content(JsonNumeral{std::isfinite(number) ? ExactNumber(number) : "null"}) {}

const JsonValue* JsonValue::Find(std::string_view name) const {
    const auto* object = As<JsonObject>();
    if (!object) return nullptr;
    const auto found = std::find_if(object->begin(), object->end(),
                                    [&](const auto& member) { return member.first == name; });
    return found == object->end() ? nullptr : &found->second;
}

bool JsonValue::ReadNumber(double& x) const {
    const auto* numeral = As<JsonNumeral>();
    double read = 0.0;
    if (!numeral || ReadPlainNumber(numeral->Text, read) != NumberFault::None) return false;
    if (!std::isfinite(read)) return false;
    x = read;
    return true;
}

void SetMember(JsonObject& object, const std::string& name, JsonValue value) {
    for (auto& [present, content] : object) {
        if (present != name) continue;
        content = std::move(value);
        return;
    }
    object.emplace_back(name, std::move(value));
}

std::string JsonNumber(double x) {
    return std::isfinite(x) ? RoundedNumber(x, JsonDigits) : "null";
}

std::string JsonQuoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : CleanUtf8(text)) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (c == '\n') {
            quoted += "\\n";
        } else if (static_cast<unsigned char>(c) < 0x20) {
            quoted += "\\u00";
            quoted += HexDigits[static_cast<unsigned char>(c) >> 4];
            quoted += HexDigits[static_cast<unsigned char>(c) & 15];
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

std::string WriteJson(const JsonValue& value) {
    std::string text;
    AppendJson(text, value, 0);
    return text + "\n";
}

JsonResult ReadJson(std::string_view text) {
    if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
    try {
        return {JsonReader(text).Whole(), {}};
    } catch (const JsonFault& fault) {
        const std::size_t end = std::min(fault.At, text.size());
        const auto lines =
            std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n');
        return {{}, "line " + std::to_string(lines + 1) + ": " + fault.Reason};
    }
}

}  // namespace ladderwise
