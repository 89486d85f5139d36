; SPDX-License-Identifier: MIT
; The board flies apart at the end of a game: a soft blow, then falling glass.
;i start dur  pitch level place
i6 0     .90  210   -4    .5   82
i5 0     1.00 1800  -2    .40  240
i5 .03   1.10 1100  -4    .62  180
i1 .05   .60  10.09 -17   .70
i1 .13   .60  10.06 -17   .30
i1 .22   .60  10.02 -17   .62
i1 .32   .60  9.11  -17   .38
i1 .43   .60  9.09  -17   .60
i1 .56   .60  9.06  -18   .42
i1 .71   .60  9.04  -19   .56
i99 0    1.70 -1.6    .68 .70
e
