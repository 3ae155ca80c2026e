#!/usr/bin/python3
"""Makes a table of Google Benchmark's JSON on the standard input: name, ours, peer
or limit, ratio. With --json an array of {name, value, unit, peer, peer_value,
ratio}. A lower ratio is better; one without a peer has none.

`X/ours` is compared with every other `X/PEER` of the run, in CPU time or, where
a benchmark measures by hand, in its own time. Counters that both have are
compared too, rates the other way round. A benchmark with the counters `value`
and `limit` is compared with its limit instead."""

import json
import sys

# Fields of Google Benchmark's own; every other number is a counter.
OWN_FIELDS = {
    "family_index", "per_family_instance_index", "repetitions", "repetition_index", "threads",
    "iterations", "real_time", "cpu_time", "value", "limit",
}


def measured_by_hand(name):
    return "/manual_time" in name


def plain_name(name):
    """`csv/ours/iterations:1/manual_time` -> (`csv`, `ours`)"""
    subject, _, rest = name.partition("/")
    return subject, rest.split("/")[0]


def time_of(run):
    return run["real_time" if measured_by_hand(run["name"]) else "cpu_time"]


def row(name, value, unit, peer=None, peer_value=None, rate=False):
    ratio = None
    if peer_value and value:
        ratio = peer_value / value if rate else value / peer_value
    return {"name": name, "value": value, "unit": unit, "peer": peer, "peer_value": peer_value,
            "ratio": ratio}


def counters(run):
    return {k: v for k, v in run.items() if isinstance(v, (int, float)) and k not in OWN_FIELDS}


def rows_beside(subject, ours, peer_name, peer):
    yield row(subject, time_of(ours), ours["time_unit"], peer_name, peer and time_of(peer))
    theirs = counters(peer or {})
    for counter, value in counters(ours).items():
        rate = counter.endswith("_per_second")
        unit = "/s" if rate else ""
        yield row(f"{subject}.{counter}", value, unit, peer_name if counter in theirs else None,
                  theirs.get(counter), rate)


def rows_of(runs):
    by_subject = {}
    for run in runs:
        if run.get("error_occurred"):
            sys.exit(f"bench: {run['name']}: {run['error_message']}")
        subject, part = plain_name(run["name"])
        by_subject.setdefault(subject, {})[part] = run
    for subject, parts in by_subject.items():
        ours = parts.pop("ours", None)
        if ours is None:
            sys.exit(f"bench: {subject} has no {subject}/ours")
        if "limit" in ours:
            yield row(subject, ours["value"], ours["time_unit"], "limit", ours["limit"])
        else:
            for peer_name, peer in parts.items() or [(None, None)]:
                yield from rows_beside(subject, ours, peer_name, peer)


def readable(value, unit):
    """1234567 ns -> `1.235 ms`; 120000000 /s -> `120 M/s`"""
    times = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    if unit in times:
        seconds = value * times[unit]
        unit = next((u for u in ("s", "ms", "us") if seconds >= times[u]), "ns")
        return f"{seconds / times[unit]:.4g} {unit}"
    for size, letter in ((1e9, "G"), (1e6, "M"), (1e3, "k")):
        if unit == "/s" and value >= size:
            return f"{value / size:.4g} {letter}/s"
    return f"{value:.4g} {unit}".strip()


def table(rows):
    lines = [("name", "ours", "peer or limit", "ratio")]
    for entry in rows:
        ours = readable(entry["value"], entry["unit"])
        peer = ""
        if entry["peer"]:
            peer = f"{readable(entry['peer_value'], entry['unit'])} {entry['peer']}"
        lines.append((entry["name"], ours, peer,
                      "" if entry["ratio"] is None else f"{entry['ratio']:.3f}"))
    widths = [max(len(line[i]) for line in lines) for i in range(4)]
    return "\n".join(
        f"{n:<{widths[0]}}  {o:>{widths[1]}}  {p:>{widths[2]}}  {r:>{widths[3]}}".rstrip()
        for n, o, p, r in lines)


def main():
    rows = list(rows_of(json.load(sys.stdin)["benchmarks"]))
    print(json.dumps(rows, indent=2) if sys.argv[1:] == ["--json"] else table(rows))


if __name__ == "__main__":
    main()
