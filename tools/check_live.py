#!/usr/bin/env python3
"""Reads live values through ied-client and holds them against what ied-device says it holds.

usage: check_live.py --icd FILE --state FILE --client PATH --server HOST:PORT DEVICE...

Every measurement of the given logical devices whose short address the instrument knows is compared,
scaled by its unit, and must equal the instrument's value of this update or of the one before it.
Prints one line; the exit status is 0 only if all agree.
"""

import argparse
import json
import math
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

SCL = "{http://www.iec.ch/61850/2003/SCL}"
# Blocks of the instrument that hold measurements in base units.
BLOCKS = ("RT.", "DMD.")
FACTORS = {"%": 0.01, "kW": 1e3, "kvar": 1e3, "kVA": 1e3, "MW": 1e6, "Mvar": 1e6, "MVA": 1e6}
TOLERANCE = 3e-6  # three roundings to single precision
FEWEST = 50       # fewer comparisons mean that the names no longer meet


def addresses(icd):
    """Short address by LD/LN.DO, from the first attribute of each DOI that has one."""
    found = {}
    ied = ElementTree.parse(icd).getroot().find(SCL + "IED")
    for device in ied.iter(SCL + "LDevice"):
        for node in list(device):
            name = node.get("prefix", "") + node.get("lnClass", "") + node.get("inst", "")
            for data in node.findall(SCL + "DOI"):
                for attribute in data.iter(SCL + "DAI"):
                    if attribute.get("sAddr"):
                        key = "%s%s/%s.%s" % (ied.get("name"), device.get("inst"), name, data.get("name"))
                        found.setdefault(key, attribute.get("sAddr"))
    return found


def state_name(reference, short):
    """Name of a value of the instrument: the short address, the phase or sequence, the angle."""
    path = re.sub(r"\[.*", "", reference).split("/")[1].split(".")[2:]
    if path and path[0] not in ("mag", "q", "t"):
        short += "." + path[0]
    return short + ".ang" if "ang" in path else short


def number(value):
    return value["mag"]["f"] if isinstance(value, dict) else value


def agrees(read, held, factor):
    if isinstance(held, list):
        return isinstance(read, list) and len(read) == len(held) and all(
            agrees(number(r), h, factor) for r, h in zip(read, held))
    return isinstance(read, (int, float)) and math.isclose(read * factor, held, rel_tol=TOLERANCE, abs_tol=1e-7)


def load(path):
    with open(path, encoding="utf-8") as f:
        return json.load(f)


def main():
    parser = argparse.ArgumentParser()
    for name in ("--icd", "--state", "--client", "--server"):
        parser.add_argument(name, required=True)
    parser.add_argument("devices", nargs="+")
    options = parser.parse_args()

    before = load(options.state)
    done = subprocess.run([options.client, "--json", options.server, "read"] + options.devices,
                          stdout=subprocess.PIPE, check=False)
    if done.returncode:
        return "ied-client ended with status %d" % done.returncode
    after = load(options.state)
    pictures = [picture for state in (before, after) for picture in (state["values"], state["before"])]

    shorts = addresses(options.icd)
    compared = 0
    for row in json.loads(done.stdout)["values"]:
        reference = row["reference"]
        short = shorts.get(".".join(reference.split(".")[:2]), "")
        if not reference.endswith("[MX]") or not short.startswith(BLOCKS):
            continue
        name = state_name(reference, short)
        if name not in after["values"]:
            continue
        compared += 1
        factor = FACTORS.get(row.get("unit", ""), 1)
        if not any(agrees(row["value"], picture[name], factor) for picture in pictures if name in picture):
            return "%s reads %s, but the instrument holds %s" % (reference, json.dumps(row), after["values"][name])
    if compared < FEWEST:
        return "only %d values could be compared" % compared
    print("%d values agree with the instrument's" % compared)
    return 0


if __name__ == "__main__":
    sys.exit(main())
