// SPDX-License-Identifier: MIT
// The sixteen effects: wave files held in memory, one buffer each, played by name. The start of the
// sounds also starts the music.
#pragma once

#include <memory>

#include "platform/Sound.h"

namespace glimmerfall {

using SoundBufferRef = std::shared_ptr<platform::SoundBuffer>;

extern std::shared_ptr<platform::SoundDevice> ds;  ///< null until LoadSounds has opened it
extern SoundBufferRef primarySoundBuffer;          ///< the device's own mix

// One buffer an effect, in the order of loading; null until LoadSounds has read it.
extern SoundBufferRef sndSelect;     ///< a first gem is picked
extern SoundBufferRef sndBadSwap;    ///< a pick that can't be played, or a swap without a run
extern SoundBufferRef sndGotSet;     ///< a swap made runs of up to 4 gems
extern SoundBufferRef sndGotSetBig;  ///< a swap made runs of 5 gems or more
extern SoundBufferRef sndCombo2;     ///< the chain reaches 2, and so on to 7
extern SoundBufferRef sndCombo3;
extern SoundBufferRef sndCombo4;
extern SoundBufferRef sndCombo5;
extern SoundBufferRef sndCombo6;
extern SoundBufferRef sndCombo7;
extern SoundBufferRef sndExcellent;      ///< the chain reaches 8 or more; a won level's flight ends
extern SoundBufferRef sndGemDrop;        ///< all gems of a fall have landed
extern SoundBufferRef sndExplode;        ///< the shaking ends and the game is lost
extern SoundBufferRef sndGameOver;       ///< the flight ends and the game is lost
extern SoundBufferRef sndTimerBeep;      ///< loaded, but played by the music player from its file
extern SoundBufferRef sndGameOverLevel;  ///< the shaking ends and a level is won, despite its name

/// Starts the music, then opens the sound device and loads the effects from the folder `sounds`
/// beside the program. A device or file that cannot be had is fatal: everything is released, a
/// message tells what is missing, and the program ends with exit code 1.
void LoadSounds();

/// Plays `buffer` from its beginning at 10 dB below full level; nothing while soundOn is false.
void PlayEffect(const SoundBufferRef& buffer);

/// Lets go of the sixteen buffers, the device's mix and the device.
void ReleaseSounds();

}  // namespace glimmerfall
