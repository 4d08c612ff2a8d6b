"""What accounts for the numbers of the help texts: designs by their `--set` words, and for every
block of text that holds numbers, by how it begins, one expression for each of them in their order.

`tx.loss(28e6)` asks the program; `=5` exempts a plain number that no calculation gives (a range of
what is usual, a tank's or a trap type's number, a division of the plot). What stands behind the
headings "Literature" is exempt as a whole.
"""

_TX = "pass=low-pass response=chebyshev f0=30 poles=5 ripple=0.1 sweep=linear "
_FM = "pass=band-pass response=butterworth f0=98 bw=30 poles=3 "
_IF = "response=chebyshev f0=10.7 bw=0.5 poles=3 ripple=0.1 "
_DC = _IF + "pass=direct-coupled inverter=capacitor tank=1 tank-units=nH sweep=linear tank-values="
_TANKS = ("pass=direct-coupled response=chebyshev f0=150 bw=7.5 poles=3 ripple=0.1 inverter=inductor "
          "factor=0.5 parts=real ind-q=100 tank-values=50,50,50 ")
_ELLIPTIC = "pass=low-pass f0=30 ripple=0.1 atten=50 form=clc sweep=2-octaves "
_TRAP = "pass=band-pass response=elliptic-c poles=1 f0=98 bw=30 ripple=0.1 atten=40 sweep=1-octave "
_NORTON = "response=butterworth f0=98 bw=15 poles=3 pass=norton "

DESIGNS = {
    "fresh": "f0=200",
    "tx": _TX, "tx7": _TX + "poles=7", "txflat": _TX + "response=butterworth",
    "std": _TX + "std=on cap-tol=5 ind-tol=10", "std5": _TX + "std=on cap-tol=5 ind-tol=5",
    "together": _TX + "std=together cap-tol=5 ind-tol=5", "pairs": _TX + "std=pairs cap-tol=5 ind-tol=5",
    "lossy": _TX + "parts=real ind-q=80",
    "worst": _TX + "worst-case=on seed=1",
    "even": _TX + "poles=4",
    "fm": _FM,
    "fmreal": _FM + "parts=real ind-q=80 ind-c=0.25 cap-r=0.1 cap-l=0.5",
    "fmfit": _FM + "parts=deembed ind-q=80 ind-c=0.25 cap-r=0.1 cap-l=0.5",
    "iff": _IF + "pass=band-pass", "ifreal": _IF + "pass=band-pass parts=real ind-q=100",
    "notch": _FM + "pass=notch sweep=1-octave",
    "hp": "pass=high-pass response=chebyshev f0=1.8 poles=5 ripple=0.1 form=clc sweep=1-octave",
    "wide": _TX + "sweep=2-octaves",
    "c2": _ELLIPTIC + "response=elliptic-c poles=2", "d2": _ELLIPTIC + "response=elliptic-d poles=2",
    "c3": _ELLIPTIC + "response=elliptic-c poles=3", "d3": _ELLIPTIC + "response=elliptic-d poles=3",
    "t1": _TRAP + "trap=1", "t2": _TRAP + "trap=2", "t3": _TRAP + "trap=3", "t4": _TRAP + "trap=4",
    "dc": _DC + "500,500,500", "dcreal": _DC + "500,500,500 parts=real ind-q=100",
    "dc100": _DC + "100,100,100 parts=real ind-q=100",
    "dc200": _DC + "200,200,200 parts=real ind-q=100",
    "dc1000": _DC + "1000,1000,1000 parts=real ind-q=100",
    **{"k%d" % menu: _TANKS + "tank=%d" % code for menu, code in (
        (2, 1), (3, 5), (4, 6), (5, 7), (6, 8), (7, 2), (8, 3), (9, 4), (10, 9))},
    **{"i%d" % menu: _TANKS + "parts=ideal tank=%d" % (menu + 2) for menu in (3, 4, 5, 6)},
    "k1": _TANKS + "tank=0 tank-values=500,500,500",
    "ideal3": _TANKS + "tank=5 factor=1",
    "again": _TANKS + "tank=9 inverter=capacitor parts=ideal sweep=1-decade",
    "dc10": _DC + "10,10,10",
    "bessel": _TX + "response=bessel-freq",
    "papoulis": _TX + "response=papoulis poles=3",
    "dc530": _DC + "500,500,500 bw=0.53",
    "flat3": "pass=low-pass-prototype response=butterworth poles=3",
    "ripple3": "pass=low-pass-prototype response=chebyshev ripple=0.1 poles=3",
    "csv": "pass=low-pass f0=1 r-source=1 r-load=1 response=coefficients coefficients={csv} poles=5",
    "canon": _NORTON + "pass=band-pass sweep=linear",
    "pi2": _NORTON + "norton-type=pi-cap a=1 k=2", "pibest": _NORTON + "norton-type=pi-cap a=1 auto-optimize=on",
    "pi3": _NORTON + "norton-type=pi-cap a=3 auto-optimize=on",
    "tbest": _NORTON + "norton-type=t-cap a=1 auto-optimize=on",
    "t3best": _NORTON + "norton-type=t-cap a=3 auto-optimize=on",
}

