// SPDX-License-Identifier: MIT
#include "display/basBoardText.h"

#include <cmath>

#include "display/basDirectDrawStuff.h"
#include "rules/state/basGameState.h"
#include "rules/state/basWholeNumber.h"

namespace glimmerfall {

namespace {

constexpr platform::Colour kShadowColour = platform::RGB(200, 0, 0);
constexpr platform::Colour kTextColour = platform::RGB(0, 240, 0);
constexpr int32 kShadowOffset = 2;  // down, and in the message to the right as well

// The status text, in pixels.
constexpr int32 kScoreShift = 50;  // right of the middle
constexpr int32 kLevelLeft = 1;
constexpr int32 kBottomGap = 5;

// The end message: offsets in pixels from the place of the centred score.
constexpr int32 kLevelRise = 50;
constexpr int32 kClickDrop = 100;
constexpr int32 kClickLeft = 25;

constexpr platform::Rect kBar = {20, 521, 492, 531};  // the clock bar, outline included

void DrawBoardText(int32 x, int32 y, const std::string& text, platform::Colour colour) {
  if (!backBuffer) return;
  backBuffer->SetFontTransparency(true);
  backBuffer->SetForeColor(colour);
  backBuffer->SetFont(mainWindowFont);
  backBuffer->DrawText(x, y, text);
}

enum class Shadow { Below, BelowRight };

void DrawShadowedText(int32 x, int32 y, const std::string& text, Shadow shadow) {
  const int32 right = shadow == Shadow::BelowRight ? kShadowOffset : 0;
  DrawBoardText(x + right, y + kShadowOffset, text, kShadowColour);
  DrawBoardText(x, y, text, kTextColour);
}

std::string ScoreText() {
  return "Score: " + WholeNumber(score);
}

std::string LevelText(int shownLevel) {
  return "Level: " + std::to_string(shownLevel);
}

// May lie beyond the frame: Relaxing keeps whatever time a longer game has left.
int32 BarEnd() {
  const float32 scale = static_cast<float32>(kBar.Width()) / timeLimit;
  return kBar.left + static_cast<int32>(std::nearbyint(timeLeft * scale));
}

void DrawClockBar() {
  if (!backBuffer) return;
  backBuffer->SetFillColor(kShadowColour);
  if (timeLimit > 0) backBuffer->DrawBox(kBar.left, kBar.top, BarEnd(), kBar.bottom);
  backBuffer->DrawLine(kBar.left, kBar.top, kBar.right, kBar.top);
  backBuffer->DrawLine(kBar.left, kBar.bottom, kBar.right, kBar.bottom);
  backBuffer->DrawLine(kBar.right, kBar.top, kBar.right, kBar.bottom);
  backBuffer->DrawLine(kBar.left, kBar.top, kBar.left, kBar.bottom);
}

}  // namespace

void DrawStatus() {
  const std::string scoreText = ScoreText();
  const platform::Size size = platform::MeasureText(mainWindowFont, scoreText);
  const int32 x = (kSurfaceWidth - size.width) / 2 + kScoreShift;
  const int32 y = kSurfaceHeight - size.height - kBottomGap;
  DrawShadowedText(x, y, scoreText, Shadow::Below);
  DrawShadowedText(kLevelLeft, y, LevelText(level), Shadow::Below);
  DrawClockBar();
}

// All lines are placed from the size of the first one: only that one is centred.
void DrawEndMessage() {
  const std::string scoreText = ScoreText();
  const platform::Size size = platform::MeasureText(mainWindowFont, scoreText);
  const int32 x = (kSurfaceWidth - size.width) / 2;
  const int32 y = (kSurfaceHeight - size.height) / 2;
  DrawShadowedText(x, y, scoreText, Shadow::BelowRight);
  DrawShadowedText(x, y - kLevelRise, LevelText(level - 1), Shadow::BelowRight);
  if (levelWon != kFalse)
    DrawShadowedText(x - kClickLeft, y + kClickDrop, "Click to Continue", Shadow::BelowRight);
}

}  // namespace glimmerfall
