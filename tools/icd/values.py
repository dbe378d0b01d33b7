"""Instances of data objects: the short address, units, limits and descriptions of each DOI."""

from icd.element import Element

# The leaf that carries the short address. The first one found binds the whole data object.
ADDRESS = {"SPS": "stVal", "INS": "stVal", "ENS": "stVal", "ENC": "stVal", "SPC": "stVal", "BCR": "actVal",
           "MV": "mag.f", "HWYE": "q", "HDEL": "q", "SPG": "setVal", "ING": "setVal", "ENG": "setVal",
           "ASG": "setMag.f", "DPL": "vendor", "LPL": "vendor"}


def place(root, path):
    """The element for `path` below a DOI: SDI for all names but the last, a DAI for that one."""
    names = path.split(".")
    for depth, name in enumerate(names):
        kind = "DAI" if depth == len(names) - 1 else "SDI"
        found = next((c for c in root.children if c.attributes["name"] == name), None)
        if found is None:
            found = Element(kind, {"name": name})
            root.add(found)
        root = found
    return root


def assign(root, path, value):
    place(root, path).add(Element("Val", text=str(value)))


def units(root, prefix, unit):
    if not unit:
        return
    assign(root, prefix + "units.SIUnit", unit[0])
    if unit[1]:
        assign(root, prefix + "units.multiplier", unit[1])


def instance(do):
    """The DOI of a data object."""
    root = Element("DOI", {"name": do.name})
    if do.cdc in ("WYE", "DEL", "SEQ"):
        place(root, do.phases[0] + ".cVal.mag.f").attributes["sAddr"] = do.saddr
        for phase in do.phases:
            units(root, phase + ".", do.unit)
    else:
        place(root, ADDRESS[do.cdc]).attributes["sAddr"] = do.saddr
        units(root, "", do.unit)
    if do.cdc == "ASG":
        for name, value in zip(("minVal", "maxVal", "stepSize"), do.limits):
            assign(root, name + ".f", value)
    if do.desc and not do.typed and do.cdc != "LPL":
        assign(root, "d", do.desc)
    return root