_DC_CHECKS = {
    "Narrow band-pass filters, from": "=20",
    "A canonical band-pass of small": "dc.f0",
    "Menu Tanks: 1 Series LC": "=1 k1[2,1] k1[2,2] k1.f0",
    "2 Shunt LC | coil": "=2",
    "3 Shunt LC // C | a": "=3 1/(w*(k3[2,1]*k3[2,3])**0.5)/150 k3.factor",
    "4 Shunt LC // L | a": "=4 1/(w*(k4[2,2]*k4[2,3])**0.5)/150 k4.factor",
    "5 Shunt L//C C | a": "=5 =3",
    "6 Shunt L//C L | a": "=6 =4",
    "7 Shunt Ind Open T Line | a": "=7 90/k7.tloc k7.tloc",
    "8 Shunt Cap Shorted T Line | a": "=8 180/k8.tlsc k8.tlsc",
    "9 Open and Shorted T Lines | two": "=9",
    "10 Shorted T Line | a": "=10 =3 again.loss_between(2.5,3.0)",
    "What the tanks cost": "k2.f0 k2.bw k2.poles k2.ripple k2[2,1] =1 k3.factor k7.tloc k2.ind_q",
    "1 Series LC, 500 nH": "=1 k1[2,1] k1.peak_loss_db",
    "2 Shunt LC | \\d": "=2 k2.peak_loss_db",
    "3 Shunt LC // C | \\d": "=3 k3.peak_loss_db",
    "4 Shunt LC // L | \\d": "=4 k4.peak_loss_db",
    "5 Shunt L//C C | \\d": "=5 k5.peak_loss_db",
    "6 Shunt L//C L | \\d": "=6 k6.peak_loss_db",
    "7 Shunt Ind Open T Line | \\d": "=7 k7.peak_loss_db",
    "8 Shunt Cap Shorted T Line | \\d": "=8 k8.peak_loss_db",
    "9 Open and Shorted T Lines | \\d": "=9 k9.peak_loss_db",
    "10 Shorted T Line | \\d": "=10 k10.peak_loss_db",
    "Menu Inverter: 1": "=1 =2 =3",
    "Factor 0.2": "bound('factor',0) bound('factor',1) =3 =6 =1 =0 ideal3[2,3]",
    "Read-outs Min": "dc.readout(0) dc.readout(0) dc10[2,1] dc10.worst_return_loss_db dc.worst_return_loss_db",
    "The same limit": "=1",
    "Choose the tank's coil first": "=50 =150",
    "Example: 10.7 MHz": "dc.f0 dc.bw",
    "3-pole Chebyshev, 0.1 dB": "dc.poles dc.ripple dc.r_source iff[1,1] iff[2,1] =2 =2 dc[2,1]*1e9",
    "coil in the line at each end": "dc[1,1]",
    "first and last tank": "dc[2,1] dc[2,2]",
    "coupling capacitors": "dc[3,1]",
    "middle tank": "dc[4,1] dc[4,2]",
    "Three coils of one kind": "dc.f0 dc.loss(10.45e6) dc.loss(10.95e6) dc.f0-dc.bw/2 dc.f0+dc.bw/2 "
                               "dc.loss(9.7e6) dc.f0-2*dc.bw",
    "With real parts (Q of 100": "dcreal.ind_q dcreal.loss_at_f0_db dc.f0 ifreal.loss_at_f0_db",
    "tank | coil at the ends": "dc.f0",
    "100 nH": "dc100[2,1] dc100[1,1] dc100[3,1] dc100.loss_at_f0_db",
    "200 nH": "dc200[2,1] dc200[1,1] dc200[3,1] dc200.loss_at_f0_db",
    "500 nH": "dcreal[2,1] dcreal[1,1] dcreal[3,1] dcreal.loss_at_f0_db",
    "1000 nH": "dc1000[2,1] dc1000[1,1] dc1000[3,1] dc1000.loss_at_f0_db",
    "A small coil wants large": "dc.cap_r dc[2,2] dc.f0 reactance() reactance()/dc.cap_r tank_q()",
    "With Ideal Parts": "=10",
    "Choose Real Parts and a Q": "dcreal.ind_q",
    "Loss and bandwidth stand": "dcreal.loss_at_f0_db dcreal.edges_hz[0] dcreal.edges_hz[1] dcreal.width_hz "
                                "dc.edges_hz[0] dc.edges_hz[1] dc.width_hz",
    "Delay: put the mouse": "dc.f0 dcreal.delay(10.7e6) dc.delay(10.7e6)",
    "Of the 500 kHz": "dc.bw dc.width_hz dc530.bw dc530.width_hz",
    "loss = 4.34 dB": "=4.34",
    "(Cohn 1959)": "=1959 flat3.poles flat3[1,1] flat3[2,1] flat3[3,1] g_sum() dc.f0/dc.bw tank_q() "
                   "4.3429448*g_sum()*dc.f0/(dc.bw*tank_q()) dcreal.loss_at_f0_db",
    "A tank has the reactance": "=1",
    "J = w x square root": "=1 =1",
}

