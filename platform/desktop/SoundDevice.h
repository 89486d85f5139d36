// SPDX-License-Identifier: MIT
// The sound device of the desktop.
#pragma once

#include "platform/Sound.h"
#include "platform/desktop/OpenedDevice.h"

namespace platform::desktop {

/// A sound device through `driver`. Throws Error if it does not open.
std::shared_ptr<SoundDevice> CreateSoundDevice(DeviceDriver driver);

}  // namespace platform::desktop
