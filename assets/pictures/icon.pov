// SPDX-License-Identifier: MIT
// The game's icon: a falling drop, with two companions where there is room for them.
// Pass 1 is the mask; Company is 0 for the small sizes.

#version 3.7;
global_settings { assumed_gamma 1 max_trace_level 10 adc_bailout 1/64 }
#declare Exposure = .4;
#include "meshes.inc"
#include "gem_materials.inc"

camera {
  perspective location -12*z look_at 0 right x up y
  angle 2 * degrees(atan2((Company > 0 ? 1.62 : 1.14), 12))
}
#if (Pass = 0) GemSurroundings(1.4, 1) #end

#macro Place(Kind, Cut, Size, Turn, At)
  object { Cut
    #if (Pass = 0) GemGlass(Kind) #else pigment { rgb 1 } finish { ambient 0 diffuse 0 emission 1 } #end
    scale Size rotate Turn translate At #if (Pass = 1) no_shadow #end }
#end

#if (Company)
  Place(5, Gem_pear,  1.26, <-6, 10, 0>,   <0, .20, 0>)
  Place(6, Gem_star,  .80,  <-8, 16, 12>,  <-.76, -.76, -1.0>)
  Place(7, Gem_heart, .76,  <-8, -16, -10>, <.80, -.80, -1.1>)
#else
  Place(5, Gem_pear, 1.02, <-6, 8, 0>, 0)
#end
