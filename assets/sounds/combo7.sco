; SPDX-License-Identifier: MIT
; Seventh clear: the last step below the top.
;i start dur  pitch level place
i2 0.000 0.5  10.02 -13   0.38
i2 0.065 0.5  10.04 -12   0.46
i2 0.130 0.5  10.06 -11   0.54
i2 0.195 1.0  10.09 -8    0.6
i3 0     .25  9.02  -14   .5
i1 .230  .70  10.09 -15   .34
i4 0     .60  8.02  -14   .5
i1 .290  .65  10.06 -16   .68
i99 0    1.30 -2.1    .62 .40
e
