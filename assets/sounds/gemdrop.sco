; SPDX-License-Identifier: MIT
; The gems have landed: a soft wooden patter on the board.
;i start dur  pitch level place
i3 0     .20  8.02  -4    .42
i4 0     .16  7.02  -10   .5
i3 .045  .18  7.09  -7    .58
i3 .080  .16  8.09  -11   .50
i99 0    .40  -2.6  .38 .15
e
