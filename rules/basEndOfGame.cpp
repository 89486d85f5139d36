// SPDX-License-Identifier: MIT
#include "rules/basEndOfGame.h"

#include <cmath>

#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "platform/Events.h"
#include "platform/Random.h"
#include "platform/Time.h"
#include "rules/basNewGame.h"
#include "rules/state/basGameState.h"
#include "scores/basMiscelFunctions.h"
#include "sound/basDirectSoundStuff.h"

namespace glimmerfall {

namespace {

// The shaking.
constexpr int16 kShakeFrames = 51;
constexpr int16 kShakeNumbers = 3000;                // each gem gets a number below this
constexpr int16 kShakeFarAbove = kShakeNumbers / 2;  // above it the gem trembles far, else near
constexpr int16 kShakeReach = 3;                     // offsets a gem can take
constexpr int16 kShakeFar = 2;  // least far offset, and most near one, in pixels

struct Range {
  float64 least;
  float64 most;
};

// The throw. Speeds are in pixels a frame, angles in degrees.
constexpr int16 kFlyFrames = 64;
constexpr int16 kThrowNumbers = 50;                   // each gem gets a number below this
constexpr int16 kThrowRightFrom = kThrowNumbers / 2;  // from here on to the right, else to the left
constexpr Range kThrowAngle = {45, 70};
constexpr Range kThrowSpeed = {10, 30};
constexpr float32 kGravity = 1.5F;
constexpr float64 kPi = 3.14159265358979;

// The message.
constexpr float32 kDeafSeconds = 0.5F;  // clicks in the first half second are lost
constexpr int32 kDeafNapTicks = 10;
constexpr int32 kWaitNapTicks = 1000;

// The random numbers come in the order x, y.
void ShakeGem(CGem& gem) {
  const bool far = platform::RandomBelow(kShakeNumbers) > kShakeFarAbove;
  const auto offset = [far] {
    const int16 reach = platform::RandomBelow(kShakeReach);
    return far ? reach + kShakeFar : kShakeFar - reach;
  };
  gem.pixX = static_cast<int16>(gem.col * kCellPixels + offset());
  gem.pixY = static_cast<int16>(gem.row * kCellPixels + offset());
}

float64 RandomIn(const Range& range) {
  return platform::Rnd() * (range.most - range.least) + range.least;
}

void LaunchGem(CGem& gem) {
  platform::Randomize(platform::Timer());
  const bool right = platform::RandomBelow(kThrowNumbers) >= kThrowRightFrom;
  const float64 angle = RandomIn(kThrowAngle);
  gem.flyAngle = static_cast<float32>(right ? angle : 180 - angle);
  gem.flyX = gem.pixX;
  gem.flyY = gem.pixY;
  gem.flySpeed = static_cast<float32>(RandomIn(kThrowSpeed));
}

int16 RoundToEven(float32 value) {
  return static_cast<int16>(std::nearbyint(value));
}

// Heights count upward from the surface's foot, so the flight begins with the board mirrored.
void FlyGem(CGem& gem, float32 t) {
  const auto angle = static_cast<float32>(gem.flyAngle * kPi / 180);
  gem.pixX = RoundToEven(gem.flyX + FlyX(t, angle, gem.flySpeed));
  gem.pixY = RoundToEven(kSurfaceHeight - FlyY(t, angle, gem.flySpeed) - gem.flyY);
}

void LoseEarlyClicks() {
  const float32 start = platform::Timer();
  while (!newBoardWanted && platform::SecondsSince(start, platform::Timer()) < kDeafSeconds) {
    platform::LetEventsRunFor(kDeafNapTicks);
    boardClicked = kFalse;
  }
}

void CheckHighScoreOnce() {
  if (newBoardWanted || levelWon != kFalse || perBoard.highScoreChecked != kFalse) return;
  perBoard.highScoreChecked = kTrue;
  CheckHighScore();
}

void WaitForClick() {
  while (!newBoardWanted && boardClicked == kFalse)
    platform::LetEventsRunFor(kWaitNapTicks);
}

}  // namespace

void EndPlay() {
  gameState = stateShaking;
  clockRunning = kFalse;
}

void ShakeStep() {
  platform::Randomize(platform::Timer());
  for (CGem& gem : gems)
    ShakeGem(gem);
  if (++perBoard.shakeFrames < kShakeFrames) return;
  perBoard.shakeFrames = 0;
  for (CGem& gem : gems)
    LaunchGem(gem);
  PlayEffect(levelWonSound != kFalse ? sndGameOverLevel : sndExplode);
  gameState = stateFlyOut;
}

void FlyOutStep() {
  for (CGem& gem : gems)
    FlyGem(gem, perBoard.spiralFrames);
  if (++perBoard.spiralFrames < kFlyFrames) return;
  perBoard.spiralFrames = 0;
  PlayEffect(levelWonSound != kFalse ? sndExcellent : sndGameOver);
  levelWonSound = kFalse;
  gameState = stateEndMessage;
}

void EndMessageStep(const platform::Rect& windowRect) {
  DrawEndMessage();
  PresentFrame(windowRect);
  LoseEarlyClicks();
  CheckHighScoreOnce();
  WaitForClick();
  if (newBoardWanted || levelWon == kFalse) return;
  levelWon = kFalse;
  RequestNewBoard();
}

float32 FlyX(float32 t, float32 angle, float32 speed) {
  return speed * std::cos(angle) * t;
}

float32 FlyY(float32 t, float32 angle, float32 speed) {
  return speed * std::sin(angle) * t - kGravity * t * t / 2;
}

}  // namespace glimmerfall
