"""The device of the energy registers and the pulse counters."""

from icd.describe import Do, Ln, frame

UNITS = {"Wh": ("Wh", "k"), "VArh": ("VArh", "k"), "VAh": ("VAh", "k")}
WORDS = {"Dmd": "imported", "Sup": "exported", "Tot": "total", "Sum": "net"}
KINDS = {"Wh": "Active energy", "VArh": "Reactive energy", "VAh": "Apparent energy"}


def register(direction, kind, ending="", note="", name=None):
    """One energy register; `ending` is what stands behind the name in the short address."""
    name = name or direction + kind
    return Do(name, "BCR", "ENG." + direction + kind + ending,
              "%s, %s%s" % (KINDS[kind], WORDS[direction], note), UNITS[kind])


def both(kinds=("Wh", "VArh"), directions=("Dmd", "Sup"), **more):
    return [register(d, k, **more) for k in kinds for d in directions]


def energy():
    total = both(directions=("Dmd", "Sup", "Tot", "Sum")) + [register("Tot", "VAh")]
    orders = [register("Dmd", kind, "H%d" % h, ", harmonic %d" % h, "Dmd%sH%d" % (kind, h))
              for h in range(2, 32) for kind in ("Wh", "VArh")]
    pulses = [Do("PlsCnt%d" % n, "BCR", "ENG.PlsCnt%d" % n, "Pulses of digital input %d" % n, ("none", ""))
              for n in range(1, 9)]
    return frame("ENRG", "Energy", [
        Ln("", "MMTR", "1", "Energy registers", total),
        Ln("fnd", "MMTR", "1", "Energy of the fundamental", both(ending="D", note=", fundamental")),
        Ln("har", "MMTR", "1", "Energy of all harmonics", both(ending="Ht", note=", harmonics")),
        Ln("ord", "MMTR", "1", "Energy of each harmonic", orders),
        Ln("pls", "GGIO", "1", "Pulse counters", pulses),
    ])
