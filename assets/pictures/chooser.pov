// SPDX-License-Identifier: MIT
// The gems of the chooser picture: a hoard on dark glass at the left, a shower above it.
// The ground behind is black here and is added afterwards; pass 1 is the mask.

#version 3.7;
global_settings { assumed_gamma 1 max_trace_level 12 adc_bailout 1/64 }
#declare Exposure = .4;
#include "meshes.inc"
#include "gem_materials.inc"

#declare Units = 17.2;   // across the picture at the depth of the hoard
#declare Distance = 24;
#declare Middle = 2.6;
camera {
  perspective location <0, Middle, -Distance> look_at <0, Middle, 0> right x*512/300 up y
  angle 2 * degrees(atan2(Units / 2, Distance))
}

#if (Pass = 0)
  GemSurroundings(1.3, 1)
#end

// Every gem comes with its image in the dark glass below, which the mask shows in green.
#declare Floor = -1.30;
#macro Place(Kind, Cut, Size, Turn, At)
  #local Stone = object { Cut
    #if (Pass = 0) GemGlass(Kind) #end
    scale Size rotate Turn translate At };
  #if (Pass = 0)
    object { Stone }
    #if (At.y < 1) object { Stone scale <1,-1,1> translate 2*Floor*y } #end
  #else
    object { Stone pigment { rgb <1,0,0> } finish { ambient 0 diffuse 0 emission 1 } no_shadow }
    object { Stone scale <1,-1,1> translate 2*Floor*y
      pigment { rgb <0,1,0> } finish { ambient 0 diffuse 0 emission 1 } no_shadow }
  #end
#end

// The hoard.
Place(1, Gem_emerald,  1.20, <-6, 26, 6>,    <-7.05,  .08, 2.2>)
Place(2, Gem_lozenge,  1.28, <-4, 24, -4>,   <-4.75,  .55, 2.4>)
Place(0, Gem_round,    1.30, <-10, -16, 10>, <-2.00,  .25, 2.2>)
Place(3, Gem_trillion, 1.18, <-10, 22, -4>,  <-5.75, -.12, -.2>)
Place(5, Gem_pear,     1.12, <-8, -26, -8>,  <-.35,  -.08, .2>)
Place(7, Gem_heart,    1.16, <-10, -14, 6>,  <-3.10, -.16, -.6>)
Place(6, Gem_star,     .86,  <-14, 18, 8>,   <-7.25, -.44, -1.6>)
Place(4, Gem_marquise, .92,  <-30, -18, 6>,  <-1.15, -.80, -2.2>)
// The shower.
Place(5, Gem_pear,     .44, <-10, 30, 12>,   <-7.45, 3.35, 1>)
Place(6, Gem_star,     .46, <-10, -20, 16>,  <-5.60, 2.75, 1>)
Place(3, Gem_trillion, .40, <-14, 25, 24>,   <-3.65, 3.45, 1>)
Place(0, Gem_round,    .36, <-14, -25, 0>,   <-2.05, 2.75, 1>)
Place(4, Gem_marquise, .42, <-24, 20, 30>,   <-.55, 3.30, 1>)
Place(1, Gem_emerald,  .40, <-14, -30, -20>, <.75, 2.45, 1>)
