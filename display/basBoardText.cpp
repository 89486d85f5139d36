// SPDX-License-Identifier: MIT
#include "display/basBoardText.h"

#include <cmath>

#include "display/basDirectDrawStuff.h"
#include "rules/basGameState.h"
#include "rules/basWholeNumber.h"

namespace glimmerfall {

platform::Font mainWindowFont;

namespace {

// The status text, in pixels.
constexpr int32 kScoreShift = 50;  // right of the middle
constexpr int32 kLevelLeft = 1;
constexpr int32 kBottomGap = 5;
constexpr int32 kShadowDrop = 2;  // the shadow lies under the text and not beside it

constexpr platform::Rect kBar = {20, 521, 492, 531};  // the clock bar, outline included

void DrawShadowedText(int32 x, int32 y, const std::string& text) {
  DrawBoardText(x, y + kShadowDrop, text, kShadowColour);
  DrawBoardText(x, y, text, kTextColour);
}

// May lie beyond the frame: Relaxing keeps whatever time a longer game has left.
int32 BarEnd() {
  const float32 scale = static_cast<float32>(kBar.Width()) / timeLimit;
  return kBar.left + static_cast<int32>(std::nearbyint(timeLeft * scale));
}

}  // namespace

void DrawBoardText(int32 x, int32 y, const std::string& text, platform::Colour colour) {
  if (!backBuffer) return;
  backBuffer->SetFontTransparency(true);
  backBuffer->SetForeColor(colour);
  backBuffer->SetFont(mainWindowFont);
  backBuffer->DrawText(x, y, text);
}

void DrawStatus() {
  const std::string scoreText = "Score: " + WholeNumber(score);
  const platform::Size size = platform::MeasureText(mainWindowFont, scoreText);
  const int32 x = (kSurfaceWidth - size.width) / 2 + kScoreShift;
  const int32 y = kSurfaceHeight - size.height - kBottomGap;
  DrawShadowedText(x, y, scoreText);
  DrawShadowedText(kLevelLeft, y, "Level: " + std::to_string(level));
  DrawClockBar();
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

}  // namespace glimmerfall
