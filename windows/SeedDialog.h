// The dialog for the seed of the worst case.
#pragma once

#include <cstdint>
#include <optional>

#include "design/Messages.h"

class QWidget;

namespace ladderwise {

/// Asks for a seed, with the present one to start from. Nothing if the dialog is cancelled, or,
/// with a message, if what was typed is none.
std::optional<std::uint32_t> AskForSeed(QWidget* owner, std::uint32_t present,
                                        const MessageCallback& report);

}  // namespace ladderwise
