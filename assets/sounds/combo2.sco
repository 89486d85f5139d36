; SPDX-License-Identifier: MIT
; The second clear of a chain: the first step of the stair.
;i start dur  pitch level place
i2 0.000 0.5  9.02  -13   0.38
i2 0.065 0.5  9.04  -12   0.46
i2 0.130 0.5  9.06  -11   0.54
i2 0.195 1.0  9.09  -8    0.6
i3 0     .25  8.02  -14   .5
i99 0    1.30 -0.5    .62 .40
e
