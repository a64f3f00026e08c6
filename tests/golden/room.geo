;room.geo
;Original file DIRECTORY/rooms/hall.ray
;TIME

;TEMPERATURE-2.5
;HUMIDITY 50

;SOURCE A 1
; DIRECTIVITY = "Omni.SD0"
; POS =  1  2.5  1.234568E+07
; AIMPOS =  0  0 -.25
; Lp1m_a = < 113.0 116.0 118.0 119.0 118.0 116.0 :  113.0 108.0>
;END
;SOURCE A 2
; DIRECTIVITY = "SD0"
; POS =  1  2  3
; AIMPOS =  0  0  0
; Lp1m_a = < : >
;END

;RECEIVERS
;  1    -1.500000 23456.700000      .000000

ABS Wood Äd = <   15.0  16.0   0.0   0.0   0.0   0.0 :    0.0   0.0> L <    0.0   0.0   0.0   0.0   0.0   0.0 :    0.0   0.0> { 2 0 0}
ABS Neutral = <   10.0   0.0   0.0   0.0   0.0   0.0 :    0.0   0.0> L <    0.0   0.0   0.0   0.0   0.0   0.0 :    0.0   0.0> { 1 0 0}

CORNERS

 1      0.000000      0.000000      0.000000
 2      4.000000      0.000000      0.000000
 3      4.000000      3.000000      0.000000
 4      0.000000      3.000000     -0.500000
 5      4.000000      3.000000      0.000000
 6 -12345.680000 234567.000000      0.000000
 7      0.100000      0.333333    123.456700

PLANES
[1 wood äd /  1 2 3 4 / Wood Äd ]
[2 neutral /  2 3 5 / Neutral ]
[3 wood äd /  6 1 7 / Wood Äd ]
