// SPDX-License-Identifier: MIT
#include "sound/DXAudio.h"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "tests/platform/ScratchFolder.h"
#include "tests/platform/Twin.h"

namespace glimmerfall {
namespace {

namespace fs = std::filesystem;
using platform::GraphEvent;
using Calls = std::vector<std::string>;

class DXAudioTest : public testing::Test {
 protected:
  DXAudioTest() {
    for (const char* name : {"sounds", "sound", "music"})
      fs::create_directories(folder_ / name);
    twin::Reset();
    ResetGameState();
    twin::devices.folder = folder_.string();
    MakeFile("sounds/a.wav");
    MakeFile("sounds/b.wav");
    audio_.InitDXAudio();
  }

  void MakeFile(const std::string& name) { std::ofstream(folder_ / name) << "x"; }
  static twin::GraphRecord& GraphAt(std::size_t index) { return *twin::devices.graphs.at(index); }

  const ScratchFolder scratch_;
  const fs::path folder_ = scratch_.Path();
  DXAudio audio_;
};

// Turkish, made where the test is: capital letters by its rules turn ".mid" into ".MİD".
class InTurkish {
 public:
  InTurkish() {
    const std::string make = "localedef -i tr_TR -f ISO-8859-9 " + folder_.Path("tr_TR");
    EXPECT_EQ(std::system(make.c_str()), 0);
    setenv("LOCPATH", folder_.Path().c_str(), 1);
    EXPECT_NE(std::setlocale(LC_ALL, "tr_TR"), nullptr);
    EXPECT_NE(std::toupper('i'), 'I');
  }
  InTurkish(const InTurkish&) = delete;
  InTurkish& operator=(const InTurkish&) = delete;
  ~InTurkish() {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
  }

