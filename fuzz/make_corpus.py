#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets: one good conversation or script a file, its octets put by hand
from ISO 9506-2, ISO 8823, ISO 8327 and ISO 8073. Found inputs that are worth keeping stand beside them.

usage: make_corpus.py CORPUS_DIR
"""

import os
import sys


def tlv(tag, *parts):
    body = b"".join(parts)
    n = len(body)
    length = bytes([n]) if n < 128 else bytes([0x81, n]) if n < 256 else bytes([0x82, n >> 8, n & 255])
    return bytes.fromhex(tag) + length + body


def name(item, domain="Tiny"):
    return tlv("A1", tlv("1A", domain.encode()), tlv("1A", item.encode()))


def variable(item, access=b"", domain="Tiny"):
    return tlv("30", tlv("A0", name(item, domain)), access)


def index(i, *components):
    inner = b""
    for c in reversed(components):
        inner = tlv("81", c.encode()) if not inner else tlv("A0", tlv("80", c.encode()), tlv("30", inner))
    return tlv("A5", tlv("A0", tlv("81", bytes([i])), inner) if inner else tlv("82", bytes([i])))


def read(*variables):
    return tlv("A4", tlv("A1", tlv("A0", *variables)))


def write(variables, data):
    return tlv("A5", tlv("A0", *variables), tlv("A0", *data))


def confirmed(service, invoke=1):
    return tlv("A0", tlv("02", bytes([invoke])), service)


INITIATE = tlv("A8", bytes.fromhex("800300FDE8 810105 820105 83010A"),
               tlv("A4", bytes.fromhex("800101 810305F100 820C03EE1C000004080000 79EF18")))
VALUES = ["830101", "84020640", "84020780", "8503010000", "860400FFFFFF", "8705083F800000", "8908" + "41" * 8,
          "8A03414243", "8C06000000000001", "900441424344", "91085A0000008000000A", "A203830101", "A103850101"]
ALL = "GGIO1$ST$All"
REQUESTS = {
    "status": "800101", "identify": "8200", "rename": "A300",
    "domains": tlv("A1", tlv("A0", bytes.fromhex("800109")), tlv("A1", bytes.fromhex("8000"))),
    "names": tlv("A1", tlv("A0", bytes.fromhex("800100")), tlv("A1", tlv("81", b"Tiny"))),
    "names_after": tlv("A1", tlv("A0", bytes.fromhex("800100")), tlv("A1", tlv("81", b"Tiny")), tlv("82", b"GGIO1$ST")),
    "lists": tlv("A1", tlv("A0", bytes.fromhex("800102")), tlv("A1", tlv("81", b"Tiny"))),
    "journals": tlv("A1", tlv("A0", bytes.fromhex("800108")), tlv("A1", tlv("81", b"Tiny"))),
    "read_node": read(variable("GGIO1")), "read_object": read(variable(ALL)), "read_many": read(variable(ALL), variable("MMXU1")),
    "read_unknown": read(variable("GGIO1$ST$None$x")),
    "read_list": tlv("A4", tlv("A1", tlv("A1", name("GGIO1$ds")))),
    "types": tlv("A6", tlv("A0", name("GGIO1"))), "types_address": tlv("A6", tlv("A1", bytes.fromhex("800105"))),
    "write": write([variable(ALL)] * 2, [bytes.fromhex("830101"), bytes.fromhex("A203830101")]),
    "define": tlv("AB", name("GGIO1$ds"), tlv("A0", variable(ALL), variable("GGIO1$ST$Ind"))),
    "attributes": tlv("AC", name("GGIO1$ds")), "delete": tlv("AD", tlv("A1", name("GGIO1$ds"))),
    "domain": tlv("9F25", b"Tiny"), "upload": tlv("BF23", tlv("1A", b"Tiny")),
    "read_journal": tlv("BF41", tlv("A0", name("log")), tlv("A1", tlv("80", bytes(6))), tlv("A2", bytes.fromhex("810105"))),
    "journal_status": tlv("BF44", name("log")), "initialize": tlv("BF43", tlv("A0", name("log"))),
    "file_open": tlv("BF48", tlv("A0", tlv("19", b"a")), bytes.fromhex("810100")), "file_read": "9F490101",
    "file_close": "9F4A0101", "directory": tlv("BF4D", tlv("A0", tlv("19", b"/COMTRADE"))),
    "alternate": read(variable("MHAI1$MX$HPhV$phsAHar", index(1, "mag", "f")), variable("MHAI1$MX$HPhV$phsAHar", index(2)),
                      variable("MHAI1$MX$HPhV", tlv("A5", tlv("81", b"phsAHar"))),
                      variable("MHAI1$MX$HPhV$phsAHar", tlv("A5", tlv("A3", bytes.fromhex("800101 810102"))))),
}
OTHER_PDUS = {"cancel": "850101", "conclude": "8B00", "response": "A103020101", "report": "A303A001A0", "error": "A2038001 01",
              "reject": "A4038001 01", "initiate": INITIATE}


def octets(x):
    return bytes.fromhex(x) if isinstance(x, str) else x


def frame(tsdu, eot=True):
    return b"\x03\x00" + (7 + len(tsdu)).to_bytes(2, "big") + b"\x02\xf0" + (b"\x80" if eot else b"\x00") + tsdu


def data(pdu):
    return frame(bytes.fromhex("01000100") + tlv("61", tlv("30", bytes.fromhex("020103"), tlv("A0", pdu))))


def connect(pdu=INITIATE, fields=b""):
    apdu = tlv("60", bytes.fromhex("A107060528CA220203"), fields,
               tlv("BE", tlv("28", bytes.fromhex("06025101 020103"), tlv("A0", pdu))))
    cp = tlv("31", bytes.fromhex("A003800101"),
             tlv("A2", bytes.fromhex("810400000001 820400000001"),
                 tlv("61", tlv("30", bytes.fromhex("020101"), tlv("A0", apdu)))))
    body = bytes.fromhex("0506130100160102 14020002 33020001 34020001 C1") + bytes([len(cp)]) + cp
    return frame(b"\x0d" + bytes([len(body)]) + body)


CR = bytes.fromhex("03000016 11E0 0000 0001 00 C0010A C2020001 C1020001")
RELEASE = frame(bytes.fromhex("0910 C10E 610C 300A 020101 A005 6203 800100"))
ABORT = frame(bytes.fromhex("6403800100"))


def streams():
    read_leaf = data(confirmed(read(variable(ALL))))
    whole = read_leaf[7:]
    yield "release", b"\0" + CR + connect() + read_leaf + RELEASE
    yield "octets", b"\1" + CR + connect() + read_leaf
    yield "abort", b"\0" + CR + connect() + ABORT
    yield "fragments", b"\0" + CR + connect() + frame(whole[:20], False) + frame(whole[20:40], False) + frame(whole[40:])
    yield "segments", b"\x32" + CR + connect() + read_leaf + data(bytes.fromhex("8B00")) + RELEASE
    yield "authentication", b"\0" + CR + connect(fields=bytes.fromhex("8A020780 8B0352 0301 AC04 80027071"))
    yield "headers", b"\0" + bytes.fromhex("03000004 03000007 02F080 0300000B 06E0 0000 0001 00")


CHANGE, MONITOR, REPORT, REFUSE = b"\x06\x00", b"\x08", b"\x0a", b"\x8f"
ATTRIBUTES = ("RptID RptEna Resv DatSet ConfRev OptFlds BufTm SqNum TrgOps IntgPd GI PurgeBuf EntryID TimeOfEntry"
              ).split()
TRUE, FALSE = b"\x80", b"\x00"


def attribute(block, name, value, client=0):
    return bytes([0, block | client << 1 | ATTRIBUTES.index(name) << 2]) + value


def meanwhile(*steps):
    return bytes([0x0f + 0x10 * (len(steps) - 1)]) + REPORT + b"".join(steps)


def report_scripts():
    """Steps of the target of reports: block 0 is buffered, block 1 is not."""
    entry = CHANGE + MONITOR
    for block in 0, 1:
        on, off = attribute(block, "RptEna", TRUE), attribute(block, "RptEna", FALSE)
        yield "flow%d" % block, on + entry * 3 + REPORT * 4
        yield "overflow%d" % block, on + entry * 9 + REPORT * 8
        yield "refused%d" % block, on + entry * 2 + REFUSE + REPORT * 4
        yield "switched%d" % block, on + entry * 4 + REPORT + meanwhile(off, on) + entry + REPORT * 5
        yield "vanished%d" % block, on + entry * 3 + REPORT + b"\x0e" + on + entry + REPORT * 5
        yield "vanishing%d" % block, on + entry * 3 + meanwhile(b"\x0e", on) + entry + REPORT * 5
        yield "gathered%d" % block, attribute(block, "BufTm", b"\x02\x50") + on + (CHANGE + b"\x06\x01" + MONITOR) * 2 + (
            b"\x7d" + MONITOR + REPORT)
        yield "asked%d" % block, on + attribute(block, "GI", TRUE) + MONITOR + meanwhile(attribute(block, "GI", TRUE)) + (
            MONITOR + REPORT * 2)
        yield "period%d" % block, attribute(block, "IntgPd", b"\x02\x60") + on + (b"\xfd" + MONITOR + REPORT) * 3
        yield "foreign%d" % block, on + attribute(block, "RptEna", FALSE, 1) + attribute(block, "BufTm", b"\x02\x60", 1)
    on, off, purge = (attribute(0, *what) for what in (("RptEna", TRUE), ("RptEna", FALSE), ("PurgeBuf", TRUE)))
    at = [attribute(0, "EntryID", bytes([5, number])) for number in range(5)]
    yield "purged", entry * 3 + purge + on + entry * 2 + REPORT * 3
    yield "purging", entry * 4 + on + REPORT + meanwhile(off, purge, on) + entry * 3 + REPORT * 4
    yield "resumed", entry * 4 + on + REPORT * 4 + off + at[2] + on + REPORT * 3 + off + at[0] + on + REPORT * 6
    yield "resuming", entry * 4 + on + REPORT * 3 + meanwhile(off, at[1], on) + REPORT * 5


def main(folder):
    seeds = {"requests": {k: confirmed(octets(v)) for k, v in REQUESTS.items()}, "frames": dict(streams()),
             "reports": dict(report_scripts())}
    seeds["requests"].update({k: octets(v) for k, v in OTHER_PDUS.items()})
    for i, value in enumerate(VALUES):
        seeds["requests"]["value%d" % i] = confirmed(write([variable(ALL + "$" + n) for n in
                                                            ("boolean", "dbpos", "int32", "float32", "visString64")],
                                                           [octets(value)] * 5))
    seeds["requests"]["life_of_a_list"] = b"".join(confirmed(octets(REQUESTS[k])) for k in
                                                   ("define", "attributes", "read_list", "lists", "delete"))
    for target, files in seeds.items():
        os.makedirs(os.path.join(folder, target), exist_ok=True)
        for seed, content in files.items():
            with open(os.path.join(folder, target, seed), "wb") as f:
                f.write(content)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
