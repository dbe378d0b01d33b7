"""Devices that show what the instrument measures: real-time values, demand, monthly extremes."""

from icd.describe import (ABC, ABCN, AMP, COS, HERTZ, KVA, KVAR, KW, LINES, Ln, PERCENT, RATIO, VOLT,
                          Do, delta, frame, hdel, hwye, mv, seq, wye)


def totals(at, v="", **more):
    """Total powers; `v` stands before the names of the short addresses."""
    return [
        mv("TotW", at + "Tot" + v + "W", KW, "Total active power", **more),
        mv("TotVAr", at + "Tot" + v + "VAr", KVAR, "Total reactive power", **more),
        mv("TotVA", at + "Tot" + v + "VA", KVA, "Total apparent power", **more),
        mv("TotPF", at + "Tot" + v + "PF", COS, "Total power factor", **more),
    ]


def phasePowers(at, v=""):
    return [
        wye("W", at + v + "W", KW, "Active power"),
        wye("VAr", at + v + "VAr", KVAR, "Reactive power"),
        wye("VA", at + v + "VA", KVA, "Apparent power"),
        wye("PF", at + v + "PF", COS, "Power factor"),
    ]


def averages(at, v=""):
    return [
        mv("AvgPhV", at + "Avg" + v + "PhV", VOLT, "Mean of the phase voltages"),
        mv("AvgPPV", at + "Avg" + v + "PPV", VOLT, "Mean of the phase-to-phase voltages"),
        mv("AvgA", at + "Avg" + v + "A", AMP, "Mean of the phase currents"),
    ]


def deviations(at):
    return [
        mv("HzDev", at + "HzDev", HERTZ, "Frequency deviation"),
        wye("PhVDev", at + "PhVDev", PERCENT, "Deviation of the phase voltages"),
        delta("PPVDev", at + "PPVDev", PERCENT, "Deviation of the phase-to-phase voltages"),
    ]


def basic(prefix, at, desc, deviation=True, perPhase=True):
    """MMXU of RMS values without angles, as demand and statistics have them."""
    dos = totals(at) + [
        mv("Hz", at + "Hz", HERTZ, "Frequency"),
        delta("PPV", at + "PPV", VOLT, "Phase-to-phase voltages"),
        wye("PhV", at + "PhV", VOLT, "Phase voltages", ABCN),
        wye("A", at + "A", AMP, "Currents", ABCN),
    ]
    dos += phasePowers(at) if perPhase else []
    dos += averages(at)
    dos += deviations(at) if deviation else []
    return Ln(prefix, "MMXU", "1", desc, dos)


def sequences(prefix, at, desc, v="SeqV", a="SeqA"):
    return Ln(prefix, "MSQI", "1", desc, [
        seq("SeqA", at + a, AMP, "Symmetrical components of the currents"),
        seq("SeqV", at + v, VOLT, "Symmetrical components of the voltages"),
        mv("ImbNgA", at + "ImbNgA", PERCENT, "Negative sequence imbalance of the currents"),
        mv("ImbNgV", at + "ImbNgV", PERCENT, "Negative sequence imbalance of the voltages"),
        mv("ImbZroA", at + "ImbZrA", PERCENT, "Zero sequence imbalance of the currents"),
        mv("ImbZroV", at + "ImbZrV", PERCENT, "Zero sequence imbalance of the voltages"),
    ])


def distortion(at, kinds=("", "Odd", "Evn"), phases=ABCN, i=""):
    """Total distortion of voltages and currents; `i` "I" for the interharmonics."""
    words = {"": "Total", "Odd": "Odd", "Evn": "Even"}
    what = " interharmonic" if i else " harmonic"
    dos = []
    for kind in kinds:
        address = at + i + "Thd" + kind
        desc = words[kind] + what + " distortion of the "
        dos += [
            wye("Thd" + kind + "A", address + "A", PERCENT, desc + "currents", phases),
            wye("Thd" + kind + "PhV", address + "PhV", PERCENT, desc + "phase voltages", phases),
            delta("Thd" + kind + "PPV", address + "PPV", PERCENT, desc + "phase-to-phase voltages"),
        ]
    return dos


def spectra(at, i=""):
    what, end = ("Interharmonics", "ConArr") if i else ("Harmonics", "Arr")
    return [
        hwye("HA", at + i + "HA" + end, RATIO, what + " of the currents"),
        hwye("HPhV", at + i + "HPhV" + end, RATIO, what + " of the phase voltages"),
        hdel("HPPV", at + i + "HPPV" + end, RATIO, what + " of the phase-to-phase voltages"),
    ]


def harmonics(prefix, at, desc):
    """MHAI of demand values: spectra, distortions, K factor, frequency."""
    return Ln(prefix, "MHAI", "1", desc, [
        mv("Hz", at + "HHz", HERTZ, "Base frequency of the harmonics"),
        *spectra(at),
        wye("HKf", at + "HKf", RATIO, "K factor of the currents", ABCN),
        *distortion(at),
    ])


