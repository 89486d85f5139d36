; SPDX-License-Identifier: MIT
; The end of a lost game, meant kindly: a phrase that comes home and a warm chord.
;i start dur  pitch level place
i2 0     .90  9.09  -9    .42
i2 .24   .90  9.06  -9    .55
i2 .48   .90  9.04  -9    .46
i2 .80   1.90 9.02  -8    .5
i3 0     .30  8.09  -12   .4
i3 .48   .30  8.04  -12   .6
i4 0     .80  7.11  -9    .5
i4 .48   .50  7.09  -10   .5
i4 .80   1.90 7.02  -6    .5
i2 .82   1.80 8.06  -15   .40
i2 .84   1.80 8.09  -14   .60
i1 1.12  1.30 9.09  -17   .64
i1 1.28  1.20 10.02 -18   .36
i99 0    2.90 -2.9    .74 .80
e
