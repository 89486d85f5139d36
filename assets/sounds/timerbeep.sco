; SPDX-License-Identifier: MIT
; Time runs short: two round glass pips, to be noticed and not to startle.
;i start dur  pitch level place
i1 0     .16  9.09  -6    .5
i3 0     .10  9.09  -13   .5
i1 .130  .24  9.09  -6    .5
i3 .130  .10  9.09  -13   .5
i99 0    .42  -3.7    .36 .12
e
