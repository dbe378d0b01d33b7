#!/usr/bin/env python3
"""Prints the figures of a bench run as one table. Argument: the folder with the benches' outputs:
read.tsv and event.tsv (rows of those benches), and codec.json, startup.json, refresh.json, report.json
of Google Benchmark."""
import json
import pathlib
import sys

UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def medians(path):
    """CPU time in ns of each benchmark (wall time where it measures by itself), and its counters."""
    found = {}
    for entry in json.loads(path.read_text())["benchmarks"]:
        if entry.get("aggregate_name", "median") == "median":
            time = "real_time" if "manual_time" in entry["run_name"] else "cpu_time"
            name = entry["run_name"].removesuffix("/manual_time")
            found[name] = (entry[time] * UNITS[entry["time_unit"]], entry)
    return found


def shown(ns):
    unit = "ms" if ns >= 1e6 else "us" if ns >= 1e4 else "ns"
    return f"{ns / UNITS[unit]:.1f} {unit}"


def against(what, ns, reference_ns, reference, bound=""):
    return [what, shown(ns), f"{shown(reference_ns)}, {reference}", f"{ns / reference_ns:.2f}", bound]


def codec_rows(path):
    figures = medians(path)
    rows = []
    for what, name in [("decode a Read request", "decodeReadRequest"),
                       ("encode its response", "encodeReadResponse")]:
        one, many = figures[f"{name}/1"][0], figures[f"{name}/1000"][0]
        each = (many - one) / 999
        rows.append([f"{what} of one leaf", shown(one), "", "", ""])
        rows.append(against(f"{what}, each further leaf", each, one, "one leaf"))
    each = (figures["encodeReadResponse/1000"][0]) / 1000
    copied = (figures["copyReadResponse/1000"][0]) / 1000
    rows.append(["encode the response, each leaf", shown(each), f"{copied:.3f} ns, copying its octets", f"{each / copied:.0f}", ""])
    return rows


def startup_rows(path):
    rows = []
    figures = medians(path)
    for what, name in [("start: read the ICD, build the model", "startUp/1"),
                       ("the same with every logical device ten times", "startUp/10")]:
        ns, entry = figures[name]
        ratio = entry["bare_parses"]
        rows.append([what, shown(ns), f"{shown(ns / ratio)}, bare parse", f"{ratio:.2f}", "4"])
    one, ten = figures["startUp/1"][0], figures["startUp/10"][0]
    rows.append(against("start with ten times the file", ten, one, "the file", "10"))
    return rows


def refresh_rows(path):
    figures = medians(path)
    copy = figures["rowWiseCopy"][0]
    return [against("refresh cycle, everything changed", figures["everythingChanged"][0], copy,
                    "row-wise copy", "5"),
            against("refresh cycle, nothing changed", figures["nothingChanged"][0], copy, "row-wise copy")]


def report_rows(path):
    figures = medians(path)
    compare, entry = figures["compareLeaves"]
    rows = [against(f"compare {entry['leaves']:.0f} monitored leaves", compare, figures["plainCompare"][0],
                    "plain load and compare", "3")]
    for size, members in enumerate([1, 32, 500]):
        encoded, entry = figures[f"buildAndEncode/{size}"]
        report = f"report of {members} member{'s' * (members > 1)}"
        rows.append(against(f"build and encode a {report}, {entry['octets']:.0f} octets", encoded,
                            figures[f"copyOfOctets/{size}"][0], "copying its octets"))
        rows.append(against(f"build and send a {report}", figures[f"buildAndSend/{size}"][0],
                            figures[f"bareSend/{size}"][0], "bare send of its frames", "3"))
    return rows


def tsv_rows(path):
    return [line.split("\t") for line in path.read_text().splitlines()]


def main():
    folder = pathlib.Path(sys.argv[1])
    rows = tsv_rows(folder / "read.tsv")
    rows += codec_rows(folder / "codec.json")
    rows += startup_rows(folder / "startup.json") + refresh_rows(folder / "refresh.json")
    rows += report_rows(folder / "report.json") + tsv_rows(folder / "event.tsv")
    rows = [["figure", "measured", "against", "ratio", "bound"]] + rows
    widths = [max(len(row[i]) for row in rows) for i in range(5)]
    rows.insert(1, ["-" * width for width in widths])
    for row in rows:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")


if __name__ == "__main__":
    main()
