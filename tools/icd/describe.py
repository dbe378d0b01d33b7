"""The compact form of the model: logical devices, logical nodes and data objects as plain records.

A data object names its common data class, the short address of the instrument's record behind it
and what of the class it uses: the phases that are measured, those that have an angle, the unit.
"""

from dataclasses import dataclass, field


@dataclass
class Do:
    name: str
    cdc: str
    saddr: str = ""
    desc: str = ""         # shown by the attribute d
    unit: tuple = ()       # word of the SI unit, word of the multiplier
    phases: tuple = ()     # components of a WYE, DEL, SEQ, HWYE or HDEL
    angles: tuple = ()     # those of them that have an angle
    subst: bool = False    # can be substituted
    control: str = ""      # control model of an SPC or ENC
    fc: str = "SG"         # functional constraint of a setting
    limits: tuple = ()     # minVal, maxVal, stepSize of a setting
    enum: str = ""         # enumeration of an ENS, ENC or ENG
    dual: bool = False     # has the attribute dU
    typed: bool = False    # the text of d stands in the type, since many objects share it


@dataclass
class Ln:
    prefix: str
    cls: str
    inst: str
    desc: str
    dos: list = field(default_factory=list)

    @property
    def name(self):
        return self.prefix + self.cls + self.inst


@dataclass
class Ld:
    inst: str
    desc: str
    lns: list = field(default_factory=list)
    groups: int = 0        # setting groups; 0 is no SettingControl


ABC = ("phsA", "phsB", "phsC")
ABCN = ABC + ("neut",)
LINES = ("phsAB", "phsBC", "phsCA")
SEQUENCES = ("c1", "c2", "c3")

VOLT = ("V", "")
AMP = ("A", "")
KW = ("Watts", "k")
KVAR = ("VAr", "k")
KVA = ("VA", "k")
COS = ("cos(phi)", "")
HERTZ = ("Hz", "")
RATIO = ("none", "")
PERCENT = ("none", "c")    # the instrument holds ratios
SECOND = ("s", "")
MILLISECOND = ("s", "m")


def mv(name, saddr, unit, desc, **more):
    return Do(name, "MV", saddr, desc, unit, **more)


def wye(name, saddr, unit, desc, phases=ABC, angles=(), **more):
    return Do(name, "WYE", saddr, desc, unit, phases, angles, **more)


def delta(name, saddr, unit, desc, angles=(), **more):
    return Do(name, "DEL", saddr, desc, unit, LINES, angles, **more)


def seq(name, saddr, unit, desc):
    return Do(name, "SEQ", saddr, desc, unit, SEQUENCES)


def hwye(name, saddr, unit, desc):
    return Do(name, "HWYE", saddr, desc, unit, ABCN)


def hdel(name, saddr, unit, desc):
    return Do(name, "HDEL", saddr, desc, unit, LINES)


def common(first):
    """The data objects that every logical node has; NamPlt of an LLN0 also names the name space."""
    return [
        Do("Mod", "ENC", "MICS.Mod", control="status-only", enum="Mod"),
        Do("Beh", "ENS", "MICS.Beh", enum="Beh"),
        Do("Health", "ENS", "MICS.Health", enum="Health"),
        Do("NamPlt", "LPL", "MICS.NamPlt", "LLN0" if first else "LN"),
    ]


def frame(inst, desc, lns, groups=0):
    """A logical device with its mandatory LLN0 and LPHD, and the common objects in every node."""
    physical = [
        Do("PhyNam", "DPL", "MICS.PhyNam"),
        Do("PhyHealth", "ENS", "MICS.PhyHealth", enum="Health"),
        Do("Proxy", "SPS", "MICS.Proxy", "Stands in for another device"),
    ]
    head = [Ln("", "LLN0", "", desc, common(True)), Ln("", "LPHD", "1", "Instrument", physical)]
    for node in lns:
        node.dos = common(False) + node.dos
    return Ld(inst, desc, head + lns, groups)
