"""Data sets, report and log control blocks: their members, triggers and options, and the depth of the
buffered rings, by the octets that an entry takes in the server on a 64-bit host."""

import re

from icdcheck.model import reportSize

DATA_SETS = 16                          # of maxDsNum 20, for clients that make their own
DATA_SET_MAX = 2 * 0xfa000
MEMORY = 2 * (12 << 20)                 # rptBufSpace, for pointers of 8 octets
LEAST_DEPTH, MOST_DEPTH = 5, 100        # minRptBufNum, maxRptBufNum; a URCB has always the least
DEPTH = 20
LEAST_PERIOD = 5000                     # minIntgPd
CLIENTS = 8
REFERENCE_MAX = 65
# What unbuffered and buffered blocks have to cover, by the short addresses of members.
KINDS = {
    "measurements": r"RT\.(TotW|PhV|AvgPhV)$", "harmonics": r"RT\.Thd", "demand": r"DMD\.avg\.",
    "status": r"ST\.DI", "alarms": r"ST\.SP", "events": r"SOE\.",
}
EVENTS = ("dchg", "qchg", "dupd")
OPTIONS = ("seqNum timeStamp dataSet reasonCode dataRef configRef segmentation", "bufOvfl entryID")

# Basic types whose change the server can tell, and data classes whose records count their updates.
COMPARABLE = ("BOOLEAN Dbpos Check INT8 INT8U INT16 Quality INT32 INT128 INT32U FLOAT32 Enum").split()
COUNTED = "SPS DPS INS BCR MV CMV WYE DEL SEQ HMV HWYE HDEL HST ENS".split()
SPECTRA = "HMV HWYE HDEL".split()
VALUES = {"stVal", "stSeld", "actVal", "mag", "cVal"}


def triggers(do, path, leaf):
    """The triggers that an attribute in FC ST or MX has to have."""
    if path[-1] == "q":
        return {"qchg"}
    if not leaf.count and not VALUES & set(path):
        return set()
    return {"dchg", "dupd"} if do.cdc in COUNTED else {"dchg"}


def triggerFaults(file):
    for key in file.objects:
        for fc, do in file.views(key):
            for path, leaf in do.leaves():
                text = "/".join(key) + "." + ".".join(path)
                wanted = triggers(do, path, leaf) if fc in ("ST", "MX") else set()
                if leaf.triggers != wanted:
                    yield "%s has the triggers %s" % (text, " ".join(sorted(leaf.triggers)) or "none")
                if leaf.triggers and not (do.cdc in SPECTRA if leaf.count else leaf.bType in COMPARABLE):
                    yield "%s can never trigger" % text


class DataSet:
    """Members with their nodes and short addresses; no node for one that the model does not have."""

    def __init__(self, file, element):
        self.members = []
        for fcda in element:
            ln = (fcda.get("prefix") or "") + fcda.get("lnClass") + (fcda.get("lnInst") or "")
            node = file.nodes.get((fcda.get("ldInst"), ln))
            parts = [fcda.get("fc")] + fcda.get("doName").split(".") + (fcda.get("daName") or "").split(".")
            for part in filter(None, parts):
                node = node and next((c for c in node.children if c.name == part), None)
            self.members.append((node, file.objects.get((fcda.get("ldInst"), ln, parts[1]), "")))
        self.complete = all(node for node, _ in self.members)
        flags = (len(self.members) + 7) // 8 * 8
        self.size = 48 + 2 * flags + sum(16 + reportSize(node) for node, _ in self.members if node)


