// SPDX-License-Identifier: MIT
#include "sound/basDirectSoundStuff.h"

#include <array>

#include "display/basDirectDrawStuff.h"
#include "platform/Error.h"
#include "platform/Messages.h"
#include "platform/Program.h"
#include "rules/state/basGameState.h"
#include "sound/DXAudio.h"

namespace glimmerfall {

std::shared_ptr<platform::SoundDevice> ds;
std::shared_ptr<platform::SoundBuffer> primarySoundBuffer;

namespace {

constexpr int32 kEffectVolume = -1000;  // hundredths of a decibel: the one level of all effects

struct EffectFile {
  Effect effect;
  const char* name;
};
constexpr auto kEffectFiles = std::to_array<EffectFile>({
    {sndSelect, "select.wav"},
    {sndBadSwap, "badswap.wav"},
    {sndGotSet, "gotset.wav"},
    {sndGotSetBig, "gotsetbig.wav"},
    {sndCombo2, "combo2.wav"},
    {sndCombo3, "combo3.wav"},
    {sndCombo4, "combo4.wav"},
    {sndCombo5, "combo5.wav"},
    {sndCombo6, "combo6.wav"},
    {sndCombo7, "combo7.wav"},
    {sndExcellent, "excellent.wav"},
    {sndGemDrop, "gemdrop.wav"},
    {sndExplode, "explode.wav"},
    {sndGameOver, "gameover.wav"},
    {sndTimerBeep, "timerbeep.wav"},
    {sndGameOverLevel, "gameoverlevel.wav"},
});
static_assert(kEffectFiles.size() == kEffectCount);

// By effect; null before they are loaded.
std::array<std::shared_ptr<platform::SoundBuffer>, kEffectCount> buffers;

void StartMusic() {
  music = std::make_unique<DXAudio>();
  music->InitDXAudio();
  music->AddDirectory(platform::ProgramFolder() + "/music/");
  music->StartBackground();
}

void LoadEffects() {
  ds = platform::DirectSoundCreate();
  ds->SetCooperativeLevel(frmMainHandle);
  primarySoundBuffer = ds->CreateSoundBuffer();
  const std::string folder = platform::ProgramFolder() + "/sounds/";
  for (const auto& [effect, name] : kEffectFiles)
    buffers[effect] = ds->CreateSoundBufferFromFile(folder + name);
}

}  // namespace

void LoadSounds() {
  StartMusic();
  try {
    LoadEffects();
  } catch (const platform::Error& error) {
    const std::string description = error.what();
    ReleaseAll();
    platform::ShowMessage(description);
    platform::EndProgram(1);
  }
}

void PlayEffect(Effect effect) {
  const auto& buffer = buffers[effect];
  if (soundOn == kFalse || !buffer) return;
  buffer->SetVolume(kEffectVolume);
  buffer->SetCurrentPosition(0);
  buffer->Play();
}

void ReleaseSounds() {
  buffers = {};
  primarySoundBuffer.reset();
  ds.reset();
}

}  // namespace glimmerfall
