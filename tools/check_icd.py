#!/usr/bin/env python3
"""Judges an SCL file by what the server and the instrument need: check_icd.py [FILE] [--figures].

Ends with status 1 and one line a fault: elements and attributes of the schema and of the readers,
types and enumerations, short addresses (none of the instrument's records may be without a data
object), attributes without a place, triggers, names, data sets, control blocks and the depth of their
buffers, limits of parameters, and the room that the model and its values take.
"""

import os
import sys
import xml.etree.ElementTree as xml

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from icdcheck.address import leafRows  # noqa: E402
from icdcheck.attributes import TABLES, bound  # noqa: E402
from icdcheck.limits import parameterLimits  # noqa: E402
from icdcheck.model import NODE, Types, documentSize, logicalNode, typeSize, valueSize  # noqa: E402
from icdcheck.reports import blockFaults, triggerFaults  # noqa: E402
from icdcheck.schema import faults as schemaFaults  # noqa: E402

FILE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "device", "tffs0", "ZRX418.icd")
NAME_MAX = 30
LN_EXTRA_MAX = 7                        # prefix and instance of a logical node together (IEC 61850-7-2:2003)
DO_NAME_MAX = 10                        # likewise a data object's name
WIRE_MAX = 30 * 1024
POOL = 10 * 1024 * 1024 * 3 // 4        # a quarter of the pool stays free


def read(path):
    root = xml.parse(path).getroot()
    for element in root.iter():
        namespace, _, name = element.tag.rpartition("}")
        element.tag = "eorv:" + name if "orv" in namespace else name
    return root


class File:
    """The document, its model and the addresses of its data objects."""

    def __init__(self, path):
        self.root = read(path)
        self.types = Types(self.root)
        self.ied = self.root.find("IED").get("name")
        self.nodes = {}     # (LD inst, LN name) to the node tree
        self.elements = {}  # the same to the element
        self.objects = {}   # (LD inst, LN name, DO name) to short address
        for ld in self.root.iter("LDevice"):
            for element in ld:
                ln = logicalNode(self.types, element)
                self.nodes[ld.get("inst"), ln.name] = ln
                self.elements[ld.get("inst"), ln.name] = element
                for doi in element.findall("DOI"):
                    found = {dai.get("sAddr") for dai in doi.iter("DAI")} - {None}
                    assert len(found) == 1, "%s.%s has %d short addresses" % (ln.name, doi.get("name"), len(found))
                    self.objects[ld.get("inst"), ln.name, doi.get("name")] = found.pop()

    def views(self, key):
        """The data object under each of its functional constraints."""
        ld, ln, name = key
        return [(fc.name, do) for fc in self.nodes[ld, ln].children for do in fc.children if do.name == name]


def typeFaults(file):
    for id in file.types.double:
        yield "type %s is there twice" % id
    words = {id: {v.text for v in e} for id, e in file.types.tables["EnumType"].items()}
    enums = {e.get("type") for e in file.root.iter() if e.get("bType") == "Enum"}
    yield from ("enumeration %s is missing" % e for e in enums - set(words))
    for da in file.root.iter("DA"):
        if da.get("bType") == "Enum" and len(da) and da[0].text not in words[da.get("type")]:
            yield "%s is no word of %s" % (da[0].text, da.get("type"))
    for sdi in file.root.iter("SDI"):
        for dai in sdi.findall("DAI"):
            if sdi.get("name") == "units" and dai[0].text not in words[dai.get("name")]:
                yield "%s is no word of %s" % (dai[0].text, dai.get("name"))


def addressFaults(file):
    rows = leafRows()
    used = {}
    for key, saddr in file.objects.items():
        views = file.views(key)
        if saddr not in rows:
            yield "%s: no record %s" % ("/".join(key), saddr)
        elif not views or any(do.cdc != rows[saddr] for _, do in views):
            yield "%s: %s is a %s" % ("/".join(key), saddr, rows[saddr])
        used.setdefault(saddr, []).append(key)
    for saddr in rows:
        if saddr not in used:
            yield "%s is bound by no data object" % saddr
    for saddr, keys in used.items():
        if len(keys) > 1 and not saddr.startswith("MICS."):
            yield "%s is bound %d times" % (saddr, len(keys))
    for (ld, name), ln in file.nodes.items():
        for fc in ln.children:
            for do in fc.children:
                if do.cdc != "CB" and (ld, name, do.name) not in file.objects:
                    yield "%s/%s.%s has no DOI with a short address" % (ld, name, do.name)


