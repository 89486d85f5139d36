// SPDX-License-Identifier: MIT
// One frame of the gem sheet: frame_number = 16 * kind + step of the turn.

#version 3.7;
global_settings { assumed_gamma 1 max_trace_level 10 adc_bailout 1/64 }
#include "gem_materials.inc"

#declare CellHalf = 1.19;
#declare Kind = div(frame_number, 16);
#declare Step = mod(frame_number, 16);
// The turn slows down where the cut faces the player and hurries past its edge.
#declare Angle = 22.5 * Step - 12 * sin(radians(45 * Step));
// The back of a cut is deeper than its front; this keeps the turn in the middle of the cell.
#declare Balance = -.11*z;

camera {
  perspective location -12*z look_at 0 right x up y
  angle 2 * degrees(atan2(CellHalf, 12))
}

GemSurroundings(GemGlow[Kind])
ShowGem(Kind, transform { translate Balance rotate Angle*y })
