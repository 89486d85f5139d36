; SPDX-License-Identifier: MIT
;
; The instruments of the pieces that are rendered to audio: soft mallet glass,
; plucked string, music box, reed, pad, bass, brush and wood, in one hall.
;
; Note fields: p4 pitch as a MIDI number, p5 loudness (linear), p6 place from 0
; (left) to 1 (right), p7 share that goes into the hall, p8 how hard the note is
; struck, 0 to 1, which also brightens it.

sr     = 44100
ksmps  = 20
nchnls = 2
0dbfs  = 1

; One fixed seed keeps each rendering the same to the byte.
seed 23

gaLeft  init 0
gaRight init 0
gaHall  init 0

opcode Place, 0, aii
  aSound, iPlace, iHall xin
  gaLeft  = gaLeft  + aSound * cos(iPlace * $M_PI_2)
  gaRight = gaRight + aSound * sin(iPlace * $M_PI_2)
  gaHall  = gaHall  + aSound * iHall
endop

; A struck partial: rounded rise, own decay.
opcode Partial, a, iiii
  iFreq, iLevel, iRise, iDecay xin
  aShape transeg 0, iRise, 2, 1, iDecay, -6, 0
  aTone  oscili iLevel * aShape, iFreq
  xout aTone
endop

; Glass struck with a soft mallet; it rings on after the written length.
instr 1
  iFreq = cpsmidinn(p4)
  iTail = 1.2 + 150 / iFreq * 2
  p3    = iTail + .02
  a1 Partial iFreq * .9993, p5 * .50, .012, iTail
  a2 Partial iFreq * 1.0007, p5 * .50, .012, iTail * .96
  a3 Partial iFreq * 2, p5 * (.10 + .16 * p8), .008, iTail * .6
  a4 Partial iFreq * 3, p5 * (.02 + .10 * p8), .006, iTail * .35
  a5 Partial iFreq * 6, p5 * .05 * p8, .004, iTail * .1
  Place a1 + a2 + a3 + a4 + a5, p6, p7
endin

; Plucked string: a comb of its own, darker when played softly.
instr 2
  iFreq = cpsmidinn(p4)
  p3    = p3 + .5
  aShape linseg 0, .003, 1, p3 - .303, 1, .3, 0
  aRaw   pluck p5, iFreq, iFreq, 0, 1
  aSoft  butterlp aRaw, 900 + 2600 * p8
  aWarm  butterhp aSoft, 70
  Place aWarm * aShape * 1.5, p6, p7
endin

; Music box: a thin tine with a short metallic glint.
instr 3
  iFreq = cpsmidinn(p4)
  iTail = 1.6
  p3    = iTail + .02
  a1 Partial iFreq, p5 * .75, .003, iTail
  a2 Partial iFreq * 2.001, p5 * .18, .003, iTail * .5
  a3 Partial iFreq * 4.02, p5 * (.04 + .14 * p8), .002, iTail * .22
  a4 Partial iFreq * 6.3, p5 * .05 * p8, .002, iTail * .06
  Place a1 + a2 + a3 + a4, p6, p7
endin

; Reed: a hollow singing tone with a late, gentle vibrato.
instr 4
  iFreq = cpsmidinn(p4)
  p3    = p3 + .12
  kWave  transeg 0, .35, 0, 0, .5, 0, .0035
  kShake oscili kWave, 4.9
  kFreq  = iFreq * (1 + kShake)
  aShape linsegr 0, .07, 1, .2, .82, p3, .75, .12, 0
  aEnd   linseg 1, p3 - .12, 1, .12, 0
  a1 oscili .60, kFreq
  a2 oscili .08, kFreq * 2
  a3 oscili .24 + .12 * p8, kFreq * 3
  a4 oscili .09 * p8, kFreq * 5
  a5 oscili .04 * p8, kFreq * 7
  Place (a1 + a2 + a3 + a4 + a5) * aShape * aEnd * p5, p6, p7
endin

; Pad: three slightly detuned voices that open and close slowly.
instr 5
  iFreq = cpsmidinn(p4)
  iRise = .45
  iFall = 1.1
  p3    = p3 + iFall
  aShape linseg 0, iRise, 1, p3 - iRise - iFall, .85, iFall, 0
  a1 vco2 .30, iFreq * .9975, 12
  a2 vco2 .30, iFreq * 1.0024, 12
  a3 vco2 .10, iFreq * 2.001
  kOpen  linseg 500, p3 * .5, 800 + 1400 * p8, p3 * .5, 500
  aSoft  butterlp a1 + a2 + a3, kOpen
  Place aSoft * aShape * p5, p6, p7
endin

; Bass: round, with a plucked start.
instr 6
  iFreq = cpsmidinn(p4)
  p3    = p3 + .15
  aShape transeg 0, .010, 2, 1, p3 - .16, -2.2, .25, .15, 0, 0
  aPick  transeg 0, .006, 2, 1, .18, -5, 0
  a1 oscili .66, iFreq
  a2 oscili .26, iFreq * 2
  a3 oscili .16, iFreq * 3
  a4 oscili .10, iFreq * 4
  Place ((a1 + a2) * aShape + (a3 + a4) * aPick) * p5, p6, p7
endin

; Brush: a short breath of noise; the pitch sets its colour.
instr 7
  p3 = .16
  aShape transeg 0, .012, 1.5, 1, .14, -4, 0
  aNoise noise 1, 0
  aBand  butterbp aNoise, 1500 + 60 * (p4 - 60), 1600
  Place aBand * aShape * p5, p6, p7
endin

; Wood: a small block.
instr 8
  iFreq = cpsmidinn(p4)
  p3    = .3
  a1 Partial iFreq, p5 * .8, .002, .2
  a2 Partial iFreq * 4, p5 * .2, .002, .06
  Place a1 + a2, p6, p7
endin

; The hall and the way out. p4: gain in dB. It ends in silence.
instr 99
  aSend  butterhp gaHall, 140
  aLeft, aRight reverbsc aSend, aSend, .84, 5200
  aFade  linseg 1, p3 - 2.1, 1, 2, 0, .1, 0
  aOutL  butterhp gaLeft + aLeft * .6, 32
  aOutR  butterhp gaRight + aRight * .6, 32
  iGain  = ampdbfs(p4)
  outs aOutL * aFade * iGain, aOutR * aFade * iGain
  clear gaLeft, gaRight, gaHall
endin
