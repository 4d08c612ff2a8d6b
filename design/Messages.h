// How the calculation tells its caller something: a callback, so that no numeric code opens a box.
// Ground floor, no Qt. A window shows a modal box, the console program writes a line, a test
// records.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace ladderwise {

/// Receives one message: the box's caption and its text, both UTF-8, wording fixed by the sender.
using MessageCallback = std::function<void(const std::string& caption, const std::string& text)>;

/// `report` for the first message only, copies of the result included: a program hands it to what
/// may complain once in a run.
inline MessageCallback OnceOnly(MessageCallback report) {
    return [report = std::move(report), told = std::make_shared<bool>(false)](
               const std::string& caption, const std::string& text) {
        if (!std::exchange(*told, true) && report) report(caption, text);
    };
}

}  // namespace ladderwise
