// SPDX-License-Identifier: MIT
#include "rules/basMainGameLoop.h"

#include "display/basBoardCursor.h"
#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "display/basDisplayingGemsAndTarget.h"
#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basClearingGems.h"
#include "rules/basEndOfGame.h"
#include "rules/basFallingGems.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basManipulatingGems.h"
#include "rules/basMatchingGems.h"
#include "rules/state/basGameState.h"
#include "sound/DXAudio.h"

namespace glimmerfall {

namespace {

constexpr int32 kFrameTicks = 20;  // a frame lasts longer than this, in milliseconds

void EnterLoop() {
  gameState = stateDealing;
  quitRequested = kFalse;
}

// The target is drawn even if the step has just left the state.
void StepCurrentState(const platform::Rect& windowRect) {
  switch (gameState) {
    case stateLoading:
      break;
    case stateIdle:
      platform::LetEventsRun();
      break;
    case stateDealing:
      DropStep();
      break;
    case stateSelected:
      SelectedStep();
      DrawTarget(firstGem);
      break;
    case stateSwapping:
      StepSwapping();
      DrawTarget(firstGem);
      DrawTarget(secondGem);
      break;
    case stateClearing:
      StepClearing();
      break;
    case stateFalling:
      FallStep();
      break;
    case stateShaking:
      ShakeStep();
      break;
    case stateFlyOut:
      FlyOutStep();
      break;
    case stateEndMessage:
      EndMessageStep(windowRect);
      break;
  }
}

void DrawScene() {
  if (gameState == stateClearing) {
    DrawGemsShrinking();
  } else {
    DrawGems();
  }
  DrawCursor();
  DrawStatus();
}

void WaitForFrameEnd(int32 frameStart) {
  while (!newBoardWanted && platform::TicksSince(frameStart, platform::TickCount()) <= kFrameTicks)
    platform::LetEventsRunUntil(platform::TickAfter(frameStart, kFrameTicks + 1));
}

}  // namespace

void RunGameLoop() {
  EnterLoop();
  do {
    if (newBoardWanted) {
      newBoardWanted = false;
      InitGameBoard();
      EnterLoop();
    }
    RunFrame();
  } while (newBoardWanted || quitRequested != kTrue);
}

void RunFrame() {
  const int32 frameStart = platform::TickCount();
  platform::Rect windowRect;
  platform::GetWindowRect(picBoardHandle, windowRect);

  PaintBoardPicture();
  if (music) music->Poll();
  StepCurrentState(windowRect);
  if (newBoardWanted) return;

  DrawScene();
  PresentFrame(windowRect);
  WaitForFrameEnd(frameStart);
  if (!newBoardWanted) platform::LetEventsRun();
}

}  // namespace glimmerfall
