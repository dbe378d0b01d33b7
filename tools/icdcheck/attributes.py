"""The attributes of the data records: path, functional constraint and basic types, by data class."""

FLOAT, TIME, QUALITY = ("FLOAT32",), ("Timestamp",), ("Quality",)
TEXT = ("VisString32", "VisString64", "VisString65", "VisString255", "Unicode255")
BYTE = ("BOOLEAN", "Enum", "Dbpos", "INT8", "INT8U")
UNITS = {"units.SIUnit": ("CF", BYTE), "units.multiplier": ("CF", BYTE)}
STAMP_ST = {"q": ("ST", QUALITY), "t": ("ST", TIME)}
STAMP_MX = {"q": ("MX", QUALITY), "t": ("MX", TIME)}
LIMITS = {"rangeC.%s.f" % n: ("CF", FLOAT) for n in ("hhLim", "hLim", "lLim", "llLim", "min", "max")}
ANALOGUE = {**STAMP_MX, **UNITS, **LIMITS, "range": ("MX", BYTE), "db": ("CF", ("INT32U",))}
SUBSTITUTE = {"subEna": ("SV", ("BOOLEAN",)), "subQ": ("SV", QUALITY), "subID": ("SV", TEXT)}


def substitute(**value):
    return {**SUBSTITUTE, **value}


def below(parts, rows):
    return {part + "." + path: row for part in parts for path, row in rows.items()}


SPS = {"stVal": ("ST", BYTE), **STAMP_ST, **substitute(subVal=("SV", BYTE))}
INS = {"stVal": ("ST", ("INT32", "Enum")), **STAMP_ST, **substitute(subVal=("SV", ("INT32", "Enum")))}
CMV = {"instCVal.mag.f": ("MX", FLOAT), "instCVal.ang.f": ("MX", FLOAT), "cVal.mag.f": ("MX", FLOAT),
       "cVal.ang.f": ("MX", FLOAT), **ANALOGUE,
       **substitute(**{"subCVal.mag.f": ("SV", FLOAT), "subCVal.ang.f": ("SV", FLOAT)})}
SPECTRUM = {**STAMP_MX, **UNITS, "numHar": ("CF", ("INT16U",)), "numCyc": ("CF", ("INT16U",)),
            "evalTm": ("CF", ("INT16U",)), "smpRate": ("CF", ("INT32U",)), "frequency": ("CF", FLOAT),
            "hvRef": ("CF", BYTE), "rmsCyc": ("CF", ("INT16U",))}
WYE_PHASES = ("phsA", "phsB", "phsC", "neut", "res")
DEL_PHASES = ("phsAB", "phsBC", "phsCA")


def command(name, check=True):
    rows = {"ctlVal": BYTE, "origin.orCat": BYTE, "origin.orIdent": ("Octet64",), "ctlNum": ("INT8U",), "T": TIME,
            "Test": ("BOOLEAN",)}
    if check:
        rows["Check"] = ("Check",)
    return {name + "." + path: ("CO", types) for path, types in rows.items()}


CONTROL = {"origin.orCat": ("ST", BYTE), "origin.orIdent": ("ST", ("Octet64",)), "ctlNum": ("ST", ("INT8U",)),
           "stSeld": ("ST", ("BOOLEAN",)), "stVal": ("ST", BYTE), **STAMP_ST, "SBO": ("CO", TEXT),
           **command("SBOw"), **command("Oper"), **command("Cancel", False), "ctlModel": ("CF", BYTE),
           "sboTimeout": ("CF", ("INT32U",)), "sboClass": ("CF", BYTE)}


def setting(value, types, limits, end=""):
    """A row of the tables has one functional constraint of SP, SG and SE; "S" stands for all."""
    names = ("minVal", "maxVal", "stepSize")
    return {value: ("S", types), **{name + end: ("CF", limits) for name in names}}


def texts(fc, names):
    return {name: (fc, TEXT) for name in names.split()}


TABLES = {
    "SPS": SPS, "ENS": SPS, "INS": INS, "CMV": CMV, "SPC": CONTROL, "ENC": CONTROL,
    "BCR": {"actVal": ("ST", ("INT32", "INT128")), **STAMP_ST, **UNITS, "pulsQty": ("CF", FLOAT)},
    "MV": {"instMag.f": ("MX", FLOAT), "mag.f": ("MX", FLOAT), **ANALOGUE,
           **substitute(**{"subMag.f": ("SV", FLOAT)})},
    "WYE": below(WYE_PHASES, CMV), "DEL": below(DEL_PHASES, CMV),
    "SEQ": {**below(("c1", "c2", "c3"), CMV), "seqT": ("MX", BYTE)},
    "HWYE": {**SPECTRUM, **{p + "Har": ("MX", ("Struct",)) for p in WYE_PHASES}},
    "HDEL": {**SPECTRUM, **{p + "Har": ("MX", ("Struct",)) for p in DEL_PHASES}},
    "SPG": {"setVal": ("S", ("BOOLEAN",))},
    "ING": setting("setVal", ("INT32", "Enum"), ("INT32",)),
    "ENG": setting("setVal", BYTE, ("INT32",)),
    "ASG": {**setting("setMag.f", FLOAT, FLOAT, ".f"), **UNITS},
    "DPL": {**texts("DC", "vendor hwRev swRev serNum model location"), **texts("EX", "cdcNs cdcName dataNs")},
    "LPL": {**texts("DC", "vendor swRev d dU configRev"), **texts("EX", "ldNs lnNs cdcNs cdcName dataNs")},
}


def bound(cdc, path, fc, bType):
    """Whether the record of the class has a place for the attribute."""
    row = TABLES[cdc].get(path)
    return row is not None and (row[0] == fc or (row[0] == "S" and fc in ("SP", "SG", "SE"))) and bType in row[1]
