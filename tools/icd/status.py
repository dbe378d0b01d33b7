"""Devices of status, events and controls."""

from icd.describe import MILLISECOND, PERCENT, SECOND, Do, Ln, frame, mv

FAULTS = (
    ("DspFlt", "dspFlt", "Signal processor fault"), ("AdFlt", "adFlt", "Analogue converter fault"),
    ("BatFlt", "batFlt", "Battery fault"), ("PwrFlt", "pwrFlt", "Power supply fault"),
    ("FlashFlt", "flashFlt", "Flash fault"), ("FramFlt", "framFlt", "FRAM fault"),
    ("SysParaFlt", "sysParaFlt", "System parameters faulty"),
    ("SpParaFlt", "spParaFlt", "Setpoint parameters faulty"),
    ("SnpParaFlt", "snapParaFlt", "Snapshot parameters faulty"),
    ("WavParaFlt", "wavParaFlt", "Waveform parameters faulty"),
    ("PqParaFlt", "pqParaFlt", "Power quality parameters faulty"),
    ("EngParaFlt", "engParaFlt", "Energy parameters faulty"),
    ("SecParaFlt", "secParaFlt", "Security parameters faulty"),
    ("ComParaFlt", "commParaFlt", "Communication parameters faulty"),
)


def sps(name, saddr, desc, **more):
    return Do(name, "SPS", saddr, desc, **more)


def spc(name, saddr, desc, model="direct-with-normal-security"):
    return Do(name, "SPC", saddr, desc, control=model)


def recorder(n):
    return Ln("", "RDRE", str(n), "Waveform recorder %d" % n, [
        sps("RcdMade", "RD.RcdMade%d" % n, "A record is made"),
        Do("FltNum", "INS", "RD.FltNum%d" % n, "Number of records"),
        sps("RcdStr", "RD.RcdStr%d" % n, "A record has started"),
        spc("RcdTrg", "CTL.RcdTrg%d" % n, "Start a record", "direct-with-enhanced-security"),
        spc("MemClr", "CTL.ClrRcd%d" % n, "Clear the records"),
    ])


def statusAndEvents():
    inputs = [sps("Ind%d" % n, "ST.DI%d" % n, "Digital input %d" % n, subst=True) for n in range(1, 9)]
    alarms = [sps("Alm%d" % n, "ST.SP%d" % n, "Setpoint %d" % n, dual=True) for n in range(1, 33)]
    logic = [sps("Ind%d" % n, "ST.logic%d" % n, "Logic group %d" % n) for n in range(1, 9)]
    variation = [
        sps("VarStr", "SOE.VarStr", "Voltage variation"), sps("DipStr", "SOE.DipStr", "Voltage dip"),
        sps("SwlStr", "SOE.SwlStr", "Voltage swell"),
        sps("IntrStr", "SOE.IntrStr", "Voltage interruption"),
        mv("VVa", "SOE.VVa", PERCENT, "Magnitude of the variation"),
        mv("VVaTm", "SOE.VVaTm", SECOND, "Duration of the variation"),
    ]
    transient = [
        sps("TransStr", "SOE.TransStr", "Transient"),
        mv("MaxVtrs", "SOE.MaxVtrs", PERCENT, "Peak of the transient"),
        mv("VtrsTm", "SOE.VtrsTm", MILLISECOND, "Duration of the transient"),
    ]
    return frame("STEV", "Status and events", [
        Ln("di", "GGIO", "1", "Digital inputs", inputs),
        Ln("sp", "GGIO", "1", "Setpoint alarms", alarms),
        Ln("lg", "GGIO", "1", "Logic outputs", logic),
        Ln("chk", "GGIO", "1", "Self-check", [sps(n, "ST." + a, d) for n, a, d in FAULTS]),
        Ln("", "QVVR", "1", "Voltage variations", variation),
        Ln("", "QVTR", "1", "Voltage transients", transient),
        recorder(1), recorder(2),
    ])


def controls():
    outputs = [spc("SPCSO%d" % n, "CTL.RO%d" % n, "Relay output %d" % n, "sbo-with-enhanced-security")
               for n in range(1, 5)]
    outputs += [spc("SPCSO%d" % (n + 4), "CTL.DO%d" % n, "Digital output %d" % n,
                    "sbo-with-normal-security") for n in (1, 2)]
    clear = [spc("ClrDIPls%d" % n, "CTL.ClrDIPls%d" % n, "Clear the pulses of digital input %d" % n)
             for n in range(1, 9)]
    clear += [spc(name, "CTL." + saddr, "Clear " + what) for name, saddr, what in (
        ("ClrEngBill", "ClrEngBill", "the energy bills"),
        ("ClrRtNow", "ClrMonRtNow", "the extremes of this month"),
        ("ClrRtLast", "ClrMonRtLast", "the extremes of last month"),
        ("ClrDmdNow", "ClrMonDmdNow", "the demands of this month"),
        ("ClrDmdLast", "ClrMonDmdLast", "the demands of last month"),
        ("ClrAllLog", "ClrAllLog", "all logs"))]
    snaps = [spc("ClrSnap%d" % n, "CTL.ClrSnap%d" % n, "Clear snapshot group %d" % n)
             for n in range(1, 25)]
    return frame("CTRL", "Controls", [
        Ln("out", "GGIO", "1", "Outputs", outputs),
        Ln("clr", "GGIO", "1", "Clearing of registers", clear),
        Ln("snp", "GGIO", "1", "Clearing of snapshots", snaps),
    ])
