; SPDX-License-Identifier: MIT
; The swap comes to nothing: two dull knocks, stepping down.
;i start dur  pitch level place
i3 0     .22  8.04  -5    .44
i4 0     .20  7.04  -12   .5
i3 .12   .30  7.11  -4    .56
i4 .12   .28  6.11  -11   .5
i99 0    .52  -2.7    .42 .16
e
