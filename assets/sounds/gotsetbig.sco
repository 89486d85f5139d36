; SPDX-License-Identifier: MIT
; A run of five or more: the same gesture widened to a whole chord, with bass.
;i start dur  pitch level place
i4 0     .80  7.02  -7    .5
i3 0     .30  8.02  -8    .5
i2 0     .90  9.02  -10   .36
i2 .075  .95  9.06  -10   .46
i2 .150  1.0  9.09  -9    .58
i2 .225  1.05 10.02 -8    .66
i1 .300  .90  10.06 -14   .40
i1 .340  .85  10.09 -16   .62
i99 0    1.36 -5.8    .66 .45
e
