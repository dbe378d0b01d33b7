"""What the instrument allows in its parameters, for the comparison with minVal and maxVal.

A parameter whose limits depend on others is here with the widest that any state allows. "any" is every
finite value, without a step; "-" is a parameter that has no attributes for limits.
"""

SPECIAL = {"any": (-3.4028235e38, 3.4028235e38, 0), "-": None}

SYSTEM = """TVMod 0 2|TAPri 1 30000|TASec 1 5|TVPri 1 1000000|TVSec 1 690|I4Pri 1 30000|I4Sec 1 5
V4Pri 1 1000000|V4Sec 1 400|RtgFreq 0 1|RtgVolt 1 700|ClcHV 0 1|ClcHA 0 1|ClcHRat 0 1|IaSign 0 1|IbSign 0 1
IcSign 0 1|ClcTotVA 1 2|PFSign 1 3|SettleTime 0 65535|TmOfsTmm 0 34|IRIGOfsTmm -1440 1440|TmSrc 0 4|SysLan 0 2
BLTmm 0 60|DmdPeriod 1 60|DmdNum 1 15|PreDmdFac 70 99|ClcDmd 0 1|TransEna - -|TransStrVar 5 500|TransTrg1 0 35
TransTrg2 0 35|VarEna - -|SwlStrVar 101 200|DipStrVar 1 99|IntrStrVar 0 50|VarTrg1 0 35|VarTrg2 0 35
EngPlsFac 0 4|WhPlsMod 0 3|VarhPlsMod 0 3"""
IO = "DIMod 8 0 3|DIStaTmms 8 1 1000|DIPlsFac 8 1 1000000|DOMod 2 0 6|DOPlsTm 2 0 6000|ROPlsTm 4 0 6000"
SETPOINT = """TrgMod 0 2|MonObj 0 162|OvStrVar any any|UnStrVar any any|ActTm 0 9999|RetTm 0 9999|Trg1 0 35|Trg2 0 35"""
LOGIC = """LogicEna - -|input1 0 32|input2 0 32|input3 0 32|input4 0 32|logic1 0 3|logic2 0 3|logic3 0 3
Trg1 0 34|Trg2 0 34"""
WAVE = "MaxNumRcd 0 128|SmpRat 0 5|PreCyc 2 192"
SNAPSHOT = "StrMod 0 2|LogMod 0 0|LogNum 0 65535|LogIntv 1 60|OfsTm 0 43200|VarNum 0 16"
BILL = """LogMod 0 2|LogNum 0 65535|VarNum 0 5|StrTmYear 0 99|StrTmMon 0 12|StrTmDay 0 31|StrTmHour 0 23
StrTmMin 0 59|StrTmSec 0 59|var1 0 4|var2 0 4|var3 0 4|var4 0 4|var5 0 4"""


def whole(low, high):
    return (int(low), int(high), 1)


def parameterLimits():
    """Short address to (lowest, highest, step) or None, for every parameter that can be committed."""
    rows = {}

    def table(prefix, text, **changed):
        for row in text.replace("\n", "|").split("|"):
            name, low, high = row.split()
            limits = SPECIAL[low] if low in SPECIAL else whole(low, high)
            rows[prefix + name] = changed.get(name, limits)

    table("SET.sys.", SYSTEM)
    for row in IO.split("|"):
        name, count, low, high = row.split()
        for n in range(1, int(count) + 1):
            rows["SET.IO.%s%d" % (name, n)] = whole(low, high)
    for n in range(1, 33):
        table("SET.setpoint%d." % n, SETPOINT, **({} if n < 25 else {"MonObj": whole(0, 18)}))
    for n in range(1, 9):
        table("SET.logic%d." % n, LOGIC)
    for n in (1, 2):
        table("SET.wave%d." % n, WAVE)
    for n in range(1, 25):
        late = {"LogMod": whole(0, 1), "LogIntv": whole(1, 3456000)} if n > 8 else {}
        table("SET.snap%d." % n, SNAPSHOT, **late)
        for i in range(1, 17):
            rows["SET.snap%d.var%d" % (n, i)] = whole(0, 1743 if n > 8 else 31)
    table("SET.EngBill.", BILL)
    return rows
