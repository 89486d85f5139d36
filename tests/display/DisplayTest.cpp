// SPDX-License-Identifier: MIT
// The drawing, by what it asks of the surfaces: set-up and release, gems with their trims, the
// marker, the status strip.
#include <sstream>

#include "display/basBoardCursor.h"
#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "display/basDisplayingGemsAndTarget.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Drawing : public GameTest {
 protected:
  void SetUp() override {
    GameTest::SetUp();
    SetBoard(QuietBoard());
    PaintBoardPicture();
  }

  // The lines drawn since the last call that begin with `head`.
  static std::vector<std::string> Take(const std::string& head) {
    std::vector<std::string> lines = twin::Lines(backBuffer->Drawn());
    std::erase_if(lines, [&](const std::string& line) {
      return !line.starts_with(head) || line.starts_with("Board");
    });
    PaintBoardPicture();
    return lines;
  }
};

TEST_F(Drawing, IsSetUpFromTheBitmaps) {
  twin::SetBitmapSize("Board.bmp", {300, 200});
  InitDisplay();
  EXPECT_EQ(boardRect, (platform::Rect{0, 0, 300, 200}));
  PaintBoardPicture();
  EXPECT_EQ(twin::Lines(backBuffer->Drawn()),
            std::vector<std::string>{"Board.bmp 0,0,300,200 0,0,512,576"});
  EXPECT_TRUE(twin::Messages().empty());
  std::vector<std::string> shown;
  twin::OnShow([&](const platform::Frame& frame) { shown = twin::Lines(frame); });
  PresentFrame({100, 100, 612, 676});
  EXPECT_EQ(shown, twin::Lines(backBuffer->Drawn()));
  ReleaseAll();
  EXPECT_FALSE(primarySurface || backBuffer || boardSurface || gemSheet || targetSheet || clipper ||
               dd);
}

// What was made before a failure stays, the rest is never made, and frames and release still work.
TEST_F(Drawing, FailureLeavesTheRestUndone) {
  const char* const names[] = {"display", "Board.bmp", "gemsheet1024x512.bmp", "Target.bmp"};
  for (int broken = 0; broken < 4; ++broken) {
    SCOPED_TRACE(names[broken]);
    ReleaseAll();
    StartScriptedGame();
    ResetDisplay();
    twin::Break(names[broken]);
    InitDisplay();
    ASSERT_EQ(twin::Messages().size(), 1U);
    const twin::MessageRecord& message = twin::Messages().front();
    EXPECT_EQ(message.text,
              "Unexpected error has occurred.\n" + std::string(names[broken]) + " is broken");
    EXPECT_EQ(message.title, "This is uncalled-for!-------");
    EXPECT_EQ(message.icon, platform::MessageIcon::Exclamation);
    EXPECT_EQ(backBuffer != nullptr, broken > 0);
    EXPECT_EQ(boardSurface != nullptr, broken > 1);
    EXPECT_EQ(gemSheet != nullptr, broken > 2);
    EXPECT_EQ(clipper, nullptr);
    SetBoard(QuietBoard());
    Perform("pick9 frames2");
    gameState = stateClearing;
    clearList = {1, 2, 3};
    Perform("frames2");
    ReleaseAll();
    ReleaseAll();
    EXPECT_FALSE(dd || backBuffer || gemSheet);
    EXPECT_EQ(boardCells[5].gem, nullptr);
    EXPECT_TRUE(clearList.empty());
    EXPECT_EQ(twin::LiveSoundBuffers(), 0);
  }
}

// Gem 3 is of kind 3 and in its fifth spin frame: its sprite is 320,192,384,256.
TEST_F(Drawing, GemsAreTrimmedAtTheEdges) {
  struct Row {
    int16 x;
    int16 y;
    const char* drawn;  // part of the sheet and place, null for nothing
  };
  constexpr Row kRows[] = {
      {100, 512, "320,192,384,256 100,512,164,576"},
      {100, -12, "320,204,384,256 100,0,164,52"},
      {100, -63, "320,255,384,256 100,0,164,1"},
      {100, -64, nullptr},
      {100, 540, "320,192,384,228 100,540,164,576"},
      {100, 576, nullptr},
      {-20, -12, "340,204,384,256 0,0,44,52"},
      {500, 570, "320,192,332,198 500,570,512,576"},
      {-700, 100, nullptr},
  };
  for (const Row& row : kRows) {
    Gem(3).pixX = row.x;
    Gem(3).pixY = row.y;
    Gem(3).spinFrame = 5;
    DrawGems();
    const auto lines = Take("gemsheet");
    ASSERT_EQ(lines.size(), row.drawn != nullptr ? 64U : 63U) << row.x << ',' << row.y;
    if (row.drawn != nullptr) {
      EXPECT_EQ(lines[3], "gemsheet1024x512.bmp " + std::string(row.drawn) + " keyed");
    }
  }
}

