; SPDX-License-Identifier: MIT
; Sixth clear: nearly there.
;i start dur  pitch level place
i2 0.000 0.5  9.11  -13   0.38
i2 0.065 0.5  10.02 -12   0.46
i2 0.130 0.5  10.04 -11   0.54
i2 0.195 1.0  10.06 -8    0.6
i3 0     .25  8.11  -14   .5
i1 .230  .70  10.06 -15   .34
i4 0     .60  7.11  -14   .5
i1 .290  .65  10.04 -16   .68
i99 0    1.30 -1.6    .62 .40
e
