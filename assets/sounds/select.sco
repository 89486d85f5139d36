; SPDX-License-Identifier: MIT
; A gem is picked up: one light tap on glass, with a glint above it.
;i start dur  pitch level place
i1 0     .30  9.09  -9    .46
i1 .025  .32  10.02 -11   .56
i1 .025  .26  10.09 -14   .52
i3 0     .10  9.02  -15   .50
i99 0    .42  -2.2  .45 .15
e
