// SPDX-License-Identifier: MIT
// The drawing, by what it asks of the surfaces: set-up and release, gems with their trims, the
// marker, the status strip.
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
    twin::LogDrawing(true);
  }

  // The lines logged since the last call that begin with `head`.
  static std::vector<std::string> Take(const std::string& head) {
    std::vector<std::string> lines;
    for (const std::string& line : twin::DrawingLog())
      if (line.starts_with(head)) lines.push_back(line);
    twin::DrawingLog().clear();
    return lines;
  }
};

TEST_F(Drawing, IsSetUpInItsOrder) {
  twin::SetBitmapSize("Board.bmp", {300, 200});
  InitDisplay();
  EXPECT_EQ(Take(""), (std::vector<std::string>{
                          "SetCooperativeLevel", "CreatePrimarySurface", "CreateSurface 512,576",
                          "CreateSurfaceFromFile images/Board.bmp",
                          "CreateSurfaceFromFile images/gemsheet1024x512.bmp",
                          "CreateSurfaceFromFile images/Target.bmp", "CreateClipper",
                          "SetClipper screen", "SetColorKey Board.bmp 0 0",
                          "SetColorKey gemsheet1024x512.bmp 0 0", "SetColorKey Target.bmp 0 0"}));
  EXPECT_EQ(boardRect, (platform::Rect{0, 0, 300, 200}));
  PaintBoardPicture();
  EXPECT_EQ(Take("Blt"), std::vector<std::string>{"Blt back 0,0,512,576 Board.bmp 0,0,300,200"});
  EXPECT_TRUE(twin::Messages().empty());
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
    const char* place;
    const char* part;
  };
  constexpr Row kRows[] = {
      {100, 512, "100,512", "320,192,384,256"},
      {100, -12, "100,0", "320,204,384,256"},
      {100, -63, "100,0", "320,255,384,256"},
      {100, -64, "100,-64", "320,192,384,256 refused"},
      {100, 540, "100,540", "320,192,384,228"},
      {100, 576, "100,576", "320,192,384,256 refused"},
      {-20, -12, "0,0", "340,204,384,256"},
      {500, 570, "500,570", "320,192,332,198"},
      {-700, 100, "-700,100", "320,192,384,256 refused"},
  };
  for (const Row& row : kRows) {
    Gem(3).pixX = row.x;
    Gem(3).pixY = row.y;
    Gem(3).spinFrame = 5;
    DrawGems();
    const auto lines = Take("BltFast");
    ASSERT_EQ(lines.size(), 64U);
    EXPECT_EQ(lines[3], std::string("BltFast ") + row.place + " gemsheet1024x512.bmp " + row.part);
  }
}

TEST_F(Drawing, CellsDecideTheOrder) {
  std::swap(boardCells[0].gem, boardCells[63].gem);
  DrawGems();
  const auto lines = Take("BltFast");
  EXPECT_TRUE(lines.front().starts_with("BltFast 448,448 "));
  EXPECT_TRUE(lines.back().starts_with("BltFast 0,0 "));
}

TEST_F(Drawing, ShrinkingGemsLoseEightPixelsASide) {
  for (int16 shrink = 0; shrink <= 64; shrink = static_cast<int16>(shrink + 4)) {
    Gem(9).shrink = shrink;
    DrawGemsShrinking();
    const int low = 64 + shrink;
    const int high = 128 - shrink;
    const std::string corner = std::to_string(low) + ',' + std::to_string(low) + ',' +
                               std::to_string(high) + ',' + std::to_string(high);
    EXPECT_EQ(Take("Blt")[9], "Blt back " + corner + " gemsheet1024x512.bmp 0,256,64,320 keyed" +
                                  (shrink >= 32 ? " refused" : ""));
  }
}

TEST_F(Drawing, MarkerTurnsEveryThirdDrawWhileAGemIsSelected) {
  gameState = stateSelected;
  std::string frames;
  for (int i = 0; i < 19; ++i) {
    DrawTarget(9);
    const std::string line = Take("Blt").at(0);
    EXPECT_TRUE(line.starts_with("Blt back 64,64,128,128 Target.bmp ")) << line;
    frames += std::to_string(std::stoi(line.substr(line.find("bmp ") + 4)) / 64);
  }
  EXPECT_EQ(frames, "0011122233344455500");
}

// Both stand still under their gems where the step has just moved them, and count on unseen.
TEST_F(Drawing, MarkersOfASwapSlideWithTheGems) {
  targetFrame = 4;
  targetDelay = 1;
  Perform("down12 move20");
  EXPECT_EQ(targetFrame, 4);
  RunFrame();
  EXPECT_EQ(Take("Blt back 256"),
            (std::vector<std::string>{"Blt back 256,68,320,132 Target.bmp 0,0,64,64 keyed",
                                      "Blt back 256,124,320,188 Target.bmp 0,0,64,64 keyed"}));
  EXPECT_EQ(targetFrame, 5);
  EXPECT_EQ(targetDelay, 0);
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
    EXPECT_EQ(boxes.front(), "Box 128,64,147,70");
    EXPECT_EQ(boxes.back(), "Box 187,110,191,127");
  }
  gameState = stateIdle;
  RunFrame();
  const std::vector<std::string> frame = Take("B");
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
    std::vector<std::string> drawn = Take("");
    std::erase_if(drawn, [](const std::string& line) {
      return line == "Transparent 1" || line == "Font Arial 35";
    });
    EXPECT_EQ(drawn, (std::vector<std::string>{
                         "ForeColor 200", "Text 194,533 Score: 1234567", "ForeColor 61440",
                         "Text 194,531 Score: 1234567", "ForeColor 200", "Text 1,533 Level: 12",
                         "ForeColor 61440", "Text 1,531 Level: 12", "FillColor 200",
                         "Box 20,521," + std::to_string(bar.end) + ",531", "Line 20,521,492,521",
                         "Line 20,531,492,531", "Line 492,521,492,531", "Line 20,521,20,531"}))
        << bar.left << " of " << bar.limit;
  }
}

}  // namespace
}  // namespace glimmerfall
