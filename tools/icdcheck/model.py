"""The model that the server makes of an SCL file: logical nodes with functional constraints, data
objects and attributes, and the octets that all of it takes."""

from dataclasses import dataclass, field

NODE = 104          # octets of a model node on a 64-bit host
ELEMENT = 64        # of an element of the document, without its texts
RECORD = 72         # of the record that a reader makes of an element, on average

CONTROL_BLOCKS = {
    "BR": (("RptID", "V65"), ("RptEna", "B"), ("DatSet", "V65"), ("ConfRev", "U"), ("OptFlds", "S"), ("BufTm", "U"),
           ("SqNum", "U"), ("TrgOps", "S"), ("IntgPd", "U"), ("GI", "B"), ("PurgeBuf", "B"), ("EntryID", "O8"),
           ("TimeOfEntry", "T")),
    "RP": (("RptID", "V65"), ("RptEna", "B"), ("Resv", "B"), ("DatSet", "V65"), ("ConfRev", "U"), ("OptFlds", "S"),
           ("BufTm", "U"), ("SqNum", "U"), ("TrgOps", "S"), ("IntgPd", "U"), ("GI", "B")),
    "LG": (("LogEna", "B"), ("LogRef", "V65"), ("DatSet", "V65"), ("OldEntrTm", "T"), ("NewEntrTm", "T"),
           ("OldEntr", "O8"), ("NewEntr", "O8"), ("TrgOps", "S"), ("IntgPd", "U")),
    "SP": (("NumOfSG", "U"), ("ActSG", "U"), ("EditSG", "U"), ("CnfEdit", "B"), ("LActTm", "T")),
}
# Longest content on the wire of a value, by basic type; a text counts with what a person would fill in.
CONTENT = {
    "BOOLEAN": 1, "Enum": 4, "Quality": 3, "Timestamp": 8, "FLOAT32": 5, "INT8": 1, "INT8U": 2, "INT16U": 3, "INT32": 4,
    "INT128": 4, "INT32U": 5, "Dbpos": 2, "Check": 2, "Octet64": 64, "VisString32": 32, "VisString64": 64,
    "VisString65": 65, "VisString255": 40, "Unicode255": 120, "B": 1, "U": 5, "S": 3, "O8": 8, "T": 6, "V65": 65,
}
# Octets of the content of those values that do not lie in the record of a value itself.
STORED = {"Quality": 8, "Dbpos": 8, "Check": 8, "Timestamp": 8, "FLOAT32": 8, "Octet64": 72, "VisString32": 40,
          "VisString64": 72, "VisString65": 72, "VisString255": 256, "Unicode255": 1024}
TRIGGERS = ("dchg", "qchg", "dupd")


@dataclass
class Node:
    name: str
    bType: str = ""
    fc: str = ""
    cdc: str = ""
    count: int = 0
    triggers: set = field(default_factory=set)
    children: list = field(default_factory=list)

    def child(self, name):
        found = next((c for c in self.children if c.name == name), None)
        if found is None:
            found = Node(name)
            self.children.append(found)
        return found

    def leaves(self, path=()):
        """Pairs of path and leaf; an array is one leaf."""
        if self.children and not self.count:
            for node in self.children:
                yield from node.leaves(path + (node.name,))
        else:
            yield path, self

    def number(self):
        return 1 + sum(c.number() for c in self.children)


