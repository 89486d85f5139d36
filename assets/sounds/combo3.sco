; SPDX-License-Identifier: MIT
; Third clear: one step up.
;i start dur  pitch level place
i2 0.000 0.5  9.04  -13   0.38
i2 0.065 0.5  9.06  -12   0.46
i2 0.130 0.5  9.09  -11   0.54
i2 0.195 1.0  9.11  -8    0.6
i3 0     .25  8.04  -14   .5
i99 0    1.30 -0.7    .62 .40
e
