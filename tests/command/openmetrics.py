"""Reads the OpenMetrics text format, strictly, as far as gauges and counters need it."""

import math
import re

NAME = r"[a-zA-Z_:][a-zA-Z0-9_:]*"
LABEL = r'[a-zA-Z_][a-zA-Z0-9_]*="(?:[^"\\\n]|\\[\\n"])*"'
SAMPLE = re.compile(rf"({NAME})(?:\{{({LABEL}(?:,{LABEL})*)\}})? ([^ ]+)")
METADATA = re.compile(rf"# (TYPE|UNIT|HELP) ({NAME}) (.+)")


class Wrong(Exception):
    """What is wrong with a text."""


def need(holds: bool, what: str) -> None:
    if not holds:
        raise Wrong(what)


def number(text: str) -> float:
    need(re.fullmatch(r"[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?", text) is not None, f"{text} is no finite number")
    return float(text)


def parse(text: str) -> dict[tuple[str, frozenset[tuple[str, str]]], float]:
    """The samples by name and labels. Raises Wrong."""
    need(text.endswith("\n# EOF\n"), "no # EOF at the end")
    families: dict[str, dict[str, str]] = {}
    samples = {}
    family = ""
    for line in text.removesuffix("# EOF\n").splitlines():
        if line.startswith("#"):
            metadata = METADATA.fullmatch(line)
            need(metadata is not None, f"no metadata: {line}")
            kind, name, words = metadata.groups()
            if name != family:
                need(kind == "TYPE" and name not in families, f"{name} does not begin with its only TYPE")
                family, families[name] = name, {}
            known = families[name]
            need(kind not in known and "samples" not in known, f"twice or too late: {line}")
            known[kind] = words
            need(kind != "TYPE" or words in ("gauge", "counter"), f"no type: {line}")
            need(kind != "UNIT" or name.endswith("_" + words), f"the name does not end with the unit: {line}")
            continue
        sample = SAMPLE.fullmatch(line)
        need(sample is not None, f"no sample: {line}")
        name, labels, value = sample.groups()
        need(family != "" and "HELP" in families[family], f"nothing tells of {line}")
        isCounter = families[family]["TYPE"] == "counter"
        need(name == family + ("_total" if isCounter else ""), f"{name} does not belong to {family}")
        families[family]["samples"] = "yes"
        pairs = re.findall(r'([a-zA-Z0-9_]+)="((?:[^"\\]|\\.)*)"', labels or "")
        need(len({label for label, _ in pairs}) == len(pairs), f"a label twice: {line}")
        key = (name, frozenset(pairs))
        need(key not in samples, f"a sample twice: {line}")
        samples[key] = number(value)
        need(math.isfinite(samples[key]) and (not isCounter or samples[key] >= 0), f"no value: {line}")
    for name, known in families.items():
        need("samples" in known, f"{name} has no sample")
    return samples


SOUND = """# TYPE a_volts gauge
# UNIT a_volts volts
# HELP a_volts A "b".
a_volts{x="1",y="\\"\\\\"} 1.5
a_volts{x="2"} -2e-05
# TYPE b counter
# HELP b B.
b_total 3
# EOF
"""
FAULTS = [("# EOF\n", ""), ("1.5", "1.5 "), ("1.5", "NaN"), ("1.5", ""), ("b_total", "b"), ("UNIT a_volts volts", "UNIT a_volts V"),
          ('x="2"', 'x="1",y="\\"\\\\"'), ('x="2"', 'x="2",x="3"'), ("# HELP b B.\n", ""), ("b_total 3\n", ""),
          ("b_total 3", "b_total -3"), ("gauge", "thing"), ("# TYPE b counter", "# TYPE b counter\n# TYPE b counter"),
          ('y="', "y='"), ("\\\\", "\\x"), ("# EOF\n", "# EOF\n\n"), ("# HELP a_volts A", "# a_volts A"),
          ("b_total 3\n", "b_total 3\na_volts 3\n")]


def self_test() -> list[str]:
    """What it takes wrongly."""
    faults = []
    if len(parse(SOUND)) != 3:
        faults.append("a sound text has not three samples")
    for before, after in FAULTS:
        try:
            parse(SOUND.replace(before, after, 1))
            faults.append(f"takes {before!r} -> {after!r}")
        except Wrong:
            pass
    return faults
