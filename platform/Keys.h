// SPDX-License-Identifier: MIT
// The keys that the board takes; all others belong to the menu and the toolkit.
#pragma once

namespace platform {

enum class Key {
  Left,
  Right,
  Up,
  Down,
  Home,
  End,
  PageUp,
  PageDown,
  Enter,  ///< or the space bar
  Escape,
  Tell,  ///< the letter T: a screen reader tells how the game stands
};

}  // namespace platform
