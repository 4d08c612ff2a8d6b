// JSON (RFC 8259) as a tree that keeps what it does not know: members in their order, numbers as
// they were written. No Qt, no disk.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ladderwise {

struct JsonValue;

/// A number as text, so that writing it again loses nothing.
struct JsonNumeral {
    std::string Text;
};
using JsonList = std::vector<JsonValue>;
using JsonObject = std::vector<std::pair<std::string, JsonValue>>;

struct JsonValue {
    std::variant<std::monostate, bool, JsonNumeral, std::string, JsonList, JsonObject> Content{};

    JsonValue() = default;
    JsonValue(bool truth) : Content(truth) {}
    JsonValue(double number);
    JsonValue(int number) : JsonValue(static_cast<double>(number)) {}
    JsonValue(std::string text) : Content(std::move(text)) {}
    JsonValue(const char* text) : Content(std::string(text)) {}
    JsonValue(JsonList list) : Content(std::move(list)) {}
    JsonValue(JsonObject object) : Content(std::move(object)) {}

    /// The member of an object; null if there is none.
    const JsonValue* Find(std::string_view name) const;

    /// The content if it is of this kind, else null.
    template <typename Kind>
    const Kind* As() const {
        return std::get_if<Kind>(&Content);
    }
    /// The number; false leaves `x` alone.
    bool ReadNumber(double& x) const;
};

/// Puts a member into an object, in the place of one of the same name or behind the last.
void SetMember(JsonObject& object, const std::string& name, JsonValue value);

/// 17 significant digits, "null" for what is no finite number.
std::string JsonNumber(double x);

/// A text in quotes, escaped; U+FFFD for every byte that is no UTF-8.
std::string JsonQuoted(std::string_view text);

/// Over several lines, objects indented by two blanks; lists without objects on one line.
std::string WriteJson(const JsonValue& value);

struct JsonResult {
    JsonValue Value{};
    std::string Error{};  ///< "line 3: ..."; empty if Value holds the text
};

/// Reads one value with nothing behind it; a byte-order mark is passed over. Objects and lists
/// nested deeper than 64 are refused.
JsonResult ReadJson(std::string_view text);

}  // namespace ladderwise
