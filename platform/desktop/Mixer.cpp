// SPDX-License-Identifier: MIT
#include "platform/desktop/Mixer.h"

#include <AL/alext.h>

#include <thread>

#include "platform/Error.h"
#include "platform/Time.h"

namespace platform::desktop {

namespace {

constexpr std::int32_t kSearchTicks = 1000;

// Effects are mixed as their files say: no filter for headphones.
constexpr ALCint kContextAttributes[] = {ALC_HRTF_SOFT, ALC_FALSE, 0};

}  // namespace

OpenDevice::OpenDevice() : OpenDevice(alcOpenDevice(nullptr)) {}

OpenDevice::OpenDevice(ALCdevice* device) : device_(device) {
  if (device_ != nullptr) context_ = alcCreateContext(device_, kContextAttributes);
}

OpenDevice::~OpenDevice() {
  if (context_ != nullptr) {
    if (alcGetCurrentContext() == context_) alcMakeContextCurrent(nullptr);
    alcDestroyContext(context_);
  }
  if (device_ != nullptr) alcCloseDevice(device_);
}

bool OpenDevice::IsConnected() const {
  ALCint connected = ALC_TRUE;
  if (alcIsExtensionPresent(device_, "ALC_EXT_disconnect") == ALC_TRUE)
    alcGetIntegerv(device_, ALC_CONNECTED, 1, &connected);
  return connected == ALC_TRUE;
}

void OpenDevice::MakeCurrent() const {
  alcMakeContextCurrent(context_);
}

Mixer::Mixer() : Mixer(std::make_unique<OpenDevice>()) {}

Mixer::Mixer(std::unique_ptr<OpenDevice> device) : device_(std::move(device)) {
  if (!device_->IsOpen()) throw Error("No sound device could be opened.");
  device_->MakeCurrent();
}

bool Mixer::IsReady() {
  if (device_->IsConnected()) return true;
  AdoptFound();
  if (device_->IsConnected()) return true;
  StartSearch();
  return false;
}

void Mixer::AdoptFound() {
  std::unique_ptr<OpenDevice> found(search_->found.exchange(nullptr));
  if (!found) return;
  device_ = std::move(found);
  device_->MakeCurrent();
  ++generation_;
}

void Mixer::StartSearch() {
  if (search_->running || TicksSince(lastSearch_, TickCount()) < kSearchTicks) return;
  lastSearch_ = TickCount();
  search_->running = true;
  std::thread([search = search_] {
    auto device = std::make_unique<OpenDevice>();
    if (device->IsOpen()) search->found = device.release();
    search->running = false;
  }).detach();
}

}  // namespace platform::desktop