class Block:
    """A ReportControl; `rings` of them are made of it."""

    def __init__(self, element, device, ln, sets):
        self.name = element.get("name")
        self.rptID = element.get("rptID") or ""
        self.reference = "%s/%s$%s" % (device, ln, element.get("datSet"))
        self.dataSet = sets.get((ln, element.get("datSet")))
        self.buffered = element.get("buffered") == "true"
        self.period = int(element.get("intgPd") or 0)
        self.rings = int(element.find("RptEnabled").get("max"))
        self.triggers = {k for k, v in element.find("TrgOps").items() if v == "true"}
        self.options = {k for k, v in element.find("OptFields").items() if v == "true"}
        self.depth = LEAST_DEPTH

    def faults(self):
        if self.rings < CLIENTS or self.rings > 99:
            yield "report %s: %d instances" % (self.name, self.rings)
        if len(self.rptID) + 2 > REFERENCE_MAX or len(self.name) > 29 or len(self.reference) > REFERENCE_MAX:
            yield "report %s: a name is too long" % self.name
        if self.options & set(OPTIONS[1].split()) and not self.buffered:
            yield "report %s has an option of buffered blocks" % self.name
        if "gi" not in self.triggers:
            yield "report %s answers no general interrogation" % self.name
        if ("period" in self.triggers) != (self.period > 0) or 0 < self.period < LEAST_PERIOD:
            yield "report %s: integrity period %d" % (self.name, self.period)
        events = self.triggers & set(EVENTS)
        if not events and "period" not in self.triggers:
            yield "report %s has no trigger" % self.name
        for node, saddr in self.dataSet.members:
            found = set().union(*(leaf.triggers for _, leaf in node.leaves())) if node else events
            if events and not events & found:
                yield "report %s: nothing of %s triggers it" % (self.name, saddr)


def divide(blocks):
    """Gives each block the depth of its rings; returns the octets of all."""
    need = sum(b.rings * b.depth * b.dataSet.size for b in blocks)
    shallow = [b for b in blocks if b.buffered]
    while shallow and need <= MEMORY:
        least = min(shallow, key=lambda b: b.dataSet.size).dataSet
        same = [b for b in shallow if b.dataSet is least]
        rings = sum(b.rings for b in same)
        more = min((MEMORY - need) // rings // least.size, MOST_DEPTH - LEAST_DEPTH)
        for block in same:
            block.depth += more
        need += more * rings * least.size
        shallow = [b for b in shallow if b not in same] if more else []
    return need


def coverFaults(blocks):
    """Kinds of data and options that no block has."""
    for kind, pattern in KINDS.items():
        for buffered in (False, True):
            if not any(re.match(pattern, saddr) for b in blocks if b.buffered == buffered
                       for _, saddr in b.dataSet.members):
                yield "no %s report of %s" % ("buffered" if buffered else "unbuffered", kind)
    missing = set(" ".join(OPTIONS).split()) - set().union(*(b.options for b in blocks))
    yield from ("no report has the option %s" % option for option in sorted(missing))


def blockFaults(file, figures):
    devices = {ld.get("inst") for ld in file.root.iter("LDevice")}
    blocks, number = [], 0
    for device in sorted(devices):
        elements = {ln: e for (ld, ln), e in file.elements.items() if ld == device}
        sets = {(ln, d.get("name")): DataSet(file, d) for ln, e in elements.items() for d in e.findall("DataSet")}
        number += len(sets)
        for (_, name), dataSet in sets.items():
            if not dataSet.complete or dataSet.size > DATA_SET_MAX:
                yield "data set %s/%s: unknown member, or too large" % (device, name)
        for ln, element in elements.items():
            for control in element.findall("ReportControl") + element.findall("LogControl"):
                if (ln, control.get("datSet")) not in sets:
                    yield "%s names the data set %s" % (control.get("name"), control.get("datSet"))
                elif control.tag == "ReportControl":
                    blocks.append(Block(control, file.ied + device, ln, sets))
                elif control.get("logName") not in devices:
                    yield "log %s is in no device" % control.get("name")
    figures["data sets"] = number
    if number > DATA_SETS:
        yield "%d data sets leave too few for clients" % number
    for block in blocks:
        yield from block.faults()
    yield from coverFaults(blocks)
    figures["report memory"] = divide(blocks)
    figures.update({b.name: b.depth for b in blocks if b.buffered})
    if figures["report memory"] > MEMORY:
        yield "reports take %d octets" % figures["report memory"]
    for block in blocks:
        if block.buffered and block.depth < DEPTH:
            yield "report %s has room for %d entries" % (block.name, block.depth)
