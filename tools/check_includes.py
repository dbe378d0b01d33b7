#!/usr/bin/env python3
"""Fails when an include points against the arrows of the layers, or a binary's private file is included.

usage: check_includes.py SOURCE_DIR
"""

import os
import re
import sys

# The lowest first: a file may include those of its own layer and of the layers before it.
LAYERS = ["platform", "base", "log", "asn1", "model", "access", "server"]
BASE = {"basicInterface/memory", "basicInterface/memoryPool", "basicInterface/commonInterface", "device/externGlbCfg"}
# Plain records of the model that a folder of a higher layer's name holds.
MODEL = {"basicInterface/cdcRecord"}
FOLDERS = {"platform": "platform", "DebugInfo": "log", "asn1": "asn1", "model-gen": "model",
           "basicInterface": "access", "proto-process": "server", "device": "server"}


def layer(path):
    """Layer of a path below src/, or None."""
    stem = os.path.splitext(path)[0]
    if stem in BASE:
        return "base"
    if stem in MODEL:
        return "model"
    return FOLDERS.get(path.split("/")[0])


def main(root):
    bad = 0
    src = os.path.join(root, "src")
    for folder, _, names in os.walk(src):
        for name in sorted(names):
            if not name.endswith((".h", ".cpp")):
                continue
            path = os.path.relpath(os.path.join(folder, name), src)
            own = layer(path)
            with open(os.path.join(folder, name), encoding="utf-8") as f:
                for number, line in enumerate(f, 1):
                    found = re.match(r'\s*#include "([^"]+)"', line)
                    if not found:
                        continue
                    other = layer(found.group(1))
                    if found.group(1).endswith(".cpp") or other is None or LAYERS.index(other) > LAYERS.index(own):
                        print("%s:%d: %s includes %s" % (path, number, own, found.group(1)))
                        bad += 1
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
