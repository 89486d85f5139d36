; SPDX-License-Identifier: MIT
; A gem is picked up: one light tap on glass.
;i start dur  pitch level place
i1 0     .30  9.09  -8    .46
i1 .035  .32  10.02 -13   .56
i3 0     .10  9.02  -14   .50
i99 0    .42  -1.6  .45 .15
e
