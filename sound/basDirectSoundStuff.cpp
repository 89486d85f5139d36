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
SoundBufferRef primarySoundBuffer;
SoundBufferRef sndSelect;
SoundBufferRef sndBadSwap;
SoundBufferRef sndGotSet;
SoundBufferRef sndGotSetBig;
SoundBufferRef sndCombo2;
SoundBufferRef sndCombo3;
SoundBufferRef sndCombo4;
SoundBufferRef sndCombo5;
SoundBufferRef sndCombo6;
SoundBufferRef sndCombo7;
SoundBufferRef sndExcellent;
SoundBufferRef sndGemDrop;
SoundBufferRef sndExplode;
SoundBufferRef sndGameOver;
SoundBufferRef sndTimerBeep;
SoundBufferRef sndGameOverLevel;

namespace {

constexpr int32 kEffectVolume = -1000;  // hundredths of a decibel: the one level of all effects

struct Effect {
  SoundBufferRef* buffer;
  const char* file;
};

constexpr std::array<Effect, 16> kEffects = {{
    {&sndSelect, "select.wav"},
    {&sndBadSwap, "badswap.wav"},
    {&sndGotSet, "gotset.wav"},
    {&sndGotSetBig, "gotsetbig.wav"},
    {&sndCombo2, "combo2.wav"},
    {&sndCombo3, "combo3.wav"},
    {&sndCombo4, "combo4.wav"},
    {&sndCombo5, "combo5.wav"},
    {&sndCombo6, "combo6.wav"},
    {&sndCombo7, "combo7.wav"},
    {&sndExcellent, "excellent.wav"},
    {&sndGemDrop, "gemdrop.wav"},
    {&sndExplode, "explode.wav"},
    {&sndGameOver, "gameover.wav"},
    {&sndTimerBeep, "timerbeep.wav"},
    {&sndGameOverLevel, "gameoverlevel.wav"},
}};

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
  for (const Effect& effect : kEffects)
    *effect.buffer = ds->CreateSoundBufferFromFile(folder + effect.file);
}

}  // namespace

void LoadSounds() {
  StartMusic();
  try {
    LoadEffects();
  } catch (const platform::Error& error) {
    const std::string description = error.what();
    ReleaseAll();
    platform::ShowMessage(description, "", platform::MessageIcon::None,
                          platform::MessageButtons::Ok);
    platform::EndProgram(1);
  }
}

void PlayEffect(const SoundBufferRef& buffer) {
  if (soundOn == kFalse || !buffer) return;
  buffer->SetVolume(kEffectVolume);
  buffer->SetCurrentPosition(0);
  buffer->Play();
}

void ReleaseSounds() {
  for (const Effect& effect : kEffects)
    effect.buffer->reset();
  primarySoundBuffer.reset();
  ds.reset();
}

}  // namespace glimmerfall
