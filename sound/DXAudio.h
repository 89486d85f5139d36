// SPDX-License-Identifier: MIT
// The music player: a background stream that runs through the files of the folder `music` in random
// order, and a foreground stream for single named sounds. No method reports a failure; what fails
// is simply not heard.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/FilterGraph.h"
#include "rules/state/basGameState.h"

namespace glimmerfall {

class DXAudio {
 public:
  /// Whether the background stream was paused last; kept over the end of a stream.
  Flag BackgroundPaused() const;
  /// Adds the .wav, .mp3, .mid and .wma files of the folder `path`, in any case of letters, not
  /// those of its subfolders, in the order that the file system gives. `path` ends in a separator.
  void AddDirectory(const std::string& path);
  void AddFile(const std::string& path);
  /// Plays a random file of the playlist, each equally likely, at musicVolume.
  void StartBackground();
  /// Opens `AudioFile` of the folder `sounds`, to be started by the next Poll, at full level. A
  /// sound that still plays is replaced, unless the file does not exist or cannot be played. Lets
  /// events run once.
  void PlayForeground(const std::string& AudioFile);
  void PauseBackground();
  void ResumeBackground();
  /// Sets the level of a background stream in hundredths of a decibel, held to -10000..0. Without a
  /// stream nothing changes.
  void BackgroundVolume(int32 vol);
  void StopBackground();
  void StopForeground();
  /// Plays the one file at the full path `File` as the background stream, at musicVolume.
  void PlayBackground(const std::string& File);
  /// The regular step of each frame: starts a pending sound, and follows an ended track by a fresh
  /// one. Never waits.
  void Poll();
  /// Back to an empty playlist, and musicVolume to its start value. Always 0.
  int32 InitDXAudio();
  /// As PlayForeground, but from the folder `sound`, at -300 hundredths of a decibel, started at
  /// once, and no events run.
  void PlayForeground2(const std::string& AudioFile);
  /// True when a foreground stream exists and has ended.
  Flag ForegroundIsStopped();
  /// True when a background stream exists and has ended.
  Flag BackgroundIsStopped();

  DXAudio() = default;
  DXAudio(const DXAudio&) = delete;
  DXAudio& operator=(const DXAudio&) = delete;
  ~DXAudio();

 private:
  void OpenBackground(const std::string& path);
  void FollowBackground();
  /// Opens the file at `path` beside the sound that may still play. False if it does not exist.
  bool OpenForeground(const std::string& path, int32 volume);
  /// Lets an opened sound take the place of the earlier one as soon as it proves playable.
  void SettleForeground();
  void StartPendingForeground();

  std::shared_ptr<platform::FilterGraph> backgroundControl;
  std::shared_ptr<platform::FilterGraph> foregroundControl;
  std::shared_ptr<platform::FilterGraph> foregroundOpening;  ///< not yet known to be playable
  platform::GraphEvent backgroundEventCode = platform::GraphEvent::None;  ///< None: not ended
  platform::GraphEvent foregroundEventCode = platform::GraphEvent::None;
  Flag backgroundIsPaused = kFalse;
  int32 backgroundLevel = 0;  ///< hundredths of a decibel, last set by BackgroundVolume
  std::vector<std::string> playlist = {""};  ///< full paths; slot 0 stays empty
  Flag foregroundStartPending = kFalse;      ///< opened, and waits for the next Poll to run
};

extern std::unique_ptr<DXAudio> music;  ///< null before the sounds are loaded

}  // namespace glimmerfall