_START_CHECKS = {
    "Options, Which Filter": "=25",
    "Rows stand by their cost": "=1000 =20",
    "Parts, Read the Board": "=95",
    "Parts, Which Part Matters": "=-3 =1 =1 =1 =95 =1",
    "A transmitter at 28": "=28 =56 tx.poles tx.f0 tx.r_source",
    "Type 30 into": "tx.f0/1e6 tx.poles tx.ripple",
    "The grid below the schematic": "tx[1,1] tx[2,1] tx[3,1] tx[4,1] tx[5,1]",
    "Fo is where the loss is 3 dB": "tx.loss_at_f0_db tx.loss_at_f0_db tx.f0 =3 papoulis.loss_at_f0_db =28 tx.loss(28e6) tx.loss_at_f0_db "
        "tx.worst_return_loss_db tx.return_loss_band_hz[1] tx.f0 tx.attenuation('2F0') tx.attenuation('3F0')",
    "change | at 30": "tx.f0 2*tx.f0",
    "5-pole Chebyshev, 0.1 dB": "tx.poles tx.ripple tx.loss_at_f0_db tx.attenuation('2F0')",
    "7 poles instead of 5": "tx7.poles tx.poles tx7.loss_at_f0_db tx7.attenuation('2F0')",
    "Butterworth instead": "txflat.loss_at_f0_db txflat.attenuation('2F0')",
    "Now the parts.": "std.cap_tol std.ind_tol std[1,1] std[2,1] std[3,1] std.edges_hz[1] 2*tx.f0 "
        "std.attenuation('2F0') std5.ind_tol std5[2,1] std5.edges_hz[1] std5.attenuation('2F0')",
    "Take Std LC Values off": "lossy.ind_q =10 lossy.loss(10e6) tx.loss(10e6) =28 lossy.loss(28e6) tx.loss(28e6)",
    "Last, back to Ideal": "worst.runs 2*tx.f0 worst.worst(60e6)[0] worst.worst(60e6)[1] =28 worst.worst(28e6)[1] "
        "worst.seed =32",
    "Fo MHz |": "bound('f0',0) bound('f0',1)",
    "BW MHz, BW % |": "=3 bound('bw-percent',0) bound('bw-percent',1)",
    "N Poles |": "bound('poles',0) bound('poles',1)",
    "N Traps |": "bound('poles',0) bound('poles',1)",
    "R Source, R Load |": "bound('r-source',0) bound('r-load',1)",
    "Ripple dB |": "bound('ripple',0) bound('ripple',1)",
    "Elliptic Atten |": "bound('atten',0) bound('atten',1)",
    "Trap Type |": "bound('trap',0) bound('trap',1)",
    "% Change |": "bound('percent-change',0) bound('percent-change',1)",
    "Group delay scale |": "=500 =500 =5E-7 =1 =100",
    "Inductor Q |": "bound('ind-q',0) bound('ind-q',1)",
    "Inductor C, Capacitor L": "bound('ind-c',0) bound('cap-l',1)",
    "Number of Monte Carlo Simulations |": "bound('runs',0) bound('runs',1)",
    "Cutoff for Phase and Group delay plots |": "=20 =-20 bound('threshold',0) bound('threshold',1)",
    "Boxes show three": "=145.825 =145.825 =146",
    "Yellow:": "even.poles even.ripple even.r_source even.r_load",
    "Linear runs from 0": "=0 tx.sweep_hz[-1]/tx.f0 len(tx.sweep_hz)",
    "Band Pass Canonical |": "=20",
    "Band Pass Norton |": "=3 =5",
    "Low Pass Prototype |": "=1 =1",
    "98 MHz, 30 MHz wide, 3-pole Butterworth, 50": "fm.f0 fm.bw fm.poles fm.r_source fm[1,1] fm[1,2] fm[2,1] fm[2,2] =3 "
        "fm.edges_hz[0] fm.edges_hz[1]",
    "With real parts (Q of 80": "fmreal.ind_q fmreal.ind_c fmreal.cap_r fmreal.cap_l fmreal.f0 fmreal.loss_at_f0_db "
        "fmreal.edges_hz[0] fmreal.edges_hz[1] fmfit[1,1] fmfit[1,2] fmfit[2,1] fmfit[2,2] fmfit.edges_hz[0] "
        "fmfit.edges_hz[1]",
    "Now 10.7 MHz": "iff.f0 iff.bw iff.poles iff.ripple iff[1,1] iff[1,2] iff[2,1] iff[2,2] ifreal.ind_q "
        "ifreal.loss_at_f0_db iff.f0 iff[1,1] 2*pi*iff.f0*iff[1,1] ifreal.cap_r dcreal.loss_at_f0_db",
    "98 MHz, 30 MHz wide, 3-pole Butterworth notch": "notch.f0 notch.bw notch.poles notch[1,1] notch[1,2] notch[2,1] "
        "notch[2,2] =88 notch.loss(88e6) =108 notch.loss(108e6) =50 =200 notch.f0",
    "Example: high-pass for 160": "=160",
    "1.8 MHz, 5-pole": "hp.f0 hp.poles hp.ripple hp[1,1] hp[2,1] hp[3,1] =0.9 hp.attenuation('F0/2') =3.5 "
        "hp.return_loss(3.5e6)",
    "Chebyshev | steep": "tx.ripple tx.worst_return_loss_db",
    "Bessel (Freq), Bessel (Delay)": "bessel.overshoot() bessel.poles txflat.overshoot() =1 =2 =3",
    "Gauss to 3 dB": "=3",
    "The transmitter's filter once": "c2.f0 c2.ripple c2.atten",
    "response | coils": "=28 c2.atten",
    "5-pole Chebyshev | 5": "tx.poles tx.parts() wide.loss(28e6) wide.down_from(50)",
    "Elliptic C, 2 traps": "c2.poles c2.parts() c2.loss(28e6) c2.down_from(50)",
    "Elliptic D, 2 traps": "d2.poles d2.parts() d2.loss(28e6) d2.down_from(50)",
    "Elliptic C, 3 traps": "c3.poles c3.parts() c3.loss(28e6) c3.down_from(50)",
    "Elliptic D, 3 traps": "d3.poles d3.parts() d3.loss(28e6) d3.down_from(50)",
    "Beyond its traps": "c2.atten c2.poles c2[1,1] c2[2,1] c2[2,2] c2.resonance(2,1) c2[3,1] c2[4,1] c2[4,2] "
        "c2.resonance(4,1) c2[5,1]",
    "In a band-pass or notch": "t1.poles t1.f0 t1.bw t1.ripple t1.atten",
    "1 | a series LC": "=1 t1[2,1] t1[2,3] t1[2,2] t1[2,4]",
    "2 | a capacitor beside": "=2 t2[2,1] t2[2,3] t2[2,2] t2[2,4]",
    "3 | a coil beside": "=3 t3[2,1] t3[2,3] t3[2,2] t3[2,4]",
    "4 | two tanks": "=4 t4[2,1] t4[2,3] t4[2,2] t4[2,4]",
    "All four block": "t4.elliptic['trap_hz'][0] t4.elliptic['trap_hz'][1] t4[1,1] t4[1,2] =4",
    "All of these come": "=1 =1",
    "Mag 10 dB |": "=10 =10 =0",
    "Mag 1 dB |": "=1 =1",
    "Return Loss |": "=10",
    "Sq Pulse |": "=0.6",
    "Phase and group delay are": "=12.8",
    "Two lines above the plot": "=25",
    "loss at Fo |": "=0",
    "-3 dB edges": "=-3",
    "shape factor 60/6": "=60 =6 =60 =6 =1 =60 =10 =10",
    "attenuation at 2 Fo": "=2 =3 =2 =3",
    "shape, stop to pass |": "=-3",
    "All of them are calculated": "=-3",
    "Ctrl+Z takes back": "=500",
    "Values are read against": "=0",
    "Up to 19": "=19",
    "6 dB Freq": "=6 =6 =6",
    "Ports swapped": "=1",
    "Cable at source": "=45",
    "Inductor Q:": "=80 =200 =20 =60",
    "Inductor C:": "=0.1 =1",
    "Capacitor R, Capacitor L:": "=0.2 =0.25",
    "Tolerances choose": "=10 =5 =2 =1",
    "The nearest values are shown": "=1 =0.1 =0.5",
    "The transmitter's low-pass with": "std5.ind_tol std5.json()['std']['worst_deviation_db']['nearest'] std5.edges_hz[1] "
        "together[1,1] together[2,1] together.json()['std']['worst_deviation_db']['chosen'] together.edges_hz[1] "
        "pairs.json()['std']['worst_deviation_db']['chosen']",
    "Absorb Parasitics refits": "=30",
    "With limits, the panel": "=95 =1000 =10000 =100000 =100000 =1",
    "Below 10 pF:": "=10 =10",
    "Reel:": "=0 =1",
    "Each run multiplies": "=5 =5 =5 =95 =0.1 =0.1",
    "Worst-Case Seed asks": "bound('seed',0) bound('seed',1) worst.seed",
    "Click a value of the grid": "=22 =4.7 =12E-12",
    "Coefficients files": "=1 =1 =12",
    "5, 0.97": "csv.poles csv[1,1]*w csv[2,1]*w csv[3,1]*w csv[4,1]*w csv[5,1]*w",
    "A row that is too short": "=0.01 =1 =3 =5 =7 =9",
    "ladderwise-cli --set": "tx.poles tx.f0/1e6 tx.ripple",
}

