// SPDX-License-Identifier: MIT
#include "display/basDirectDrawStuff.h"

#include "platform/Error.h"
#include "platform/Messages.h"
#include "rules/state/basGameState.h"
#include "sound/basDirectSoundStuff.h"

namespace glimmerfall {

using platform::ColorKey;
using platform::Rect;
using platform::Surface;

namespace {

constexpr platform::Size kBackSize = {kSurfaceWidth, kSurfaceHeight};
constexpr platform::Colour kTransparent = platform::RGB(0, 0, 0);

// Surfaces are released before the device that made them.
void ReleaseDisplay() {
  primarySurface.reset();
  backBuffer.reset();
  boardSurface.reset();
  gemSheet.reset();
  targetSheet.reset();
  clipper.reset();
  dd.reset();
}

}  // namespace

void ResetDisplay() {
  ReleaseDisplay();
  backRect = boardRect = {};
}

void InitDisplay() {
  try {
    dd = platform::DirectDrawCreate();
    dd->SetCooperativeLevel(frmMainHandle);
    primarySurface = dd->CreatePrimarySurface();
    backBuffer = dd->CreateSurface(kBackSize);
    backRect = {0, 0, kBackSize.width, kBackSize.height};
    boardSurface = dd->CreateSurfaceFromFile(boardBitmapPath);
    const platform::Size size = boardSurface->GetSurfaceDesc();
    boardRect = {0, 0, size.width, size.height};
    gemSheet = dd->CreateSurfaceFromFile(gemSheetPath);
    targetSheet = dd->CreateSurfaceFromFile(targetBitmapPath);
    clipper = dd->CreateClipper();
    clipper->SetHWnd(picBoardHandle);
    primarySurface->SetClipper(clipper);
    for (const auto& sheet : {boardSurface, gemSheet, targetSheet})
      sheet->SetColorKey(kTransparent, kTransparent);
  } catch (const platform::Error& error) {
    platform::ShowMessage(std::string("Unexpected error has occurred.\n") + error.what(),
                          "This is uncalled-for!-------", platform::MessageIcon::Exclamation);
  }
}

void ReleaseAll() {
  ReleaseDisplay();
  ReleaseSounds();
  fallList.clear();
  clearList.clear();
  for (BoardCell& cell : boardCells)
    cell.gem = nullptr;
  gems = {};
}

void PaintBoardPicture() {
  BlitToBack(backRect, boardSurface, boardRect, ColorKey::Ignore);
}

void PresentFrame(const Rect& windowRect) {
  if (primarySurface && backBuffer)
    primarySurface->Blt(windowRect, *backBuffer, backRect, ColorKey::Ignore);
}

void BlitToBack(const Rect& to, const std::shared_ptr<Surface>& source, const Rect& from,
                ColorKey key) {
  if (backBuffer && source) backBuffer->Blt(to, *source, from, key);
}

void BlitFastToBack(int x, int y, const std::shared_ptr<Surface>& source, const Rect& from) {
  if (backBuffer && source) backBuffer->BltFast(x, y, *source, from, ColorKey::Source);
}

}  // namespace glimmerfall
