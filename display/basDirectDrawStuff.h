// SPDX-License-Identifier: MIT
// The drawing surfaces: made once at start-up, released once at the end. Each frame is composed on
// backBuffer and copied in one go into the place of the board's picture box.
#pragma once

#include <memory>

#include "platform/Surface.h"

namespace glimmerfall {

// All null until InitDisplay has made them.
inline std::shared_ptr<platform::DisplayDevice> dd;        ///< maker of all surfaces
inline std::shared_ptr<platform::Surface> primarySurface;  ///< the screen, inside picBoard
inline std::shared_ptr<platform::Surface> backBuffer;      ///< the frame that is being composed
inline std::shared_ptr<platform::Surface> boardSurface;    ///< background of the whole frame
inline std::shared_ptr<platform::Surface> gemSheet;        ///< the gem sprites, 1024 by 512
inline std::shared_ptr<platform::Surface> targetSheet;     ///< six target frames side by side
inline std::shared_ptr<platform::Clipper> clipper;         ///< keeps the frame inside picBoard
inline platform::Rect backRect;                            ///< all of backBuffer
inline platform::Rect boardRect;                           ///< all of boardSurface

/// Puts the variables above back to their start values.
void ResetDisplay();

/// Makes the surfaces and loads the three bitmaps. Any failure leaves the remaining steps undone
/// and shows a message; the game then goes on with what there is.
void InitDisplay();

/// Lets go of all drawing objects, the sounds, the lists and the gems. Works after a start-up that
/// failed at any step.
void ReleaseAll();

/// Wipes backBuffer with the board picture, stretched to fit.
void PaintBoardPicture();

/// Shows backBuffer in the window at `windowRect`.
void PresentFrame(const platform::Rect& windowRect);

/// Copy onto backBuffer; without a surface, which a failed start-up leaves null, nothing is drawn.
void BlitToBack(const platform::Rect& to, const std::shared_ptr<platform::Surface>& source,
                const platform::Rect& from, platform::ColorKey key);
void BlitFastToBack(int x, int y, const std::shared_ptr<platform::Surface>& source,
                    const platform::Rect& from);

}  // namespace glimmerfall
