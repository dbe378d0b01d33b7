"""The short addresses that the instrument gives its records, with the common data class of each."""

PHASORS = """PhV:WYE AvgPhV:MV PPV:DEL AvgPPV:MV A:WYE AvgA:MV TotW:MV TotVAr:MV TotVA:MV TotPF:MV"""
POWERS = """W:WYE VAr:WYE VA:WYE PF:WYE Hz:MV"""
IMBALANCE = """ImbZrV:MV ImbNgV:MV ImbZrA:MV ImbNgA:MV"""
DEVIATIONS = """HzDev:MV PhVDev:WYE PPVDev:DEL"""


def thd(prefix):
    return " ".join("%sThd%s%s:%s" % (prefix, kind, q, cdc) for kind in ("", "Odd", "Evn")
                    for q, cdc in (("PhV", "WYE"), ("PPV", "DEL"), ("A", "WYE")))


REAL_TIME = " ".join((
    PHASORS, POWERS, DEVIATIONS, "seqV:SEQ seqA:SEQ", IMBALANCE,
    "PhVPst:WYE PPVPst:DEL PhVPlt:WYE PPVPlt:DEL DPhV:WYE AvgDPhV:MV DPPV:DEL AvgDPPV:MV DA:WYE AvgDA:MV",
    "TotDW:MV TotDVAr:MV TotDVA:MV TotDPF:MV DW:WYE DVAr:WYE DVA:WYE DPF:WYE HKf:WYE", thd(""),
    "HPhVArr:HWYE HPPVArr:HDEL HAArr:HWYE", thd("I"), "IDPhVCon:WYE IDPPVCon:DEL IDACon:WYE",
    "IHPhVConArr:HWYE IHPPVConArr:HDEL IHAConArr:HWYE"))
DEMAND = " ".join((PHASORS, POWERS, DEVIATIONS, "SeqV:SEQ SeqA:SEQ", IMBALANCE, "HHz:MV HKf:WYE", thd(""),
                   "HPhVArr:HWYE HPPVArr:HDEL HAArr:HWYE"))
PREDICTED = PHASORS + " " + POWERS
EXTREMES = " ".join((PHASORS, "Hz:MV SeqV:SEQ SeqA:SEQ", IMBALANCE,
                     "HHz:MV HKf:WYE ThdPhV:WYE ThdPPV:DEL ThdA:WYE"))
MAX_DEMAND = "A:WYE TotW:MV TotVAr:MV TotVA:MV"


def numbered(name, first, last):
    return ["%s%d" % (name, n) for n in range(first, last + 1)]


ENERGY = numbered("PlsCnt", 1, 8) + """DmdWh SupWh TotWh SumWh DmdVArh SupVArh TotVArh SumVArh TotVAh DmdWhD
SupWhD DmdVArhD SupVArhD DmdWhHt SupWhHt DmdVArhHt SupVArhHt""".split() \
    + numbered("DmdWhH", 2, 31) + numbered("DmdVArhH", 2, 31)
STATUS = numbered("DI", 1, 8) + numbered("SP", 1, 32) + numbered("logic", 1, 8) + """dspFlt adFlt batFlt pwrFlt
flashFlt framFlt sysParaFlt spParaFlt snapParaFlt wavParaFlt pqParaFlt engParaFlt secParaFlt
commParaFlt""".split()
EVENTS = """VarStr:SPS DipStr:SPS SwlStr:SPS IntrStr:SPS VVa:MV VVaTm:MV TransStr:SPS MaxVtrs:MV VtrsTm:MV"""
RECORDS = """RcdStr1:SPS RcdMade1:SPS FltNum1:INS RcdStr2:SPS RcdMade2:SPS FltNum2:INS"""
SYSTEM = """TVMod TVPri TVSec TAPri TASec I4Pri I4Sec V4Pri V4Sec RtgVolt RtgFreq DmdPeriod DmdNum PreDmdFac
ClcDmd ClcHV ClcHA ClcHRat IaSign IbSign IcSign ClcTotVA:ENG PFSign:ENG SettleTime TmOfsTmm IRIGOfsTmm TmSrc
TransEna:SPG TransStrVar:ASG TransTrg1 TransTrg2 VarEna:SPG DipStrVar:ASG SwlStrVar:ASG IntrStrVar:ASG
VarTrg1 VarTrg2 SysLan BLTmm EngPlsFac WhPlsMod VarhPlsMod"""
IO = numbered("DIMod", 1, 8) + numbered("DIStaTmms", 1, 8) + numbered("DIPlsFac", 1, 8) \
    + "DOMod1 DOMod2 DOPlsTm1 DOPlsTm2 ROPlsTm1 ROPlsTm2 ROPlsTm3 ROPlsTm4".split()
SETPOINT = "TrgMod MonObj OvStrVar:ASG UnStrVar:ASG ActTm RetTm Trg1 Trg2"
LOGIC = "LogicEna:SPG input1 input2 input3 input4 logic1 logic2 logic3 Trg1 Trg2"
WAVE = "MaxNumRcd SmpRat PreCyc"
SNAPSHOT = "StrMod LogMod LogNum LogIntv OfsTm VarNum".split() + numbered("var", 1, 16)
BILL = """LogMod LogNum LogIntv StrTmYear StrTmMon StrTmDay StrTmHour StrTmMin StrTmSec VarNum""".split() \
    + numbered("var", 1, 5)
CONTROLS = "DO1 DO2 RO1 RO2 RO3 RO4".split() + numbered("ClrDIPls", 1, 8) \
    + "RcdTrg1 RcdTrg2 ClrRcd1 ClrRcd2".split() + numbered("ClrSnap", 1, 24) \
    + "ClrEngBill ClrMonRtNow ClrMonRtLast ClrMonDmdNow ClrMonDmdLast ClrAllLog".split()
DEVICE = """NamPlt:LPL Beh:ENS Health:ENS Mod:ENC PhyNam:DPL PhyHealth:ENS Proxy:SPS TmDT:SPS TmUseDT:SPG
RtdVolt:INS RtdCurr:INS RtdI4:INS"""


def leafRows():
    """All short addresses, each with its common data class."""
    rows = {}

    def table(prefix, names, cdc=None):
        for name in names.split() if isinstance(names, str) else names:
            name, _, own = name.partition(":")
            rows[prefix + name] = own or cdc

    table("RT.", REAL_TIME)
    for kind in ("avg", "max", "min"):
        table("DMD.%s." % kind, DEMAND)
    table("DMD.pre.", PREDICTED)
    for month in ("now", "last"):
        for kind in ("max", "min"):
            table("MON.rt.%s.%s." % (month, kind), EXTREMES)
        table("MON.dmd.%s.max." % month, MAX_DEMAND)
    table("ENG.", ENERGY, "BCR")
    table("ST.", STATUS, "SPS")
    table("SOE.", EVENTS)
    table("RD.", RECORDS)
    table("SET.sys.", SYSTEM, "ING")
    table("SET.IO.", IO, "ING")
    for n in range(1, 33):
        table("SET.setpoint%d." % n, SETPOINT, "ING")
    for n in range(1, 9):
        table("SET.logic%d." % n, LOGIC, "ING")
    for n in (1, 2):
        table("SET.wave%d." % n, WAVE, "ING")
    for n in range(1, 25):
        table("SET.snap%d." % n, SNAPSHOT, "ING")
    table("SET.EngBill.", BILL, "ING")
    table("CTL.", CONTROLS, "SPC")
    table("MICS.", DEVICE)
    return rows
