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

class EffectsTest : public testing::Test {
 protected:
  EffectsTest() {
    twin::Reset();
    ResetGameState();
    ReleaseSounds();
    fs::create_directories(folder_ / "music");
    std::ofstream(folder_ / "music/track.mp3") << "x";
    twin::devices.folder = folder_.string();
  }
  ~EffectsTest() override {
    music.reset();
    ReleaseSounds();
  }

  const ScratchFolder scratch_;
  const fs::path folder_ = scratch_.Path();
};

TEST_F(EffectsTest, LoadsTheShippedFilesBehindTheMusicAndPlaysThemAtTheOneLevel) {
  LoadSounds();
  ASSERT_EQ(twin::devices.graphs.size(), 1U);
  EXPECT_TRUE(twin::devices.graphs[0]->running);
  EXPECT_EQ(twin::devices.graphs[0]->volume, -900);
  EXPECT_EQ(twin::LiveSounds(), kEffectCount + 2);
  EXPECT_TRUE(twin::devices.played.empty());
  for (int effect = 0; effect < kEffectCount; ++effect)
    PlayEffect(static_cast<Effect>(effect));
  Names paths;
  for (const std::string& file : twin::devices.played) {
    paths.push_back((folder_ / "sounds" / file).string());
    EXPECT_EQ(twin::devices.volumes[file], -1000) << file;
    EXPECT_TRUE(fs::exists(TEST_DATA "/../../sounds/" + file)) << file;
  }
  EXPECT_EQ(twin::devices.loaded, paths);
  ReleaseSounds();
  EXPECT_EQ(twin::LiveSounds(), 0);
}

TEST_F(EffectsTest, SwitchedOffNothingSounds) {
  LoadSounds();
  soundOn = kFalse;
  PlayEffect(sndSelect);
  EXPECT_TRUE(twin::devices.played.empty());
  EXPECT_TRUE(twin::devices.graphs[0]->running);
  soundOn = kTrue;
  PlayEffect(sndSelect);
  PlayEffect(sndSelect);
  EXPECT_EQ(twin::devices.played, (Names{"select.wav", "select.wav"}));
  EXPECT_EQ(twin::devices.loaded.size(), std::size_t{kEffectCount});
}

TEST_F(EffectsTest, AnyMissingPieceEndsTheProgramWithItsMessage) {
  LoadSounds();
  Names pieces = {"sound"};
  for (const std::string& path : twin::devices.loaded)
    pieces.push_back(twin::FileName(path));
  for (const std::string& piece : pieces) {
    twin::Reset();
    twin::devices.folder = folder_.string();
    twin::devices.broken.insert(piece);
    EXPECT_THROW(LoadSounds(), twin::ProgramEnded) << piece;
    ASSERT_EQ(twin::devices.messages.size(), 1U) << piece;
    EXPECT_EQ(twin::devices.messages[0],
              (twin::MessageRecord{piece + " is broken", "", platform::MessageIcon::None,
                                   platform::MessageButtons::Ok}));
    EXPECT_EQ(twin::LiveSounds(), 0) << piece;
    const Names& loaded = twin::devices.loaded;
    EXPECT_EQ(loaded.empty() ? "sound" : twin::FileName(loaded.back()), piece);
  }
}

}  // namespace
}  // namespace glimmerfall
