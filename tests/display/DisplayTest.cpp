// SPDX-License-Identifier: MIT
// The surfaces: set-up, failure and release. What is drawn on them stands in the plays.
#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Drawing : public GameTest {};

TEST_F(Drawing, IsSetUpFromTheBitmaps) {
  twin::devices.bitmapSizes["Board.bmp"] = {300, 200};
  InitDisplay();
  std::vector<std::string> shown;
  twin::devices.onShow = [&](const platform::Frame& frame) { shown = twin::Lines(frame); };
  PaintBoardPicture();
  PresentFrame({100, 100, 612, 676});
  EXPECT_EQ(shown, std::vector<std::string>{"Board.bmp 0,0,300,200 0,0,512,576"});
  EXPECT_TRUE(twin::devices.messages.empty());
}

// What was made before a failure stays, the rest is never made, and frames and release still work.
TEST_F(Drawing, FailureLeavesTheRestUndone) {
  const char* const names[] = {"display", "Board.bmp", "gemsheet1024x512.bmp", "Target.bmp"};
  for (int broken = 0; broken < 4; ++broken) {
    SCOPED_TRACE(names[broken]);
    StartScriptedGame();
    ResetDisplay();
    twin::devices.broken.insert(names[broken]);
    InitDisplay();
    ASSERT_EQ(twin::devices.messages.size(), 1U);
    EXPECT_EQ(twin::devices.messages.front(),
              (twin::MessageRecord{
                  "Unexpected error has occurred.\n" + std::string(names[broken]) + " is broken",
                  "This is uncalled-for!-------", platform::MessageIcon::Exclamation,
                  platform::MessageButtons::Ok}));
    EXPECT_EQ(backBuffer != nullptr, broken > 0);
    EXPECT_EQ(boardSurface != nullptr, broken > 1);
    EXPECT_EQ(gemSheet != nullptr, broken > 2);
    EXPECT_EQ(clipper, nullptr);
    Perform("board pick9 keyright frames2 state=5 frames2");
    clearList = fallList = {1, 2, 3};
    ReleaseAll();
    ReleaseAll();
    EXPECT_FALSE(primarySurface || backBuffer || boardSurface || gemSheet || targetSheet || dd);
    EXPECT_EQ(boardCells[5].gem, nullptr);
    EXPECT_TRUE(clearList.empty() && fallList.empty());
    EXPECT_EQ(twin::LiveSounds(), 0);
  }
}

}  // namespace
}  // namespace glimmerfall
