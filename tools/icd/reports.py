"""Data sets, report control blocks and log control blocks, one row each.

A data set takes whole data objects in one functional constraint. There is a block of its own for
each of the eight clients.
"""

from dataclasses import dataclass

from icd.element import Element

CLIENTS = 8


@dataclass
class Set:
    device: str
    name: str
    desc: str
    members: tuple      # names of logical nodes, or "LN.DO" for single data objects
    fc: str
    report: str         # name of the report control block
    buffered: bool
    triggers: str
    period: int = 0     # integrity period in ms
    bufTime: int = 0    # ms
    log: str = ""       # name of a log control block over the same data set


LIVE = "dchg qchg period"
EDGE = "dchg qchg"

SETS = (
    Set("MEAS", "dsRms", "RMS values", ("MMXU1",), "MX", "urcbRms", False, LIVE, 10000, log="lcbRms"),
    Set("MEAS", "dsFund", "Fundamental", ("fndMMXU1",), "MX", "urcbFund", False, LIVE, 30000),
    Set("MEAS", "dsQual", "Imbalance and flicker", ("MSQI1", "MFLK1"), "MX", "urcbQual", False, LIVE, 30000),
    Set("MEAS", "dsHarm", "Harmonics", ("MHAI1",), "MX", "urcbHarm", False, "period", 60000),
    Set("MEAS", "dsInter", "Interharmonics", ("inhMHAI1",), "MX", "urcbInter", False, "period", 60000),
    Set("DMND", "dsDmd", "Demand", ("avgMMXU1", "avgMSQI1"), "MX", "brcbDmd", True, "dchg", 0, 500),
    Set("DMND", "dsPre", "Predicted demand", ("preMMXU1",), "MX", "urcbPre", False, LIVE, 60000),
    Set("MSTAT", "dsMax", "Highest values of this month", ("nowMaxMMXU1", "nowMSTA1"), "MX", "urcbMax",
        False, LIVE, 60000),
    Set("ENRG", "dsEng", "Energy registers", ("MMTR1", "plsGGIO1"), "ST", "urcbEng", False, LIVE, 60000),
    Set("STEV", "dsInd", "Inputs and logic", ("diGGIO1", "lgGGIO1"), "ST", "brcbInd", True, EDGE, 0, 50,
        log="lcbInd"),
    Set("STEV", "dsAlm", "Setpoint alarms", ("spGGIO1",), "ST", "brcbAlm", True, EDGE, 0, 50, log="lcbAlm"),
    Set("STEV", "dsChk", "Self-check", ("chkGGIO1",), "ST", "brcbChk", True, EDGE, 0, 50),
    Set("STEV", "dsRcd", "Recorders", ("RDRE1.RcdMade ST", "RDRE1.FltNum ST", "RDRE1.RcdStr ST",
                                       "RDRE2.RcdMade ST", "RDRE2.FltNum ST", "RDRE2.RcdStr ST"), "",
        "brcbRcd", True, EDGE),
    Set("STEV", "dsVar", "Voltage events",
        ("QVVR1.VarStr ST", "QVVR1.DipStr ST", "QVVR1.SwlStr ST", "QVVR1.IntrStr ST", "QVVR1.VVa MX",
         "QVVR1.VVaTm MX", "QVTR1.TransStr ST", "QVTR1.MaxVtrs MX", "QVTR1.VtrsTm MX"), "", "brcbVar", True,
        "dchg qchg dupd", log="lcbVar"),
    Set("CTRL", "dsOut", "Outputs", ("outGGIO1",), "ST", "brcbOut", True, EDGE, 0, 50),
)

HEAD = ("Mod", "Beh", "Health", "NamPlt")
MEASURED = ("MV", "WYE", "DEL", "SEQ", "HWYE", "HDEL")


def members(ld, row):
    """Pairs of logical node and data object, with the functional constraint."""
    nodes = {ln.name: ln for ln in ld.lns}
    for text in row.members:
        if "." in text:
            name, fc = text.split()
            ln, do = name.split(".")
            yield nodes[ln], do, fc
        else:
            for do in nodes[text].dos:
                if do.name not in HEAD and (row.fc == "MX") == (do.cdc in MEASURED):
                    yield nodes[text], do.name, row.fc


def dataSet(ld, row):
    return Element("DataSet", {"name": row.name, "desc": row.desc}, [
        Element("FCDA", {"ldInst": ld.inst, "prefix": ln.prefix or None, "lnClass": ln.cls,
                         "lnInst": ln.inst, "doName": do, "fc": fc})
        for ln, do, fc in members(ld, row)])


def reportControl(ld, row):
    options = ["seqNum", "timeStamp", "dataSet", "reasonCode", "configRef"]
    options += ["entryID", "bufOvfl"] if row.buffered else []
    return Element("ReportControl", {
        "name": row.report, "datSet": row.name, "intgPd": row.period, "rptID": ld.inst + "/" + row.report,
        "confRev": 1, "buffered": "true" if row.buffered else "false", "bufTime": row.bufTime}, [
            Element("TrgOps", {t: "true" for t in row.triggers.split() + ["gi"]}),
            Element("OptFields", {o: "true" for o in options}),
            Element("RptEnabled", {"max": CLIENTS})])


def logControl(ld, row):
    if not row.log:
        return None
    triggers = [t for t in row.triggers.split() if t != "dupd"]
    return Element("LogControl", {
        "name": row.log, "datSet": row.name, "intgPd": 60000 if "period" in triggers else 0,
        "logName": ld.inst, "logEna": "false" if "period" in triggers else "true", "reasonCode": "true"},
        [Element("TrgOps", {t: "true" for t in triggers})])


def blocks(ld):
    """What the LLN0 of a device holds before its DOIs: data sets, reports, logs in this order."""
    rows = [row for row in SETS if row.device == ld.inst]
    return ([dataSet(ld, row) for row in rows] + [reportControl(ld, row) for row in rows]
            + [logControl(ld, row) for row in rows])