TEST_F(Drawing, CellsDecideTheOrder) {
  std::swap(boardCells[0].gem, boardCells[63].gem);
  DrawGems();
  const auto lines = Take("gemsheet");
  EXPECT_NE(lines.front().find(" 448,448,"), std::string::npos) << lines.front();
  EXPECT_NE(lines.back().find(" 0,0,64,64 keyed"), std::string::npos) << lines.back();
}

TEST_F(Drawing, ShrinkingGemsLoseEightPixelsASide) {
  for (int16 shrink = 0; shrink <= 64; shrink = static_cast<int16>(shrink + 4)) {
    Gem(9).shrink = shrink;
    DrawGemsShrinking();
    const auto lines = Take("gemsheet");
    ASSERT_EQ(lines.size(), shrink < 32 ? 64U : 63U);
    std::ostringstream expected;
    expected << "gemsheet1024x512.bmp 0,256,64,320 " << 64 + shrink << ',' << 64 + shrink << ','
             << 128 - shrink << ',' << 128 - shrink << " keyed";
    if (shrink < 32) {
      EXPECT_EQ(lines[9], expected.str());
    }
  }
}

TEST_F(Drawing, MarkerTurnsEveryThirdDrawWhileAGemIsSelected) {
  gameState = stateSelected;
  std::string frames;
  for (int i = 0; i < 19; ++i) {
    DrawTarget(9);
    const std::string line = Take("Target").at(0);
    EXPECT_TRUE(line.ends_with(" 64,64,128,128 keyed")) << line;
    frames += std::to_string(std::stoi(line.substr(line.find("bmp ") + 4)) / 64);
  }
  EXPECT_EQ(frames, "0011122233344455500");
}

// Both stand still under their gems where the step has just moved them, and count on unseen.
TEST_F(Drawing, MarkersOfASwapSlideWithTheGems) {
  perBoard.targetFrame = 4;
  perBoard.targetDelay = 1;
  Perform("down12 move20");
  EXPECT_EQ(perBoard.targetFrame, 4);
  RunFrame();
  EXPECT_EQ(Take("Target"),
            (std::vector<std::string>{"Target.bmp 0,0,64,64 256,68,320,132 keyed",
                                      "Target.bmp 0,0,64,64 256,124,320,188 keyed"}));
  EXPECT_EQ(perBoard.targetFrame, 5);
  EXPECT_EQ(perBoard.targetDelay, 0);
}

TEST_F(Drawing, CursorStandsInTheCornersOfItsCellWhileGemsStand) {
  for (const GameState state : {stateIdle, stateShaking, stateFlyOut, stateEndMessage}) {
    gameState = state;
    boardCursor = {false, 2, 1};
    DrawCursor();
    EXPECT_EQ(Take("").size(), 0U);
    boardCursor.shown = true;
    DrawCursor();
    const std::vector<std::string> boxes = Take("Box");
    if (state == stateFlyOut || state == stateEndMessage) {
      EXPECT_TRUE(boxes.empty());
      continue;
    }
    ASSERT_EQ(boxes.size(), 16U);
    EXPECT_EQ(boxes.front(), "Box 128,64,147,70 0 0");
    EXPECT_EQ(boxes.back(), "Box 187,110,191,127 16777215 16777215");
  }
  gameState = stateIdle;
  RunFrame();
  const std::vector<std::string> frame = twin::Lines(backBuffer->Drawn());
  EXPECT_TRUE(frame[65].starts_with("Box 128,64")) << "over the picture and the 64 gems";
}

TEST_F(Drawing, StatusStripStandsInItsPlace) {
  struct Bar {
    float32 left;
    float32 limit;
    int end;
  };
  constexpr Bar kBars[] = {{0, 50, 20},       {25, 50, 256},   {50, 50, 492},   {21, 50, 218},
                           {5.2F, 5.2F, 492}, {150, 50, 1436}, {-0.05F, 50, 20}};
  score = 1234567;
  level = 12;
  for (const Bar& bar : kBars) {
    timeLeft = bar.left;
    timeLimit = bar.limit;
    DrawStatus();
    std::vector<std::string> expected = {"Text 194,533 200 Score: 1234567",
                                         "Text 194,531 61440 Score: 1234567",
                                         "Text 1,533 200 Level: 12",
                                         "Text 1,531 61440 Level: 12",
                                         "Box 20,521," + std::to_string(bar.end) + ",531 61440 200",
                                         "Box 20,521,493,522 61440 61440",
                                         "Box 20,531,493,532 61440 61440",
                                         "Box 492,521,493,532 61440 61440",
                                         "Box 20,521,21,532 61440 61440"};
    if (bar.end == 20) expected.erase(expected.begin() + 4);  // nothing is left of the bar
    EXPECT_EQ(Take(""), expected) << bar.left << " of " << bar.limit;
  }
}

}  // namespace
}  // namespace glimmerfall
