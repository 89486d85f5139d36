// SPDX-License-Identifier: MIT
// Message boxes, modal over the whole program.
#pragma once

#include <string>

namespace platform {

enum class MessageIcon { None, Exclamation };
enum class MessageButtons { Ok, YesNo };
enum class MessageAnswer { Ok, Yes, No };

/// Shows `text` and waits for a button; closing a box by other means answers Ok or No. Events run
/// while it stands. An empty title shows the program's own.
MessageAnswer ShowMessage(const std::string& text, const std::string& title = "",
                          MessageIcon icon = MessageIcon::None,
                          MessageButtons buttons = MessageButtons::Ok);

}  // namespace platform
