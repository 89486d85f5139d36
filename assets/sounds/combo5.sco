; SPDX-License-Identifier: MIT
; Fifth clear: the bass joins.
;i start dur  pitch level place
i2 0.000 0.5  9.09  -13   0.38
i2 0.065 0.5  9.11  -12   0.46
i2 0.130 0.5  10.02 -11   0.54
i2 0.195 1.0  10.04 -8    0.6
i3 0     .25  8.09  -14   .5
i1 .230  .70  10.04 -15   .34
i4 0     .60  7.09  -14   .5
i99 0    1.30 -3.0    .62 .40
e
