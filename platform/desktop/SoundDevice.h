// SPDX-License-Identifier: MIT
// The sound device on a mixer of the caller's choice.
#pragma once

#include <memory>

#include "platform/Sound.h"
#include "platform/desktop/Mixer.h"

namespace platform::desktop {

std::shared_ptr<SoundDevice> CreateSoundDevice(std::shared_ptr<Mixer> mixer);

}  // namespace platform::desktop
