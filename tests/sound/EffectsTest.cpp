// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "rules/state/basGameState.h"
#include "sound/DXAudio.h"
#include "sound/basDirectSoundStuff.h"
#include "tests/platform/ScratchFolder.h"
#include "tests/platform/Twin.h"

namespace glimmerfall {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

const Names kFiles = {"select.wav",  "badswap.wav",  "gotset.wav",    "gotsetbig.wav",
                      "combo2.wav",  "combo3.wav",   "combo4.wav",    "combo5.wav",
                      "combo6.wav",  "combo7.wav",   "excellent.wav", "gemdrop.wav",
                      "explode.wav", "gameover.wav", "timerbeep.wav", "gameoverlevel.wav"};

class EffectsTest : public testing::Test {
 protected:
  EffectsTest() {
    twin::Reset();
    ResetGameState();
    ReleaseSounds();
    fs::create_directories(folder_ / "music");
    std::ofstream(folder_ / "music/track.mp3") << "x";
    twin::SetProgramFolder(folder_.string());
  }
  ~EffectsTest() override {
    music.reset();
    ReleaseSounds();
  }

  const ScratchFolder scratch_;
  const fs::path folder_ = scratch_.Path();
};

TEST_F(EffectsTest, LoadsTheFilesInOrderBehindTheMusicAndPlaysThemAtTheOneLevel) {
  LoadSounds();
  ASSERT_EQ(twin::Graphs().size(), 1U);
  EXPECT_TRUE(twin::Graphs()[0]->running);
  EXPECT_EQ(twin::Graphs()[0]->volume, -900);
  EXPECT_EQ(twin::LiveSounds(), kEffectCount + 2);
  EXPECT_TRUE(twin::PlayedSounds().empty());
  for (int effect = 0; effect < kEffectCount; ++effect)
    PlayEffect(static_cast<Effect>(effect));
  EXPECT_EQ(twin::PlayedSounds(), kFiles);
  Names paths;
  for (const std::string& file : kFiles) {
    paths.push_back((folder_ / "sounds" / file).string());
    EXPECT_EQ(twin::VolumeOf(file), -1000) << file;
    EXPECT_TRUE(fs::exists(TEST_DATA "/../../sounds/" + file)) << file;
  }
  EXPECT_EQ(twin::LoadedSounds(), paths);
  ReleaseSounds();
  EXPECT_EQ(twin::LiveSounds(), 0);
}

TEST_F(EffectsTest, SwitchedOffNothingSoundsAndNothingIsLoadedAnew) {
  LoadSounds();
  soundOn = kFalse;
  PlayEffect(sndSelect);
  EXPECT_TRUE(twin::PlayedSounds().empty());
  EXPECT_TRUE(twin::Graphs()[0]->running);
  soundOn = kTrue;
  PlayEffect(sndSelect);
  PlayEffect(sndSelect);
  EXPECT_EQ(twin::PlayedSounds(), (Names{"select.wav", "select.wav"}));
  EXPECT_EQ(twin::LoadedSounds().size(), kFiles.size());
}

TEST_F(EffectsTest, AnyMissingPieceEndsTheProgramWithItsMessage) {
  Names pieces = kFiles;
  pieces.push_back("sound");
  for (const std::string& piece : pieces) {
    twin::Reset();
    twin::SetProgramFolder(folder_.string());
    twin::Break(piece);
    EXPECT_THROW(LoadSounds(), twin::ProgramEnded) << piece;
    ASSERT_EQ(twin::Messages().size(), 1U) << piece;
    const twin::MessageRecord& message = twin::Messages()[0];
    EXPECT_EQ(message.text, piece + " is broken");
    EXPECT_EQ(message.title, "");
    EXPECT_EQ(message.icon, platform::MessageIcon::None);
    EXPECT_EQ(message.buttons, platform::MessageButtons::Ok);
    EXPECT_EQ(twin::LiveSounds(), 0) << piece;
    const Names& loaded = twin::LoadedSounds();
    EXPECT_EQ(loaded.empty() ? "sound" : fs::path(loaded.back()).filename().string(), piece);
  }
}

}  // namespace
}  // namespace glimmerfall
