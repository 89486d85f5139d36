; SPDX-License-Identifier: MIT
;
; The instruments of the sound effects: glass, bell, wood, soft bass and air, in
; one small room. Every score in this folder is played by this orchestra, so
; that the sixteen effects sound like one family.
;
; Common note fields: p4 pitch (octave.semitone, 8.00 is middle C), p5 level in
; dB, p6 place from 0 (left) to 1 (right). Levels are relative: instrument 99
; sets the level of the finished file.

sr     = 44100
ksmps  = 10
nchnls = 2
0dbfs  = 1

; One fixed seed keeps each rendering the same to the byte.
seed 11

gaLeft  init 0
gaRight init 0
gaRoom  init 0

; Puts a mono sound at a place, with a share of it into the room.
opcode Place, 0, aii
  aSound, iPlace, iRoom xin
  gaLeft  = gaLeft  + aSound * cos(iPlace * $M_PI_2)
  gaRight = gaRight + aSound * sin(iPlace * $M_PI_2)
  gaRoom  = gaRoom  + aSound * iRoom
endop

; One partial with its own decay. It starts in a rounded rise, never a step.
opcode Partial, a, iiii
  iFreq, iLevel, iRise, iDecay xin
  aShape transeg 0, iRise, 2, 1, iDecay, -6.5, 0
  aTone  oscili iLevel * aShape, iFreq
  xout aTone
endop

; Glass: a clear tone over quick high partials, all whole multiples so that a
; chord of glasses stays in tune.
instr 1
  iFreq  = cpspch(p4)
  iLevel = ampdbfs(p5)
  iTail  = p3 - .004
  a1 Partial iFreq * .9994, iLevel * .76, .004, iTail
  a2 Partial iFreq * 1.0006, iLevel * .22, .004, iTail
  a3 Partial iFreq * 2, iLevel * .34, .003, iTail * .62
  a4 Partial iFreq * 3, iLevel * .15, .002, iTail * .40
  a5 Partial iFreq * 4, iLevel * .12, .002, iTail * .26
  a6 Partial iFreq * 6, iLevel * .05, .002, iTail * .12
  Place a1 + a2 + a3 + a4 + a5 + a6, p6, .30
endin

; Bell: fuller and longer than glass, with a hum an octave below.
instr 2
  iFreq  = cpspch(p4)
  iLevel = ampdbfs(p5)
  iTail  = p3 - .006
  a1 Partial iFreq * .5, iLevel * .20, .020, iTail * .9
  a2 Partial iFreq * .9992, iLevel * .66, .006, iTail
  a3 Partial iFreq * 1.0008, iLevel * .22, .006, iTail * .94
  a4 Partial iFreq * 2, iLevel * .40, .004, iTail * .70
  a5 Partial iFreq * 3, iLevel * .22, .003, iTail * .45
  a6 Partial iFreq * 4, iLevel * .16, .003, iTail * .32
  a7 Partial iFreq * 5.98, iLevel * .06, .002, iTail * .16
  Place a1 + a2 + a3 + a4 + a5 + a6 + a7, p6, .36
endin

; Wood: a bar struck with a soft mallet; the knock is a breath of filtered noise.
instr 3
  iFreq  = cpspch(p4)
  iLevel = ampdbfs(p5)
  iTail  = p3 - .003
  a1 Partial iFreq, iLevel * .85, .003, iTail
  a2 Partial iFreq * 4, iLevel * .26, .002, iTail * .34
  a3 Partial iFreq * 10, iLevel * .06, .0015, iTail * .12
  aShape transeg 0, .0015, 2, 1, .022, -5, 0
  aNoise noise iLevel * .8, 0
  aKnock butterbp aNoise, iFreq * 4.2, iFreq * 2.4
  Place a1 + a2 + a3 + aKnock * aShape, p6, .16
endin

; Soft bass: a round low tone with enough second and third harmonic to be heard
; on small loudspeakers.
instr 4
  iFreq  = cpspch(p4)
  iLevel = ampdbfs(p5)
  aShape transeg 0, .012, 2, 1, p3 - .012, -4.5, 0
  a1 oscili iLevel * .62, iFreq
  a2 oscili iLevel * .30, iFreq * 2
  a3 oscili iLevel * .14, iFreq * 3
  Place (a1 + a2 + a3) * aShape, p6, .08
endin

; Air: noise through a band that glides from p4 to p7 (in Hz), for whooshes and
; crumbling.
instr 5
  iLevel = ampdbfs(p5)
  aShape transeg 0, .02, 1.5, 1, p3 - .02, -4, 0
  kBand  expseg p4, p3, p7
  aNoise pinker
  aBand  butterbp aNoise, kBand, kBand * .8
  aSoft  butterlp aBand, 5200
  Place aSoft * iLevel * aShape, p6, .25
endin

; Boom: a drum-like fall in pitch from p4 to p7 (in Hz), kept above the range
; that laptop loudspeakers lose.
instr 6
  iLevel = ampdbfs(p5)
  aShape transeg 0, .004, 2, 1, p3 - .004, -5, 0
  kFreq  expseg p4, p3 * .35, p7, p3 * .65, p7 * .98
  a1 oscili iLevel * .8, kFreq
  a2 oscili iLevel * .28, kFreq * 2
  Place (a1 + a2) * aShape, p6, .12
endin

; The room and the way out. p4: gain in dB; p5: length of the room from 0 to 1;
; p6: length of the closing fade in seconds. It must outlast the notes: the last
; 15 ms of the file are silent, so that nothing clicks when it ends.
instr 99
  aLeft, aRight reverbsc gaRoom, gaRoom, p5, 6500
  iSilence = .015
  aFade  linseg 1, p3 - p6 - iSilence, 1, p6, 0, iSilence, 0
  aShape = aFade * aFade * ampdbfs(p4)
  aOutL  butterhp gaLeft + aLeft * .5, 30
  aOutR  butterhp gaRight + aRight * .5, 30
  outs aOutL * aShape, aOutR * aShape
  clear gaLeft, gaRight, gaRoom
endin
