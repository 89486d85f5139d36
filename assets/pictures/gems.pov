// SPDX-License-Identifier: MIT
// One frame of the gem sheet: frame_number = 16 * kind + step of the turn.
// Pass 0 is the picture; pass 1 holds the mask (red), lit facet edges (green) and
// the plain shade of the facets (blue), from the same camera and samples.
// Pass comes from the command line; meshes.inc is written by gem_shapes.py.

#version 3.7;
global_settings { assumed_gamma 1 max_trace_level 10 adc_bailout 1/64 }
#declare Exposure = .4;
#include "meshes.inc"
#include "gem_materials.inc"

#declare CellHalf = 1.19;
#declare Kind = div(frame_number, 16);
#declare Step = mod(frame_number, 16);
// The turn slows down where the cut faces the player and hurries past its edge.
#declare Angle = 22.5 * Step - 12 * sin(radians(45 * Step));

camera {
  perspective location -12*z look_at 0 right x up y
  angle 2 * degrees(atan2(CellHalf, 12))
}

#if (Pass = 0)
  GemSurroundings(Kind = 0 ? .85 : 1.3, 1)
#else
  light_source { <-14,18,-22>*4 rgb .9 parallel point_at 0 }
  light_source { <18,-4,-16>*4 rgb .12 parallel point_at 0 }
#end

#macro ShowGem(Cut, Edges)
  #if (Pass = 0)
    object { Cut GemGlass(Kind) rotate Angle*y }
  #else
    object { Cut pigment { rgb <1,0,1> } finish { ambient 0 diffuse 1 emission <1,0,0> } rotate Angle*y no_shadow }
    object { Edges pigment { rgb <1,1,.4> }
      finish { ambient 0 diffuse .8 emission <1,.10,.8> specular .5 roughness .05 } rotate Angle*y no_shadow }
  #end
#end

#switch (Kind)
  #case (0) ShowGem(Gem_round, Edges_round) #break
  #case (1) ShowGem(Gem_emerald, Edges_emerald) #break
  #case (2) ShowGem(Gem_lozenge, Edges_lozenge) #break
  #case (3) ShowGem(Gem_trillion, Edges_trillion) #break
  #case (4) ShowGem(Gem_marquise, Edges_marquise) #break
  #case (5) ShowGem(Gem_pear, Edges_pear) #break
  #case (6) ShowGem(Gem_star, Edges_star) #break
  #case (7) ShowGem(Gem_heart, Edges_heart) #break
#end
