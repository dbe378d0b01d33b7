"""Devices of the instrument's parameters, with the limits that the instrument checks on a commit.

A parameter whose allowed values depend on another has its widest limits here; a step of 0 is none.
Those of a setting group lie in FC SG, from which the server makes FC SE.
"""

from icd.describe import PERCENT, RATIO, Do, Ln, frame


def integer(name, at, desc, low=None, high=None, **more):
    limits = () if low is None else (low, high, 1)
    return Do(name, "ING", at + name, desc, limits=limits, typed=True, **more)


def integers(at, table):
    return [integer(name, at, *row) for name, *row in table]


def percent(name, at, desc, low, high, parameter=None):
    """`parameter` is the instrument's name where it is too long for a data object."""
    saddr = at + (parameter or name)
    return Do(name, "ASG", saddr, desc, PERCENT, limits=(low, high, 1), typed=True)


def switch(name, at, desc, **more):
    return Do(name, "SPG", at + name, desc, typed=True, **more)


def choice(name, at, desc, enum, high):
    return Do(name, "ENG", at + name, desc, limits=(1, high, 1), enum=enum, typed=True)


SYS = "SET.sys."
ANY_FLOAT = ("-3.4028235e+38", "3.4028235e+38", 0)


def transformers():
    return Ln("tr", "GGIO", "1", "Transformers and ratings", integers(SYS, (
        ("TVMod", "Wiring: 0 wye, 1 delta, 2 as wye", 0, 2),
        ("TVPri", "Voltage transformer, primary V", 1, 1000000),
        ("TVSec", "Voltage transformer, secondary V", 1, 690),
        ("TAPri", "Current transformer, primary A", 1, 30000),
        ("TASec", "Current transformer, secondary A", 1, 5),
        ("I4Pri", "Neutral current transformer, primary A", 1, 30000),
        ("I4Sec", "Neutral current transformer, secondary A", 1, 5),
        ("V4Pri", "Neutral voltage transformer, primary V", 1, 1000000),
        ("V4Sec", "Neutral voltage transformer, secondary V", 1, 400),
        ("RtgVolt", "Rated voltage in V", 1, 700),
        ("RtgFreq", "Rated frequency: 0 50 Hz, 1 60 Hz", 0, 1),
        ("IaSign", "Current A reversed", 0, 1), ("IbSign", "Current B reversed", 0, 1),
        ("IcSign", "Current C reversed", 0, 1))))


def calculation():
    dos = integers(SYS, (
        ("ClcHV", "Voltage harmonics: 0 ratios, 1 volts", 0, 1),
        ("ClcHA", "Current harmonics: 0 ratios, 1 amperes", 0, 1),
        ("ClcHRat", "Base of the ratios: 0 fundamental, 1 RMS", 0, 1)))
    dos += [choice("ClcTotVA", SYS, "Total apparent power", "ClcTotVA", 2),
            choice("PFSign", SYS, "Sign of the power factor", "PFSign", 3)]
    dos += integers(SYS, (
        ("DmdPeriod", "Demand period in minutes", 1, 60),
        ("DmdNum", "Periods of the demand window", 1, 15),
        ("PreDmdFac", "Sensitivity of the prediction in percent", 70, 99),
        ("ClcDmd", "Demand synchronised by an input", 0, 1),
        ("SettleTime", "Settlement, day x 100 + hour; 65535 end of month", 0, 65535),
        ("EngPlsFac", "Energy pulses: factor", 0, 4), ("WhPlsMod", "Active energy pulses: mode", 0, 3),
        ("VarhPlsMod", "Reactive energy pulses: mode", 0, 3),
        ("SysLan", "Language of the display", 0, 2), ("BLTmm", "Back light in minutes", 0, 60)))
    return Ln("clc", "GGIO", "1", "Calculation, demand and energy", dos)


def quality():
    dos = [switch("TransEna", SYS, "Transients are detected"),
           percent("TrsStrVar", SYS, "Start of a transient", 5, 500, "TransStrVar")]
    dos += integers(SYS, (("TransTrg1", "Transient, first action", 0, 35),
                          ("TransTrg2", "Transient, second action", 0, 35)))
    dos += [switch("VarEna", SYS, "Voltage variations are detected"),
            percent("DipStrVar", SYS, "Start of a dip", 1, 99),
            percent("SwlStrVar", SYS, "Start of a swell", 101, 200),
            percent("IntrStrVar", SYS, "Start of an interruption", 0, 50)]
    dos += integers(SYS, (("VarTrg1", "Variation, first action", 0, 35),
                          ("VarTrg2", "Variation, second action", 0, 35)))
    return Ln("pq", "GGIO", "1", "Voltage events", dos)


def time():
    dos = integers(SYS, (
        ("TmOfsTmm", "Time zone, number of the list", 0, 34),
        ("IRIGOfsTmm", "Offset of the IRIG-B source in minutes", -1440, 1440),
        ("TmSrc", "Time source", 0, 4)))
    dos += [Do("TmDT", "SPS", "MICS.TmDT", "Daylight saving in effect"),
            switch("TmUseDT", "MICS.", "Daylight saving is used", fc="SP")]
    return Ln("", "LTIM", "1", "Time", dos)


