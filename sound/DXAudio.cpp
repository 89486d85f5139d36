// SPDX-License-Identifier: MIT
#include "sound/DXAudio.h"

namespace glimmerfall {
DXAudio::~DXAudio() = default;
void DXAudio::AddDirectory(const std::string&) {}
void DXAudio::StartBackground() {}
void DXAudio::PlayForeground(const std::string&) {}
void DXAudio::BackgroundVolume(int32) {}
void DXAudio::Poll() {}
int32 DXAudio::InitDXAudio() {
  musicVolume = -900;
  return 0;
}
}  // namespace glimmerfall
