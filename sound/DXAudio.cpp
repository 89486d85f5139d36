// SPDX-License-Identifier: MIT
#include "sound/DXAudio.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>

#include "platform/Events.h"
#include "platform/Program.h"
#include "platform/Random.h"
#include "platform/Time.h"

namespace glimmerfall {

using platform::GraphEvent;

namespace {

// Hundredths of a decibel.
constexpr int32 kFirstMusicVolume = -900;
constexpr int32 kSilence = -10000;
constexpr int32 kFullLevel = 0;
constexpr int32 kForeground2Level = -300;

constexpr std::array<std::string_view, 4> kSoundEndings = {".WAV", ".MP3", ".MID", ".WMA"};
constexpr std::size_t kEndingLength = 4;

bool IsSoundFile(std::string name) {
  if (name.size() < kEndingLength) return false;
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  const std::string ending = name.substr(name.size() - kEndingLength);
  return std::find(kSoundEndings.begin(), kSoundEndings.end(), ending) != kSoundEndings.end();
}

bool HasEnded(platform::FilterGraph& graph) {
  return graph.WaitForCompletion() != GraphEvent::None;
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
  std::error_code failed;
  std::filesystem::directory_iterator entry(path, failed);
  for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
    std::error_code unknown;
    if (entry->is_regular_file(unknown) && IsSoundFile(entry->path().filename().string()))
      AddFile(entry->path().string());
  }
}

void DXAudio::AddFile(const std::string& path) {
  playlist.push_back(path);
}

void DXAudio::StartBackground() {
  if (playlist.size() <= 1) return;
  platform::Randomize(platform::Timer());
  const auto files = static_cast<float64>(playlist.size() - 1);
  OpenBackground(playlist[static_cast<std::size_t>(platform::Rnd() * files) + 1]);
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
  OpenForeground(platform::ProgramFolder() + "/sounds/" + AudioFile, kFullLevel);
  platform::LetEventsRun();
}

void DXAudio::PlayForeground2(const std::string& AudioFile) {
  OpenForeground(platform::ProgramFolder() + "/sound/" + AudioFile, kForeground2Level);
  if (foregroundStartPending == kFalse) return;
  foregroundStartPending = kFalse;
  foregroundControl->Run();
}

// A sound that never came to play gives way without a trace, one that plays goes on for now.
void DXAudio::OpenForeground(const std::string& path, int32 volume) {
  auto graph = platform::CreateFilterGraph();
  if (!graph->RenderFile(path)) return;
  SettleForeground();
  if (!outgoingForeground) outgoingForeground = std::move(foregroundControl);
  foregroundControl = std::move(graph);
  foregroundControl->SetVolume(volume);
  foregroundStartPending = kTrue;
}

// Decides between the new sound and the one that it replaces, once it can be known.
void DXAudio::SettleForeground() {
  if (!foregroundControl) return;
  if (foregroundControl->IsRendered()) {
    outgoingForeground.reset();
  } else if (foregroundControl->WaitForCompletion() == GraphEvent::RenderFailed) {
    foregroundControl = std::move(outgoingForeground);
    foregroundStartPending = kFalse;
  }
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
  backgroundLevel = std::clamp(vol, kSilence, kFullLevel);
  backgroundControl->SetVolume(backgroundLevel);
}

void DXAudio::StopBackground() {
  if (!backgroundControl) return;
  backgroundControl->Stop();
  backgroundControl.reset();
}

void DXAudio::StopForeground() {
  if (!foregroundControl) return;
  outgoingForeground.reset();
  foregroundControl.reset();
  foregroundStartPending = kFalse;
  if (backgroundControl && backgroundControl->GetVolume() < backgroundLevel)
    backgroundControl->SetVolume(backgroundLevel);
}

void DXAudio::Poll() {
  if (foregroundStartPending != kFalse && foregroundControl) {
    foregroundStartPending = kFalse;
    foregroundControl->Run();
  }
  PollBackground();
  SettleForeground();
  if (foregroundControl) foregroundEventCode = foregroundControl->WaitForCompletion();
}

// A file that cannot be rendered ends the music for the run; one that broke off has ended.
void DXAudio::PollBackground() {
  if (!backgroundControl) return;
  backgroundEventCode = backgroundControl->WaitForCompletion();
  if (backgroundEventCode == GraphEvent::None) return;
  StopBackground();
  if (backgroundEventCode != GraphEvent::RenderFailed) StartBackground();
}

int32 DXAudio::InitDXAudio() {
  musicVolume = kFirstMusicVolume;
  playlist.assign(1, "");
  backgroundLevel = 0;
  foregroundStartPending = kFalse;
  return 0;
}

Flag DXAudio::ForegroundIsStopped() {
  return foregroundControl && HasEnded(*foregroundControl) ? kTrue : kFalse;
}

Flag DXAudio::BackgroundIsStopped() {
  return backgroundControl && HasEnded(*backgroundControl) ? kTrue : kFalse;
}

}  // namespace glimmerfall