_NORTON_CHECKS = {
    "A canonical band-pass of 3": "=3 =5",
    "Impedance Scalar | A": "bound('a',0) bound('a',1)",
    "3 Pole K": "=3 bound('k',0) bound('k',1) =3 =5",
    "5 Pole M": "=5 =5",
    "The three pairs": "=1 =0.1 =0.01",
    "Only 3 and 5": "=3 =5 =3",
    "A negative value": "=1",
    "Example: 98 MHz": "canon.f0 canon.bw",
    "3-pole Butterworth, 50": "canon.poles canon.r_source canon[1,1] canon[2,1] canon[2,2]",
    "type | A | K": "=80 =116",
    "canonical |": "canon[1,1] canon[2,1] canon[3,1] canon.loss(80e6) canon.loss(116e6)",
    "Pi Cap | 1 | 2": "pi2.a pi2.k pi2.coils[0] pi2.coils[1] pi2.coils[2] pi2.loss(80e6) pi2.loss(116e6)",
    "Pi Cap | 1 | 9": "pibest.a pibest.k pibest.coils[0] pibest.coils[1] pibest.coils[2] pibest.loss(80e6) "
        "pibest.loss(116e6)",
    "Pi Cap | 3": "pi3.a pi3.k pi3.coils[0] pi3.coils[1] pi3.coils[2] pi3.coils[3] pi3.coils[4] pi3.loss(80e6) "
        "pi3.loss(116e6)",
    "T Cap | 1": "tbest.a tbest.k tbest.coils[0] tbest.coils[1] tbest.coils[2] tbest.loss(80e6) tbest.loss(116e6)",
    "T Cap | 3": "t3best.a t3best.k t3best.coils[0] t3best.coils[1] t3best.coils[2] t3best.loss(80e6) "
        "t3best.loss(116e6)",
    "The K of": "pibest.k pi3.k t3best.k t3best.coils[0] min(t3best.capacitors) max(t3best.capacitors) pibest.a",
    "For a capacitor C": "=1 =1 =1 =1 =1",
}

# Results of several steps: name() in an expression.
DERIVED = {
    "reactance": "1/(2*pi*dc.f0*dc[2,2])",  # ohm, of the capacitor of an end tank
    "tank_q": "1/(1/dcreal.ind_q+dc.cap_r/reactance())",
    "g_sum": "ripple3[1,1]+ripple3[2,1]+ripple3[3,1]",
}

CHECKS = {"DCFilt.rtf": _DC_CHECKS, "StartFilt.rtf": _START_CHECKS, "Transform.rtf": _NORTON_CHECKS}

# Statements of the texts that hold no number.
STATEMENTS = {
    "tank 5 has the response of tank 3": "abs(i5.width_hz - i3.width_hz) < 1.0",
    "tank 6 has the response of tank 4": "abs(i6.width_hz - i4.width_hz) < 1.0",
    "tank 5 takes a smaller coil than 3": "i5[2,1] < i3[2,1]",
    "tank 6 takes smaller coils than 4": "i6[2,1] < i4[2,1] and i6[2,3] < i4[2,3]",
    "the example warns of 1000 nH": "dc1000.direct_coupled['warnings'][0]",
}
