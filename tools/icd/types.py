"""Data type templates: a DOType for each shape of a common data class, with the DATypes and
EnumTypes it uses, and an LNodeType for each set of data objects.

The attributes of a class are those that the instrument's records hold (IEC 61850-7-3): a value that
nobody would ever write is left out.
"""

from icd.element import Element
from icd.enums import ENUMS

# DAType: rows of name, bType and, for Struct and Enum, the type.
STRUCTS = {
    "AnalogueValue": [("f", "FLOAT32")],
    "Vector": [("mag", "Struct", "AnalogueValue"), ("ang", "Struct", "AnalogueValue")],
    "Magnitude": [("mag", "Struct", "AnalogueValue")],
    "Unit": [("SIUnit", "Enum", "SIUnit"), ("multiplier", "Enum", "multiplier")],
    "Originator": [("orCat", "Enum", "orCategory"), ("orIdent", "Octet64")],
    "SPCOperate": [("ctlVal", "BOOLEAN"), ("origin", "Struct", "Originator"), ("ctlNum", "INT8U"),
                   ("T", "Timestamp"), ("Test", "BOOLEAN"), ("Check", "Check")],
    "SPCCancel": [("ctlVal", "BOOLEAN"), ("origin", "Struct", "Originator"), ("ctlNum", "INT8U"),
                  ("T", "Timestamp"), ("Test", "BOOLEAN")],
}

QUALITY = "qchg"
CHANGE = "dchg"
UPDATE = "dchg dupd"    # of the classes whose records count their updates


def da(name, fc, bType, type=None, trigger="", count=None, val=None):
    attributes = {"name": name, "fc": fc, "bType": bType, "type": type, "count": count}
    attributes.update({option: "true" for option in trigger.split()})
    return Element("DA", attributes, [] if val is None else [Element("Val", text=str(val))])


def stamp(fc):
    return [da("q", fc, "Quality", trigger=QUALITY), da("t", fc, "Timestamp")]


def d(do):
    """The description; one that many objects share stands in the type."""
    if not do.desc:
        return []
    return [da("d", "DC", "VisString255", val=do.desc if do.typed else None)]


def substitution(do, value):
    if not do.subst:
        return []
    return [da("subEna", "SV", "BOOLEAN"), value, da("subQ", "SV", "Quality"),
            da("subID", "SV", "VisString64")]


def status(do, *value):
    if do.cdc == "SPS":
        value = ("BOOLEAN",)
    elif do.cdc == "INS":
        value = ("INT32",)
    else:
        value = ("Enum", do.enum)
    dual = [da("dU", "DC", "Unicode255")] if do.dual else []
    return [da("stVal", "ST", *value, trigger=UPDATE), *stamp("ST"),
            *substitution(do, da("subVal", "SV", *value)), *d(do), *dual]


def counter(do):
    return [da("actVal", "ST", "INT128", trigger=UPDATE), *stamp("ST"),
            da("units", "CF", "Struct", "Unit"), da("pulsQty", "CF", "FLOAT32"), *d(do)]


def measured(do):
    return [da("mag", "MX", "Struct", "AnalogueValue", UPDATE), *stamp("MX"),
            *substitution(do, da("subMag", "SV", "Struct", "AnalogueValue")),
            da("units", "CF", "Struct", "Unit"), da("db", "CF", "INT32U"), *d(do)]


def component(do, angle):
    """A CMV below a WYE, DEL or SEQ."""
    vector = "Vector" if angle else "Magnitude"
    return [da("cVal", "MX", "Struct", vector, UPDATE), *stamp("MX"),
            *substitution(do, da("subCVal", "SV", "Struct", vector)),
            da("units", "CF", "Struct", "Unit"), da("db", "CF", "INT32U")]


def spectrum(do):
    arrays = [da(phase + "Har", "MX", "Struct", "Vector", UPDATE, 64) for phase in do.phases]
    return arrays + stamp("MX") + [
        da("numHar", "CF", "INT16U", val=64), da("numCyc", "CF", "INT16U", val=1),
        da("evalTm", "CF", "INT16U"), da("units", "CF", "Struct", "Unit"),
        da("smpRate", "CF", "INT32U", val=12800), da("frequency", "CF", "FLOAT32"),
        da("hvRef", "CF", "Enum", "hvRef", val="fundamental"), da("rmsCyc", "CF", "INT16U", val=50), *d(do)]


