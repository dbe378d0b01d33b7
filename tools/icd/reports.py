"""Data sets, report control blocks and log control blocks, one row each.

A data set takes whole data objects in one functional constraint, so that a value comes with its
quality and time. Measurements and registers have unbuffered blocks; self-check, recorders and outputs, of
which no change may be lost, have buffered ones; demand, inputs, alarms and voltage events have both. Each
block has an instance for each of the eight clients.

The ring of an unbuffered block has 5 entries. A buffered block has 100, from the smallest data set to
the largest, as long as the report memory lasts; so all buffered blocks but the one with the largest
data set cost a hundred entries of each instance. For that their data sets are small: over live
measurements there are but the two of trends. A buffered block gathers from the start of the server, so
these take samples at their integrity period instead of every change.
"""

from dataclasses import dataclass

from icd.element import Element

CLIENTS = 8


@dataclass
class Set:
    device: str
    name: str
    desc: str
    members: tuple      # names of logical nodes, or "LN.DO FC" for single data objects
    fc: str = ""


@dataclass
class Report:
    dataSet: str
    name: str
    triggers: str
    period: int = 0     # integrity period in ms
    bufTime: int = 0    # ms
    options: str = ""   # further optional fields

    @property
    def buffered(self):
        return self.name.startswith("brcb")


@dataclass
class Log:
    dataSet: str
    name: str
    triggers: str
    period: int = 0     # ms; a block with one is enabled by a client only


def objects(ln, fc, names):
    return tuple("%s.%s %s" % (ln, name, fc) for name in names.split())


SETS = (
    Set("MEAS", "dsRms", "RMS values", ("MMXU1",), "MX"),
    Set("MEAS", "dsFund", "Fundamental", ("fndMMXU1",), "MX"),
    Set("MEAS", "dsQual", "Imbalance and flicker", ("MSQI1", "MFLK1"), "MX"),
    Set("MEAS", "dsHarm", "Harmonics, distortions of the interharmonics",
        ("MHAI1",) + objects("inhMHAI1", "MX", "ThdA ThdPhV ThdPPV IDA IDPhV IDPPV"), "MX"),
    Set("MEAS", "dsTrend", "Trend of the RMS values",
        objects("MMXU1", "MX", "TotW TotVAr TotPF Hz AvgPhV AvgPPV AvgA")),
    Set("MEAS", "dsThd", "Trend of the distortions", objects("MHAI1", "MX", "ThdA ThdPhV")),
    Set("DMND", "dsDmd", "Demand", objects("avgMMXU1", "MX", "TotW TotVAr TotVA TotPF A")),
    Set("DMND", "dsPre", "Predicted demand", ("preMMXU1",), "MX"),
    Set("MSTAT", "dsMax", "Highest values of this month", ("nowMaxMMXU1", "nowMSTA1"), "MX"),
    Set("ENRG", "dsEng", "Energy registers", ("MMTR1", "plsGGIO1"), "ST"),
    Set("STEV", "dsInd", "Inputs and logic", ("diGGIO1", "lgGGIO1"), "ST"),
    Set("STEV", "dsAlm", "Setpoint alarms", ("spGGIO1",), "ST"),
    Set("STEV", "dsChk", "Self-check", ("chkGGIO1",), "ST"),
    Set("STEV", "dsRcd", "Recorders", objects("RDRE1", "ST", "RcdMade FltNum RcdStr")
        + objects("RDRE2", "ST", "RcdMade FltNum RcdStr")),
    Set("STEV", "dsVar", "Voltage events", objects("QVVR1", "ST", "VarStr DipStr SwlStr IntrStr")
        + objects("QVVR1", "MX", "VVa VVaTm") + objects("QVTR1", "ST", "TransStr")
        + objects("QVTR1", "MX", "MaxVtrs VtrsTm")),
    Set("CTRL", "dsOut", "Outputs", ("outGGIO1",), "ST"),
)

LIVE = "dchg qchg period"
EDGE = "dchg qchg"
EVENT = "dchg qchg dupd"    # an event that equals the one before it is an update and no change
SAMPLE = "qchg period"

REPORTS = (
    Report("dsRms", "urcbRms", LIVE, 10000),
    Report("dsTrend", "brcbTrend", SAMPLE, 60000),
    Report("dsFund", "urcbFund", LIVE, 30000),
    Report("dsQual", "urcbQual", LIVE, 30000, 0, "dataRef"),
    Report("dsHarm", "urcbHarm", "period", 60000, 0, "segmentation"),
    Report("dsThd", "brcbThd", SAMPLE, 60000),
    Report("dsDmd", "urcbDmd", EVENT + " period", 60000),
    Report("dsDmd", "brcbDmd", EDGE, 0, 500),
    Report("dsPre", "urcbPre", LIVE, 60000),
    Report("dsMax", "urcbMax", LIVE, 60000),
    Report("dsEng", "urcbEng", LIVE, 60000),
    Report("dsInd", "urcbInd", EDGE + " period", 60000, 50, "dataRef"),
    Report("dsInd", "brcbInd", EDGE, 0, 50),
    Report("dsAlm", "urcbAlm", EDGE + " period", 60000, 50, "dataRef"),
    Report("dsAlm", "brcbAlm", EDGE, 0, 50),
    Report("dsChk", "brcbChk", EDGE, 0, 50),
    Report("dsRcd", "brcbRcd", EDGE, 0, 0, "dataRef"),
    Report("dsVar", "urcbVar", EVENT, 0, 0, "dataRef"),
    Report("dsVar", "brcbVar", EVENT, 0, 0, "dataRef segmentation"),
    Report("dsOut", "brcbOut", EDGE, 0, 50),
)

LOGS = (
    Log("dsRms", "lcbRms", LIVE, 60000),
    Log("dsInd", "lcbInd", EDGE),
    Log("dsAlm", "lcbAlm", EDGE),
    Log("dsVar", "lcbVar", EDGE),
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
    options = ["seqNum", "timeStamp", "dataSet", "reasonCode", "configRef", *row.options.split()]
    options += ["entryID", "bufOvfl"] if row.buffered else []
    return Element("ReportControl", {
        "name": row.name, "datSet": row.dataSet, "intgPd": row.period, "rptID": ld.inst + "/" + row.name,
        "confRev": 1, "buffered": "true" if row.buffered else "false", "bufTime": row.bufTime}, [
            Element("TrgOps", {t: "true" for t in row.triggers.split() + ["gi"]}),
            Element("OptFields", {o: "true" for o in options}),
            Element("RptEnabled", {"max": CLIENTS})])


def logControl(ld, row):
    return Element("LogControl", {
        "name": row.name, "datSet": row.dataSet, "intgPd": row.period, "logName": ld.inst,
        "logEna": "false" if row.period else "true", "reasonCode": "true"},
        [Element("TrgOps", {t: "true" for t in row.triggers.split()})])


def blocks(ld):
    """What the LLN0 of a device holds before its DOIs: data sets, reports, logs in this order."""
    rows = [row for row in SETS if row.device == ld.inst]
    names = {row.name for row in rows}
    return ([dataSet(ld, row) for row in rows]
            + [reportControl(ld, row) for row in REPORTS if row.dataSet in names]
            + [logControl(ld, row) for row in LOGS if row.dataSet in names])
