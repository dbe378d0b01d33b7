"""Enumerations of the model (IEC 61850-7-3, IEC 61850-7-4), as words and numbers."""

SI_UNIT = {
    "none": 1, "m": 2, "kg": 3, "s": 4, "A": 5, "K": 6, "deg": 9, "rad": 10, "degC": 23, "F": 25,
    "C": 26, "S": 27, "H": 28, "V": 29, "ohm": 30, "J": 31, "Hz": 33, "VA": 61, "Watts": 62,
    "VAr": 63, "phi": 64, "cos(phi)": 65, "Vs": 66, "As": 68, "VAh": 71, "Wh": 72, "VArh": 73,
    "V/Hz": 74,
}

# The multiplier 0 has no word; an attribute that is left alone holds it.
MULTIPLIER = {"u": -6, "m": -3, "c": -2, "d": -1, "": 0, "da": 1, "h": 2, "k": 3, "M": 6, "G": 9}

ENUMS = {
    "SIUnit": SI_UNIT,
    "multiplier": MULTIPLIER,
    "Beh": {"on": 1, "blocked": 2, "test": 3, "test/blocked": 4, "off": 5},
    "Mod": {"on": 1, "blocked": 2, "test": 3, "test/blocked": 4, "off": 5},
    "Health": {"Ok": 1, "Warning": 2, "Alarm": 3},
    "ctlModel": {"status-only": 0, "direct-with-normal-security": 1, "sbo-with-normal-security": 2,
                 "direct-with-enhanced-security": 3, "sbo-with-enhanced-security": 4},
    "sboClass": {"operate-once": 0, "operate-many": 1},
    "orCategory": {"not-supported": 0, "bay-control": 1, "station-control": 2, "remote-control": 3,
                   "automatic-bay": 4, "automatic-station": 5, "automatic-remote": 6,
                   "maintenance": 7, "process": 8},
    "seqT": {"pos-neg-zero": 0, "dir-quad-zero": 1},
    "hvRef": {"fundamental": 0, "rms": 1, "absolute": 2},
    "ClcTotVA": {"vector sum": 1, "scalar sum": 2},
    "PFSign": {"IEC": 1, "IEEE": 2, "IEEE negated": 3},
}
