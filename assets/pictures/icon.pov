// SPDX-License-Identifier: MIT
// The game's icon: a falling drop, with two companions where there is room for them.
// Company is 0 for the small sizes, 1 for the large ones.

#version 3.7;
global_settings { assumed_gamma 1 max_trace_level 10 adc_bailout 1/64 }
#include "gem_materials.inc"

#declare HalfWidth = (Company > 0 ? 1.80 : 1.14);
camera {
  perspective location -12*z look_at 0 right x up y
  angle 2 * degrees(atan2(HalfWidth, 12))
}
GemSurroundings(1.3)

#macro Place(Kind, Size, Turn, At)
  ShowGem(Kind, transform { scale Size rotate Turn translate At })
#end

#if (Company > 0)
  Place(5, 1.40, <-6, 10, 0>,   <0, .20, .6>)
  Place(6, .80,  <-8, 16, 12>,  <-.74, -.76, -1.0>)
  Place(7, .76,  <-8, -16, -10>, <.74, -.80, -1.1>)
#else
  Place(5, 1.02, <-6, 8, 0>, <0,0,0>)
#end