def inputsAndOutputs():
    at = "SET.IO."
    numbers = range(1, 9)
    inputs = [integer("DIMod%d" % n, at, "0 status, 1 pulses, 2 demand, 3 time", 0, 3) for n in numbers]
    inputs += [integer("DIStaTmms%d" % n, at, "Debounce in ms", 1, 1000) for n in numbers]
    inputs += [integer("DIPlsFac%d" % n, at, "Value of a pulse", 1, 1000000) for n in numbers]
    outputs = [integer("DOMod%d" % n, at, "0 remote control, else pulses", 0, 6) for n in (1, 2)]
    outputs += [integer("DOPlsTm%d" % n, at, "Length of a pulse in 10 ms", 0, 6000) for n in (1, 2)]
    outputs += [integer("ROPlsTm%d" % n, at, "Length of a pulse in 10 ms", 0, 6000) for n in range(1, 5)]
    return [Ln("di", "GGIO", "1", "Digital inputs", inputs), Ln("do", "GGIO", "1", "Outputs", outputs)]


def recorders():
    lns = []
    for n in (1, 2):
        lns.append(Ln("wav", "RDRE", str(n), "Waveform recorder %d" % n, integers("SET.wave%d." % n, (
            ("MaxNumRcd", "Number of records", 0, 128),
            ("SmpRat", "Samples a cycle, number of the list", 0, 5),
            ("PreCyc", "Cycles before the trigger", 2, 192)))))
    return lns


def bill():
    at = "SET.EngBill."
    dos = integers(at, (
        ("LogMod", "Mode of the log", 0, 2), ("LogNum", "Number of entries", 0, 65535),
        ("StrTmYear", "Start: year", 0, 99), ("StrTmMon", "Start: month", 0, 12),
        ("StrTmDay", "Start: day", 0, 31), ("StrTmHour", "Start: hour", 0, 23),
        ("StrTmMin", "Start: minute", 0, 59), ("StrTmSec", "Start: second", 0, 59),
        ("VarNum", "Number of registers", 0, 5)))
    dos += [integer("var%d" % n, at, "Register", 0, 4) for n in range(1, 6)]
    dos.append(integer("LogIntv", at, "Interval in minutes", fc="SP"))
    return Ln("bil", "GGIO", "1", "Energy bill", dos)


def setpoint(n):
    at = "SET.setpoint%d." % n
    dos = integers(at, (("TrgMod", "0 off, 1 over, 2 under", 0, 2),
                        ("MonObj", "Quantity", 0, 162 if n < 25 else 18)))
    dos += [Do(name, "ASG", at + name, desc, RATIO, limits=ANY_FLOAT, typed=True)
            for name, desc in (("OvStrVar", "Upper limit"), ("UnStrVar", "Lower limit"))]
    dos += integers(at, (("ActTm", "Delay", 0, 9999), ("RetTm", "Return delay", 0, 9999),
                         ("Trg1", "First action", 0, 35), ("Trg2", "Second action", 0, 35)))
    return Ln("set", "GGIO", str(n), "Setpoint %d" % n, dos)


def logic(n):
    at = "SET.logic%d." % n
    dos = [switch("LogicEna", at, "Enabled")]
    dos += [integer("input%d" % i, at, "Input", 0, 32) for i in range(1, 5)]
    dos += [integer("logic%d" % i, at, "Operator", 0, 3) for i in range(1, 4)]
    dos += integers(at, (("Trg1", "First action", 0, 34), ("Trg2", "Second action", 0, 34)))
    return Ln("lgc", "GGIO", str(n), "Logic group %d" % n, dos)


def snapshot(n):
    at = "SET.snap%d." % n
    early = n < 9
    dos = integers(at, (
        ("StrMod", "Start of the snapshot", 0, 2), ("LogMod", "Mode of the log", 0, 0 if early else 1),
        ("LogNum", "Number of entries", 0, 65535),
        ("LogIntv", "Interval in s", 1, 60 if early else 3456000),
        ("OfsTm", "Offset in s", 0, 43200), ("VarNum", "Number of quantities", 0, 16)))
    dos += [integer("var%d" % i, at, "Quantity", 0, 31 if early else 1743) for i in range(1, 17)]
    return Ln("snp", "GGIO", str(n), "Snapshot group %d" % n, dos)


def settings():
    system = [transformers(), calculation(), quality(), time(), *inputsAndOutputs(), *recorders(), bill()]
    points = [setpoint(n) for n in range(1, 33)] + [logic(n) for n in range(1, 9)]
    return [
        frame("SETSYS", "Settings of the instrument", system, groups=1),
        frame("SETSPT", "Settings of setpoints and logic", points, groups=1),
        frame("SETSNP", "Settings of the snapshots", [snapshot(n) for n in range(1, 25)], groups=1),
    ]