def controlled(do):
    """SPC, or the status-only ENC of a Mod."""
    value = ("BOOLEAN",) if do.cdc == "SPC" else ("Enum", do.enum)
    model = da("ctlModel", "CF", "Enum", "ctlModel", val=do.control)
    if do.control == "status-only":
        return [da("stVal", "ST", *value, trigger=CHANGE), *stamp("ST"), model]
    select = do.control.startswith("sbo")
    rows = [da("origin", "ST", "Struct", "Originator"), da("ctlNum", "ST", "INT8U"),
            da("stVal", "ST", *value, trigger=CHANGE), *stamp("ST")]
    if select:
        rows.append(da("stSeld", "ST", "BOOLEAN", trigger=CHANGE))
    if do.control == "sbo-with-normal-security":
        rows.append(da("SBO", "CO", "VisString65"))
    if do.control == "sbo-with-enhanced-security":
        rows.append(da("SBOw", "CO", "Struct", "SPCOperate"))
    rows.append(da("Oper", "CO", "Struct", "SPCOperate"))
    if select:
        rows.append(da("Cancel", "CO", "Struct", "SPCCancel"))
    rows.append(model)
    if select:
        rows += [da("sboTimeout", "CF", "INT32U", val=30000),
                 da("sboClass", "CF", "Enum", "sboClass", val="operate-once")]
    return rows + d(do)


def setting(do):
    if do.cdc == "ASG":
        limits = [da(name, "CF", "Struct", "AnalogueValue")
                  for name in ("minVal", "maxVal", "stepSize")] if do.limits else []
        return [da("setMag", do.fc, "Struct", "AnalogueValue"), da("units", "CF", "Struct", "Unit"),
                *limits, *d(do)]
    value = {"SPG": ("BOOLEAN",), "ING": ("INT32",), "ENG": ("Enum", do.enum)}[do.cdc]
    limits = [da(name, "CF", "INT32", val=v)
              for name, v in zip(("minVal", "maxVal", "stepSize"), do.limits)]
    return [da("setVal", do.fc, *value), *limits, *d(do)]


def plate(do):
    if do.cdc == "DPL":
        return [da(name, "DC", "VisString255")
                for name in ("vendor", "hwRev", "swRev", "serNum", "model", "location")]
    names = [da("vendor", "DC", "VisString255"), da("swRev", "DC", "VisString255"),
             da("d", "DC", "VisString255", val="Power quality monitor"),
             da("configRev", "DC", "VisString255")]
    return names + ([da("ldNs", "EX", "VisString255")] if do.desc == "LLN0" else [])


ATTRIBUTES = {
    "SPS": status, "INS": status, "ENS": status, "BCR": counter, "MV": measured, "HWYE": spectrum,
    "HDEL": spectrum, "SPC": controlled, "ENC": controlled, "SPG": setting, "ING": setting,
    "ENG": setting, "ASG": setting, "DPL": plate, "LPL": plate,
}


class Templates:
    """The types in the order of their first use. A shape that occurs again gives the same id."""

    def __init__(self):
        self.nodes, self.objects, self.structs, self.enums = {}, {}, {}, {}

    def _entry(self, table, element, name):
        """The id of a type with this content: `name`, followed by a number if others bear it."""
        content = "\n".join(element.lines())
        for id, (known, _) in table.items():
            if known == content and id.split(".")[0] == name:
                return id
        same = sum(1 for id in table if id.split(".")[0] == name)
        id = name if not same else "%s.%d" % (name, same + 1)
        table[id] = (content, element)
        element.attributes = {"id": id, **element.attributes}
        return id

    def _use(self, bType, type):
        if bType == "Enum" and type not in self.enums:
            self.enums[type] = Element("EnumType", {"id": type}, [
                Element("EnumVal", {"ord": number}, text=word or None)
                for word, number in ENUMS[type].items()])
        elif bType == "Struct" and type not in self.structs:
            rows = STRUCTS[type]
            self.structs[type] = Element("DAType", {"id": type}, [
                Element("BDA", dict(zip(("name", "bType", "type"), row))) for row in rows])
            for row in rows:
                self._use(row[1], row[2] if len(row) > 2 else None)

    def _object(self, name, cdc, children):
        for child in children:
            self._use(child.attributes.get("bType"), child.attributes.get("type"))
        return self._entry(self.objects, Element("DOType", {"cdc": cdc}, children), name)

    def doType(self, do):
        """The id of the DOType of a data object."""
        if do.cdc not in ("WYE", "DEL", "SEQ"):
            return self._object(do.cdc, do.cdc, ATTRIBUTES[do.cdc](do))
        children = []
        for phase in do.phases:
            cmv = self._object("CMV", "CMV", component(do, phase in do.angles))
            children.append(Element("SDO", {"name": phase, "type": cmv}))
        if do.cdc == "SEQ":
            children.append(da("seqT", "MX", "Enum", "seqT"))
        return self._object(do.cdc, do.cdc, children + d(do))

    def lnType(self, ln):
        """The id of the LNodeType of a logical node."""
        return self._entry(self.nodes, Element("LNodeType", {"lnClass": ln.cls}, [
            Element("DO", {"name": do.name, "type": self.doType(do)}) for do in ln.dos]), ln.cls)

    def element(self):
        """The whole section."""
        enums = [self.enums[name] for name in sorted(self.enums)]
        structs = [self.structs[name] for name in sorted(self.structs)]
        return Element("DataTypeTemplates", children=[
            *(e for _, e in self.nodes.values()), *(e for _, e in self.objects.values()),
            *structs, *enums])
