// SPDX-License-Identifier: MIT
// Windows as the game knows them: by handle alone.
#pragma once

namespace platform {

/// A window or control of the toolkit; null while it does not exist.
using WindowHandle = void*;

}  // namespace platform