def attributeFaults(file):
    constants = {"d", "dU"}
    for key in file.objects:
        for fc, do in file.views(key):
            for path, leaf in do.leaves():
                bType = "Struct" if leaf.count else leaf.bType
                text = ".".join(path)
                if do.cdc not in TABLES:
                    yield "%s: no table for %s" % ("/".join(key), do.cdc)
                elif not bound(do.cdc, text, fc, bType) and not (fc == "DC" and text in constants):
                    yield "%s.%s[%s] %s has no place" % ("/".join(key), text, fc, bType)
    for key, saddr in file.objects.items():
        if saddr.startswith("ST.SP"):
            texts = {leaf[0][-1] for fc, do in file.views(key) if fc == "DC" for leaf in do.leaves()}
            if not constants <= texts:
                yield "%s lacks the texts d and dU" % saddr


def nameFaults(file):
    for ld in file.root.iter("LDevice"):
        if len(file.ied + ld.get("inst")) > NAME_MAX:
            yield "device name %s is too long" % ld.get("inst")
        names = [ln.name for (inst, _), ln in file.nodes.items() if inst == ld.get("inst")]
        if len(names) != len(ld) or "LLN0" not in names or "LPHD1" not in names:
            yield "logical nodes of %s" % ld.get("inst")
    for (ld, name), element in file.elements.items():
        if len((element.get("prefix") or "") + element.get("inst")) > LN_EXTRA_MAX:
            yield "%s/%s: prefix and instance are too long" % (ld, name)
    for do in file.root.iter("DO"):
        if len(do.get("name")) > DO_NAME_MAX:
            yield "data object name %s is too long" % do.get("name")
    for (ld, name), ln in file.nodes.items():
        for fc in ln.children:
            for do in fc.children:
                for path, _ in do.leaves():
                    whole = (name, fc.name, do.name) + path
                    if len(whole) > 7 or any(len(part) > NAME_MAX for part in whole):
                        yield "%s/%s is too deep or too long" % (ld, "$".join(whole))
                    if len("$".join(whole)) + len(file.ied + ld) > 98:
                        yield "reference %s/%s is too long" % (ld, "$".join(whole))


def settingFaults(file):
    limits = parameterLimits()
    controlled = {ld.get("inst") for ld in file.root.iter("LDevice") if ld.find("LN0/SettingControl") is not None}
    if len(controlled) < 2:
        yield "setting groups in %d devices" % len(controlled)
    for key, saddr in file.objects.items():
        views = dict(file.views(key))
        free = saddr in ("SET.EngBill.LogIntv", "MICS.TmUseDT")
        if not saddr.startswith("SET.") and not free:
            continue
        if ("SP" if free else "SG") not in views or ("SG" if free else "SP") in views:
            yield "%s is in the wrong functional constraint" % saddr
        if not free and (saddr not in limits or key[0] not in controlled):
            yield "%s cannot be edited" % saddr
        elif not free and configured(file, key) != limits[saddr]:
            yield "%s has the limits %s" % (saddr, configured(file, key))
    for saddr in set(limits) - set(file.objects.values()):
        yield "%s is no setting" % saddr


def configured(file, key):
    """minVal, maxVal and stepSize of a data object, from its DOI or its type; None without."""
    element = file.elements[key[:2]]
    doi = next(d for d in element.findall("DOI") if d.get("name") == key[2])
    lnType = file.types.tables["LNodeType"][element.get("lnType")]
    do = next(d for d in lnType if d.get("name") == key[2])
    found = []
    for name in ("minVal", "maxVal", "stepSize"):
        places = [e for e in doi.iter() if e.get("name") == name]
        places += [e for e in file.types.tables["DOType"][do.get("type")].findall("DA") if e.get("name") == name]
        texts = [v.text for e in places for v in e.iter("Val")]
        if texts:
            found.append(float(texts[0]))
    return tuple(found) or None


def roomFaults(file, figures):
    nodes = sum(ln.number() for ln in file.nodes.values()) + len(list(file.root.iter("LDevice")))
    document = documentSize(file.root)
    figures.update({"nodes": nodes, "model": nodes * NODE, "document": document, "pool": nodes * NODE + document})
    if figures["pool"] > POOL:
        yield "the model takes about %d octets of the pool" % figures["pool"]
    for key, ln in file.nodes.items():
        sizes = valueSize(ln), typeSize(ln)
        figures["value"] = max(figures.get("value", 0), sizes[0])
        figures["type"] = max(figures.get("type", 0), sizes[1])
        if max(sizes) > WIRE_MAX:
            yield "%s/%s takes %d octets as a value, %d as a type" % (*key, *sizes)


def main(arguments):
    paths = [a for a in arguments if not a.startswith("--")]
    file = File(paths[0] if paths else FILE)
    figures = {}
    found = [*schemaFaults(file.root), *typeFaults(file), *addressFaults(file), *attributeFaults(file),
             *triggerFaults(file), *nameFaults(file), *blockFaults(file, figures), *settingFaults(file),
             *roomFaults(file, figures)]
    for text in found:
        print(text)
    if "--figures" in arguments:
        for name, value in figures.items():
            print("%-14s %10d" % (name, value))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