 private:
  const ScratchFolder folder_;
};

TEST_F(DXAudioTest, TakesTheFourTypesOfOneFolderInAnyLanguage) {
  const InTurkish turkish;
  const std::vector<std::string> taken = {"A.mp3", "B.WAV", "C.Mid", "c.MID", "D.wma", ".wav"};
  for (const std::string& name : taken)
    MakeFile("music/" + name);
  for (const char* name : {"E.ogg", "F.wave", "wav", "mp3"})
    MakeFile(std::string("music/") + name);
  fs::create_directories(folder_ / "music/folder.wav");
  MakeFile("music/folder.wav/inner.wav");

  audio_.AddDirectory((folder_ / "music").string() + "/");
  std::map<std::string, int> heard;
  for (std::size_t i = 0; i < 1000; ++i) {
    audio_.StartBackground();
    ++heard[GraphAt(i).path];
  }
  EXPECT_EQ(heard.size(), taken.size());
  for (const std::string& name : taken)
    EXPECT_GT(heard[(folder_ / "music" / name).string()], 100) << name;
  heard.clear();
  for (int second = 0; second < 100; ++second) {
    twin::Reset();
    twin::SetTimer(second);
    audio_.StartBackground();
    ++heard[GraphAt(0).path];
  }
  EXPECT_EQ(heard.size(), taken.size()) << "the clock chooses the first track";
}

TEST_F(DXAudioTest, StaysSilentWithoutMusic) {
  audio_.AddFile("/1.wav");
  musicVolume = 0;
  EXPECT_EQ(audio_.InitDXAudio(), 0);
  EXPECT_EQ(musicVolume, -900);
  audio_.AddDirectory((folder_ / "nowhere").string() + "/");
  audio_.AddDirectory((folder_ / "music").string() + "/");
  twin::ScriptRnd({0.5});
  audio_.StartBackground();
  audio_.Poll();
  EXPECT_TRUE(twin::devices.graphs.empty());
  EXPECT_EQ(twin::ScriptedRndLeft(), 1U);
  EXPECT_EQ(audio_.BackgroundIsStopped(), kFalse);
}

TEST_F(DXAudioTest, ANewStartForgetsLevelAndPendingSound) {
  audio_.PlayBackground("/1.wav");
  audio_.BackgroundVolume(-3000);
  audio_.PlayForeground("a.wav");
  audio_.InitDXAudio();
  audio_.Poll();
  EXPECT_FALSE(GraphAt(1).running);
  audio_.StopForeground();
  EXPECT_EQ(GraphAt(0).calls.back(), "SetVolume 0");
}

TEST_F(DXAudioTest, FollowsAnEndedOrBrokenTrackButNotAnUnplayableOne) {
  audio_.AddFile("/1.wav");
  audio_.StartBackground();
  for (const GraphEvent end : {GraphEvent::Complete, GraphEvent::ErrorAbort}) {
    audio_.Poll();
    const std::size_t graphs = twin::devices.graphs.size();
    musicVolume = -static_cast<int32>(graphs);
    GraphAt(graphs - 1).event = end;
    EXPECT_EQ(audio_.BackgroundIsStopped(), kTrue);
    audio_.Poll();
    ASSERT_EQ(twin::devices.graphs.size(), graphs + 1);
    EXPECT_EQ(GraphAt(graphs - 1).calls.back(), "Stop");
    EXPECT_FALSE(GraphAt(graphs - 1).alive);
    EXPECT_EQ(GraphAt(graphs).volume, musicVolume);
    EXPECT_EQ(audio_.BackgroundIsStopped(), kFalse);
  }
  GraphAt(2).event = GraphEvent::RenderFailed;
  EXPECT_EQ(audio_.BackgroundIsStopped(), kFalse);
  audio_.Poll();
  twin::devices.broken.insert("1.wav");
  for (const std::size_t graphs : {3U, 4U}) {
    audio_.Poll();
    ASSERT_EQ(twin::devices.graphs.size(), graphs);
    EXPECT_FALSE(twin::devices.graphs.back()->alive);
    audio_.StartBackground();
  }
  EXPECT_TRUE(GraphAt(3).calls.empty());
}

TEST_F(DXAudioTest, PausesAndResumesOnlyWhatPlays) {
  audio_.PauseBackground();
  EXPECT_EQ(audio_.BackgroundPaused(), kFalse);
  audio_.PlayBackground("/1.wav");
  audio_.ResumeBackground();
  audio_.PauseBackground();
  audio_.PauseBackground();
  EXPECT_EQ(audio_.BackgroundPaused(), kTrue);
  audio_.ResumeBackground();
  audio_.PauseBackground();
  EXPECT_EQ(GraphAt(0).calls, (Calls{"SetVolume -900", "Run", "Pause", "Run", "Pause"}));
  audio_.StopBackground();
  audio_.ResumeBackground();
  EXPECT_EQ(audio_.BackgroundPaused(), kTrue);
}

TEST_F(DXAudioTest, HoldsTheLevelToItsRangeAndRaisesTheMusicToItAfterAForegroundSound) {
  audio_.BackgroundVolume(-5000);  // no stream: not even noted
  audio_.PlayBackground("/1.wav");
  audio_.StopForeground();
  EXPECT_EQ(GraphAt(0).calls.back(), "Run") << "there was no sound to stop";
  const auto levelAfterASound = [&] {
    audio_.PlayForeground("a.wav");
    audio_.StopForeground();
    EXPECT_FALSE(twin::devices.graphs.back()->alive);
    return GraphAt(0).calls.back();
  };
  EXPECT_EQ(levelAfterASound(), "SetVolume 0");
  for (const auto& [asked, held] : {std::pair{-20000, -10000}, {100, 0}, {-3000, -3000}}) {
    audio_.BackgroundVolume(asked);
    const std::string expected = "SetVolume " + std::to_string(held);
    EXPECT_EQ(GraphAt(0).calls.back(), expected);
    EXPECT_EQ(levelAfterASound(), expected);
  }
}

TEST_F(DXAudioTest, StartsAForegroundSoundWithTheNextPoll) {
  EXPECT_EQ(audio_.ForegroundIsStopped(), kFalse);
  soundOn = kFalse;
  musicVolume = -10000;
  for (const bool atOnce : {true, false}) {
    twin::devices.renderAtOnce = atOnce;
    const std::size_t index = twin::devices.graphs.size();
    bool ranEarly = true;
    twin::ScheduleAtPlace(1, [&] { ranEarly = GraphAt(index).running; });
    const long places = twin::PlacesPassed();
    audio_.PlayForeground("a.wav");
    EXPECT_EQ(twin::PlacesPassed(), places + 1);
    EXPECT_FALSE(ranEarly);
    audio_.Poll();
    audio_.Poll();
    EXPECT_EQ(GraphAt(index).calls, (Calls{"SetVolume 0", "Run"}));
  }
}

TEST_F(DXAudioTest, OnlyAPlayableFileReplacesARunningSound) {
  MakeFile("sounds/refused.wav");
  twin::devices.broken.insert("refused.wav");
  const auto start = [&](const char* file) -> twin::GraphRecord& {
    audio_.PlayForeground(file);
    twin::GraphRecord& record = *twin::devices.graphs.back();
    audio_.Poll();
    return record;
  };
  start("a.wav");
  for (const char* file : {"missing.wav", "refused.wav"})
    start(file);
  EXPECT_TRUE(GraphAt(0).running);

  twin::devices.renderAtOnce = false;
  twin::GraphRecord& damaged = start("b.wav");
  damaged.event = GraphEvent::RenderFailed;
  audio_.Poll();
  EXPECT_TRUE(GraphAt(0).running);
  EXPECT_FALSE(damaged.alive);

  twin::GraphRecord& next = start("b.wav");
  EXPECT_TRUE(GraphAt(0).running);
  next.rendered = true;
  audio_.Poll();
  EXPECT_FALSE(GraphAt(0).alive);
  EXPECT_TRUE(next.running);
}

TEST_F(DXAudioTest, KeepsAnEndedForegroundSoundUntilTheNext) {
  audio_.PlayForeground("a.wav");
  audio_.Poll();
  EXPECT_EQ(audio_.ForegroundIsStopped(), kFalse);
  GraphAt(0).event = GraphEvent::Complete;
  audio_.Poll();
  EXPECT_EQ(audio_.ForegroundIsStopped(), kTrue);
  EXPECT_TRUE(GraphAt(0).alive);
  audio_.PlayForeground("b.wav");
  EXPECT_FALSE(GraphAt(0).alive);
  EXPECT_FALSE(GraphAt(1).running);
  EXPECT_EQ(audio_.ForegroundIsStopped(), kFalse);
  GraphAt(1).event = GraphEvent::Complete;
  twin::devices.renderAtOnce = false;
  audio_.PlayForeground("a.wav");
  EXPECT_EQ(audio_.ForegroundIsStopped(), kFalse);
}

TEST_F(DXAudioTest, TheSecondForegroundMethodStartsAtOnceFromItsOwnFolder) {
  MakeFile("sound/refused.wav");
  twin::devices.broken.insert("refused.wav");
  MakeFile("sound/c.wav");
  const long places = twin::PlacesPassed();
  audio_.PlayForeground2("a.wav");
  EXPECT_TRUE(twin::devices.graphs.empty());
  audio_.PlayForeground2("refused.wav");
  audio_.PlayForeground2("c.wav");
  EXPECT_EQ(GraphAt(1).path, (folder_ / "sound/c.wav").string());
  EXPECT_EQ(GraphAt(1).calls, (Calls{"SetVolume -300", "Run"}));
  EXPECT_EQ(twin::PlacesPassed(), places);
  audio_.PlayForeground("a.wav");
  audio_.PlayForeground2("c.wav");
  EXPECT_FALSE(GraphAt(2).alive);
}

TEST_F(DXAudioTest, ItsEndTakesBothStreamsWithIt) {
  {
    DXAudio other;
    other.PlayBackground("/1.wav");
    other.PlayForeground("a.wav");
  }
  EXPECT_FALSE(GraphAt(0).alive);
  EXPECT_EQ(GraphAt(0).calls, (Calls{"SetVolume -900", "Run", "SetVolume 0", "Stop"}));
  EXPECT_FALSE(GraphAt(1).alive);
}

}  // namespace
}  // namespace glimmerfall
