// How the calculation tells its caller something: a callback, so that no numeric code opens a box.
// Ground floor, no Qt. A window shows a modal box, the console program writes a line, a test
// records.
#pragma once

#include <functional>
#include <string>

namespace ladderwise {

/// Receives one message: the box's caption and its text, both UTF-8, wording fixed by the sender.
using MessageCallback = std::function<void(const std::string& caption, const std::string& text)>;

}  // namespace ladderwise
