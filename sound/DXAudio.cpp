// SPDX-License-Identifier: MIT
#include "sound/DXAudio.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/Events.h"
#include "platform/Files.h"
#include "platform/Program.h"
#include "platform/Random.h"
#include "platform/Time.h"
#include "platform/Volume.h"

namespace glimmerfall {

std::unique_ptr<DXAudio> music;

namespace {

using platform::GraphEvent;

// Levels in hundredths of a decibel.
constexpr int32 kStartMusicVolume = -900;
constexpr int32 kForegroundVolume = platform::kFullLevel;
constexpr int32 kForeground2Volume = -300;

constexpr auto kSoundFileEndings =
    std::to_array<std::string_view>({".WAV", ".MP3", ".MID", ".WMA"});

// By ASCII: in the player's own language the capital of "i" may be another letter than "I".
char UpperCase(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool IsSoundFile(const std::string& name) {
  constexpr std::size_t kEndingLength = 4;
  if (name.size() < kEndingLength) return false;
  std::string ending = name.substr(name.size() - kEndingLength);
  for (char& letter : ending)
    letter = UpperCase(letter);
  return std::find(kSoundFileEndings.begin(), kSoundFileEndings.end(), ending) !=
         kSoundFileEndings.end();
}

}  // namespace

DXAudio::~DXAudio() {
  StopForeground();
  StopBackground();
}

Flag DXAudio::BackgroundPaused() const {
  return backgroundIsPaused;
}

void DXAudio::AddDirectory(const std::string& path) {
  for (const std::string& name : platform::ListFiles(path))
    if (IsSoundFile(name)) AddFile(path + name);
}

void DXAudio::AddFile(const std::string& path) {
  playlist.push_back(path);
}

void DXAudio::StartBackground() {
  if (playlist.size() <= 1) return;
  platform::Randomize(platform::Timer());
  OpenBackground(playlist[1 + platform::RandomBelow(playlist.size() - 1)]);
}

void DXAudio::PlayBackground(const std::string& File) {
  OpenBackground(File);
}

void DXAudio::OpenBackground(const std::string& path) {
  backgroundControl = platform::CreateFilterGraph();
  if (!backgroundControl->RenderFile(path)) {
    backgroundControl.reset();
    return;
  }
  backgroundControl->SetVolume(musicVolume);
  backgroundControl->Run();
}

void DXAudio::PlayForeground(const std::string& AudioFile) {
  const std::string path = platform::ProgramFolder() + "/sounds/" + AudioFile;
  if (OpenForeground(path, kForegroundVolume)) foregroundStartPending = kTrue;
  SettleForeground();
  platform::LetEventsRun();
}

void DXAudio::PlayForeground2(const std::string& AudioFile) {
  const std::string path = platform::ProgramFolder() + "/sound/" + AudioFile;
  if (!OpenForeground(path, kForeground2Volume)) return;
  foregroundOpening->Run();
  SettleForeground();
}

bool DXAudio::OpenForeground(const std::string& path, int32 volume) {
  if (!platform::IsFile(path)) return false;
  const auto graph = platform::CreateFilterGraph();
  if (!graph->RenderFile(path)) return false;
  graph->SetVolume(volume);
  foregroundOpening = graph;
  return true;
}

void DXAudio::SettleForeground() {
  if (!foregroundOpening) return;
  if (foregroundOpening->WaitForCompletion() == GraphEvent::RenderFailed) {
    foregroundOpening.reset();
  } else if (foregroundOpening->IsRendered()) {
    foregroundControl = std::exchange(foregroundOpening, nullptr);
  }
}

void DXAudio::StartPendingForeground() {
  if (foregroundStartPending == kFalse) return;
  foregroundStartPending = kFalse;
  const auto& graph = foregroundOpening ? foregroundOpening : foregroundControl;
  if (graph) graph->Run();
}

void DXAudio::PauseBackground() {
  if (!backgroundControl || backgroundIsPaused != kFalse) return;
  backgroundIsPaused = kTrue;
  backgroundControl->Pause();
}

void DXAudio::ResumeBackground() {
  if (!backgroundControl || backgroundIsPaused == kFalse) return;
  backgroundIsPaused = kFalse;
  backgroundControl->Run();
}

void DXAudio::BackgroundVolume(int32 vol) {
  if (!backgroundControl) return;
  backgroundLevel = std::clamp(vol, platform::kSilence, platform::kFullLevel);
  backgroundControl->SetVolume(backgroundLevel);
}

void DXAudio::StopBackground() {
  if (!backgroundControl) return;
  backgroundControl->Stop();
  backgroundControl.reset();
}

void DXAudio::StopForeground() {
  if (!foregroundControl && !foregroundOpening) return;
  foregroundControl.reset();
  foregroundOpening.reset();
  if (backgroundControl && backgroundControl->GetVolume() < backgroundLevel)
    backgroundControl->SetVolume(backgroundLevel);
}

void DXAudio::Poll() {
  SettleForeground();
  StartPendingForeground();
  FollowBackground();
  if (foregroundControl) foregroundEventCode = foregroundControl->WaitForCompletion();
}

void DXAudio::FollowBackground() {
  if (!backgroundControl) return;
  backgroundEventCode = backgroundControl->WaitForCompletion();
  if (backgroundEventCode == GraphEvent::None) return;
  StopBackground();
  // A file that could not be rendered ends the music: nothing tries the next one.
  if (backgroundEventCode != GraphEvent::RenderFailed) StartBackground();
}

int32 DXAudio::InitDXAudio() {
  musicVolume = kStartMusicVolume;
  playlist.assign(1, "");
  backgroundLevel = platform::kFullLevel;
  foregroundStartPending = kFalse;
  return 0;
}

Flag DXAudio::ForegroundIsStopped() {
  SettleForeground();
  if (!foregroundControl || foregroundOpening) return kFalse;
  foregroundEventCode = foregroundControl->WaitForCompletion();
  return foregroundEventCode != GraphEvent::None ? kTrue : kFalse;
}

Flag DXAudio::BackgroundIsStopped() {
  if (!backgroundControl) return kFalse;
  backgroundEventCode = backgroundControl->WaitForCompletion();
  const bool ended =
      backgroundEventCode != GraphEvent::None && backgroundEventCode != GraphEvent::RenderFailed;
  return ended ? kTrue : kFalse;
}

}  // namespace glimmerfall
