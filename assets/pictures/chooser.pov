// SPDX-License-Identifier: MIT
// The gems of the chooser picture: a hoard on dark glass at the left, a shower above it.
// Mirror is 0 for the gems and 1 for their images in the glass.

#version 3.7;
global_settings { assumed_gamma 1 max_trace_level 12 adc_bailout 1/64 }
#include "gem_materials.inc"

#declare Units = 17.2;      // across the picture, at the depth of the hoard
#declare Distance = 24;
#declare Middle = 2.6;      // height of the picture's middle
#declare Floor = -1.30;
camera {
  perspective location <0, Middle, -Distance> look_at <0, Middle, 0> right x*512/300 up y
  angle 2 * degrees(atan2(Units / 2, Distance))
}
GemSurroundings(1.3)

#macro Place(Kind, Size, Turn, At)
  ShowGem(Kind, transform { scale Size rotate Turn translate At
    #if (Mirror = 1) scale <1,-1,1> translate 2*Floor*y #end })
#end

// The hoard.
Place(1, 1.20, <-6, 26, 6>,    <-7.05,  .08, 2.2>)
Place(2, 1.28, <-4, 24, -4>,   <-4.75,  .55, 2.4>)
Place(0, 1.30, <-10, -16, 10>, <-2.00,  .25, 2.2>)
Place(3, 1.18, <-10, 22, -4>,  <-5.75, -.12, -.2>)
Place(5, 1.12, <-8, -26, -8>,  <-.35,  -.08, .2>)
Place(7, 1.16, <-10, -14, 6>,  <-3.10, -.16, -.6>)
Place(6, .86,  <-14, 18, 8>,   <-6.85, -.44, -1.6>)
Place(4, .92,  <-30, -18, 6>,  <-1.15, -.80, -2.2>)
// The shower.
Place(5, .50, <-10, 30, 12>,   <-7.35, 3.35, 1>)
Place(6, .52, <-10, -20, 16>,  <-5.60, 2.75, 1>)
Place(3, .46, <-14, 25, 24>,   <-3.65, 3.45, 1>)
Place(0, .42, <-14, -25, 0>,   <-2.05, 2.75, 1>)
Place(4, .48, <-24, 20, 30>,   <-.55, 3.30, 1>)
Place(1, .46, <-14, -30, -20>, <.75, 2.45, 1>)