class Types:
    def __init__(self, root):
        section = root.find("DataTypeTemplates")
        self.tables = {tag: {e.get("id"): e for e in section.findall(tag)}
                       for tag in ("LNodeType", "DOType", "DAType", "EnumType")}
        self.double = [e.get("id") for tag in self.tables for e in section.findall(tag)
                       if self.tables[tag][e.get("id")] is not e]

    def attribute(self, node, element, fc):
        kind = element.get("bType")
        child = Node(element.get("name"), kind, fc,
                     triggers=node.triggers | {t for t in TRIGGERS if element.get(t) == "true"})
        node.children.append(child)
        if element.tag == "DA":
            child.count = int(element.get("count") or 0)
        if kind == "Struct":
            for part in self.tables["DAType"][element.get("type")]:
                self.attribute(child, part, fc)
        elif kind == "Enum":
            assert element.get("type") in self.tables["EnumType"], element.get("type")

    def object(self, ln, do, path=()):
        """Adds the attributes of a DO, or of an SDO at `path`, under their functional constraints."""
        kind = self.tables["DOType"][do.get("type")]
        for sdo in kind.findall("SDO"):
            self.object(ln, sdo, path + (sdo.get("name"),) if path else (do.get("name"), sdo.get("name")))
        for da in kind.findall("DA"):
            node = ln.child(da.get("fc"))
            for name in path or (do.get("name"),):
                node = node.child(name)
            if not path:
                node.cdc = kind.get("cdc")
            self.attribute(node, da, da.get("fc"))
        for fc in ln.children:
            for node in fc.children:
                if not path and node.name == do.get("name"):
                    node.cdc = kind.get("cdc")


def block(name, fc):
    return Node(name, fc=fc, cdc="CB", children=[Node(n, t, fc) for n, t in CONTROL_BLOCKS[fc]])


def logicalNode(types, element):
    """The node tree of an LN or LN0: functional constraints, below them objects and blocks."""
    ln = Node((element.get("prefix") or "") + element.get("lnClass") + element.get("inst"))
    if element.find("SettingControl") is not None:
        ln.child("SP").children.append(block("SGCB", "SP"))
    for do in types.tables["LNodeType"][element.get("lnType")]:
        types.object(ln, do)
    for control in element.findall("ReportControl"):
        fc = "BR" if control.get("buffered") == "true" else "RP"
        enabled = control.find("RptEnabled")
        instances = int(enabled.get("max")) if enabled is not None else 1
        for n in range(1, instances + 1):
            name = control.get("name") + ("%02d" % n if instances > 1 else "")
            ln.child(fc).children.append(block(name, fc))
    for control in element.findall("LogControl"):
        ln.child("LG").children.append(block(control.get("name"), "LG"))
    settings = next((c for c in ln.children if c.name == "SG"), None)
    if settings is not None:
        ln.children.append(Node("SE", children=settings.children))
    return ln


def header(length):
    return 2 if length < 128 else 3 if length < 256 else 4


def valueSize(node):
    """Octets of the node's value as MMS Data."""
    if node.count:
        element = sum(2 + 2 + valueSize(c.children[0]) - 2 for c in node.children) + 2
        return 4 + node.count * (element + 2)
    content = sum(valueSize(c) for c in node.children) if node.children else CONTENT[node.bType]
    return header(content) + content


def typeSize(node):
    """Octets of the node as a component of a MMS TypeDescription."""
    inner = sum(typeSize(c) for c in node.children) if node.children else 9
    if node.children:
        inner += 2 * header(inner) + (8 if node.count else 0)
    content = 2 + len(node.name) + header(inner) + inner
    return header(content) + content


def reportSize(node):
    """Octets that a member's value takes in a report entry beside its record, on a 64-bit host."""
    if node.count:
        return 24 + 2 * node.count * 24
    if node.children:
        return 32 + sum(24 + 16 + reportSize(c) for c in node.children)
    return 16 + STORED[node.bType] if node.bType in STORED else 0


def textSize(text):
    return (len(text.encode()) + 8) // 8 * 8


def documentSize(element):
    """Octets of an element and all below it as document and as records."""
    size = ELEMENT + RECORD + textSize(element.tag)
    if element.attrib:
        size += 8 * (2 * len(element.attrib) + 1)
        size += sum(textSize(k) + textSize(v) for k, v in element.attrib.items())
    if len(element) == 0 and element.text:
        size += textSize(element.text)
    return size + sum(documentSize(child) for child in element)
