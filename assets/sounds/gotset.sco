; SPDX-License-Identifier: MIT
; A run of three or four: a rising pair of bells on a wooden foot.
;i start dur  pitch level place
i3 0     .30  8.02  -8    .5
i2 0     .80  9.02  -9    .40
i2 .085  .95  9.09  -7    .60
i1 .085  .70  10.02 -15   .55
i99 0    1.15 -3.8    .62 .40
e
