; SPDX-License-Identifier: MIT
; Fourth clear: the stair goes on, with a glint above.
;i start dur  pitch level place
i2 0.000 0.5  9.06  -13   0.38
i2 0.065 0.5  9.09  -12   0.46
i2 0.130 0.5  9.11  -11   0.54
i2 0.195 1.0  10.02 -8    0.6
i3 0     .25  8.06  -14   .5
i1 .230  .70  10.02 -15   .34
i99 0    1.30 -2.5    .62 .40
e
