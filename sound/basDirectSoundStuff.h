// SPDX-License-Identifier: MIT
// The effects: wave files held in memory, one buffer each, played by name. The start of the
// sounds also starts the music.
#pragma once

#include <memory>

#include "platform/Sound.h"

namespace glimmerfall {

/// The effects, in the order of loading.
enum Effect {
  sndSelect,     ///< a first gem is picked
  sndBadSwap,    ///< a pick that can't be played, or a swap without a run
  sndGotSet,     ///< a swap made runs of up to 4 gems
  sndGotSetBig,  ///< a swap made runs of 5 gems or more
  sndCombo2,     ///< the chain reaches 2, and so on to 7
  sndCombo3,
  sndCombo4,
  sndCombo5,
  sndCombo6,
  sndCombo7,
  sndExcellent,      ///< the chain reaches 8 or more; a won level's flight ends
  sndGemDrop,        ///< all gems of a fall have landed
  sndExplode,        ///< the shaking ends and the game is lost
  sndGameOver,       ///< the flight ends and the game is lost
  sndTimerBeep,      ///< loaded, but played by the music player from its file
  sndGameOverLevel,  ///< the shaking ends and a level is won, despite its name
  kEffectCount       ///< no effect, but how many there are
};

extern std::shared_ptr<platform::SoundDevice> ds;  ///< null until LoadSounds has opened it
extern std::shared_ptr<platform::SoundBuffer> primarySoundBuffer;  ///< the device's own mix

/// Starts the music, then opens the sound device and loads the effects from the folder `sounds`
/// beside the program. A device or file that cannot be had is fatal: everything is released, a
/// message tells what is missing, and the program ends with exit code 1.
void LoadSounds();

/// Plays `effect` from its beginning at 10 dB below full level; nothing while soundOn is false or
/// before LoadSounds has read it.
void PlayEffect(Effect effect);

/// Lets go of the buffers, the device's mix and the device.
void ReleaseSounds();

}  // namespace glimmerfall