def realTime():
    at = "RT."
    basicLn = Ln("", "MMXU", "1", "RMS values", totals(at, subst=True) + [
        mv("Hz", at + "Hz", HERTZ, "Frequency", subst=True),
        delta("PPV", at + "PPV", VOLT, "Phase-to-phase voltages", LINES),
        wye("PhV", at + "PhV", VOLT, "Phase voltages", ABCN, ABC, subst=True),
        wye("A", at + "A", AMP, "Currents", ABCN, ABC, subst=True),
        *phasePowers(at), *averages(at), *deviations(at),
    ])
    fundamental = Ln("fnd", "MMXU", "1", "Values of the fundamental", totals(at, "D") + [
        delta("PPV", at + "DPPV", VOLT, "Phase-to-phase voltages", LINES),
        wye("PhV", at + "DPhV", VOLT, "Phase voltages", ABCN, ABCN),
        wye("A", at + "DA", AMP, "Currents", ABCN, ABCN),
        *phasePowers(at, "D"), *averages(at, "D"),
    ])
    harmonic = Ln("", "MHAI", "1", "Harmonics", [
        *spectra(at),
        wye("HKf", at + "HKf", RATIO, "K factor of the currents", ABCN),
        *distortion(at),
    ])
    inter = Ln("inh", "MHAI", "1", "Interharmonics", [
        *spectra(at, "I"),
        *distortion(at, i="I"),
        wye("IDA", at + "IDACon", RATIO, "Subharmonic content of the currents", ABCN),
        wye("IDPhV", at + "IDPhVCon", RATIO, "Subharmonic content of the phase voltages", ABCN),
        delta("IDPPV", at + "IDPPVCon", RATIO, "Subharmonic content of the phase-to-phase voltages"),
    ])
    flicker = Ln("", "MFLK", "1", "Flicker", [
        wye("PhPst", at + "PhVPst", RATIO, "Short-term severity, phase voltages"),
        wye("PhPlt", at + "PhVPlt", RATIO, "Long-term severity, phase voltages"),
        delta("PPPst", at + "PPVPst", RATIO, "Short-term severity, phase-to-phase voltages"),
        delta("PPPlt", at + "PPVPlt", RATIO, "Long-term severity, phase-to-phase voltages"),
    ])
    rated = Ln("rtd", "GGIO", "1", "Rated values in force", [
        Do("RtdVolt", "INS", "MICS.RtdVolt", "Rated voltage in V"),
        Do("RtdCurr", "INS", "MICS.RtdCurr", "Rated phase current in A"),
        Do("RtdI4", "INS", "MICS.RtdI4", "Rated neutral current in A"),
    ])
    sequence = sequences("", at, "Symmetrical components", "seqV", "seqA")
    return frame("MEAS", "Real-time measurements",
                 [basicLn, fundamental, sequence, harmonic, inter, flicker, rated])


def demand():
    lns = []
    for prefix, word in (("avg", "Mean"), ("max", "Highest"), ("min", "Lowest")):
        at = "DMD." + prefix + "."
        lns += [
            basic(prefix, at, word + " values of the demand period"),
            sequences(prefix, at, word + " symmetrical components"),
            harmonics(prefix, at, word + " harmonics"),
        ]
    lns.append(basic("pre", "DMD.pre.", "Predicted demand", deviation=False))
    return frame("DMND", "Demand", lns)


def statistics():
    lns = []
    for month, short, when in (("now", "now", "this"), ("last", "lst", "last")):
        for kind, word in (("max", "Highest"), ("min", "Lowest")):
            at = "MON.rt.%s.%s." % (month, kind)
            prefix = short + kind.capitalize()
            desc = "%s of %s month" % (word, when)
            lns += [
                basic(prefix, at, desc, deviation=False, perPhase=False),
                sequences(prefix, at, desc),
                Ln(prefix, "MHAI", "1", desc, [
                    mv("Hz", at + "HHz", HERTZ, "Base frequency of the harmonics"),
                    wye("HKf", at + "HKf", RATIO, "K factor of the currents", ABCN),
                    *distortion(at, kinds=("",), phases=ABC),
                ]),
            ]
        at = "MON.dmd.%s.max." % month
        lns.append(Ln(short, "MSTA", "1", "Highest demand of %s month" % when, [
            mv("MaxVA", at + "TotVA", KVA, "Highest demand of apparent power"),
            mv("MaxW", at + "TotW", KW, "Highest demand of active power"),
            mv("MaxVAr", at + "TotVAr", KVAR, "Highest demand of reactive power"),
            wye("MaxA", at + "A", AMP, "Highest demand of the currents"),
        ]))
    return frame("MSTAT", "Monthly extremes", lns)
