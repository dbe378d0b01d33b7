#!/usr/bin/env python3
"""Writes the instrument's SCL file: make_icd.py [FILE], by default device/tffs0/ZRX418.icd.

With --check FILE it writes nothing and ends with status 1 if FILE differs from what it would write.
"""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from icd.document import scl  # noqa: E402
from icd.element import document  # noqa: E402
from icd.energy import energy  # noqa: E402
from icd.measurements import demand, realTime, statistics  # noqa: E402
from icd.settings import settings  # noqa: E402
from icd.status import controls, statusAndEvents  # noqa: E402

TARGET = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "device", "tffs0", "ZRX418.icd")


def text():
    devices = [realTime(), demand(), statistics(), energy(), statusAndEvents(), controls(), *settings()]
    return document(scl(devices)).encode("utf-8")


def main(arguments):
    if arguments[:1] == ["--check"]:
        path = arguments[1] if len(arguments) > 1 else TARGET
        with open(path, "rb") as file:
            if file.read() == text():
                return 0
        sys.stderr.write("%s is not what tools/make_icd.py writes\n" % path)
        return 1
    with open(arguments[0] if arguments else TARGET, "wb") as file:
        file.write(text())
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
