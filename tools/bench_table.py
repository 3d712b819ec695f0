#!/usr/bin/env python3
"""Turns the JSON of vxattribute_bench into the tables of docs/performance.md.

bench_table.py RESULT.json... [--update PAGE.md] [--wide]

Prints the tables as Markdown. With --update, they also replace the text between the markers of the
page. Figures are medians over the repetitions: of processor time, or of real time where several
threads run. The spread is the range of the middle half of the repetitions, divided by the median.
Of several results of a work, the one with the smallest spread counts.

--wide prints a filter for the works of one thread whose spread is above 10 %, and nothing if there
are none.
"""

import argparse
import collections
import json
import pathlib
import re
import statistics
import subprocess
import sys

from bench_goals import (DOCUMENTS, JSON_DOCUMENTS, JSON_READ_DOCUMENTS, ROWS, SCALE_ROWS, SEAL_SIZES,
                         json_goals, peak_goals, scale_goal, seal_goals)

OURS = "vxattribute"
BEGIN, END = "<!-- bench: begin -->", "<!-- bench: end -->"
SEAL_PEERS = ["cryptopp_eax", "openssl_gcm", "aes_encrypt"]
JSON_PEERS = ["nlohmann", "rapidjson", "boost_json"]
JSON_OTHER_PEERS = ["boost_json_arena", "simdjson_tree", "simdjson_tape"]
BINARY_PEERS = ["nlohmann_msgpack", "msgpack_cxx", "nlohmann_cbor", "flexbuffers"]
WIDE = 0.10


class Figure:
    """The repetitions of one benchmark."""

    def __init__(self, entries, threads):
        self.units = entries[0].get("units", 1)
        times = [entry["real_time" if threads > 1 else "cpu_time"] for entry in entries]
        self.ns = statistics.median(times) / self.units
        low, _, high = statistics.quantiles(times, method="inclusive") if len(times) > 1 else (0, 0, 0)
        self.spread = (high - low) / self.units / self.ns if self.ns else 0
        self.allocations = entries[0].get("allocations", 0) / self.units
        self.bytes = entries[0].get("bytes")
        self.values = entries[0].get("values")


def read_work(result):
    """Figures by work, then by peer. The name of a work with several threads ends in their number."""
    runs = collections.defaultdict(list)
    for entry in result["benchmarks"]:
        if entry.get("run_type") == "iteration" and not entry.get("error_occurred"):
            runs[entry["run_name"]].append(entry)
    works = collections.defaultdict(dict)
    for name, entries in runs.items():
        parts = name.split("/")
        threads = next((int(p[8:]) for p in parts if p.startswith("threads:")), 1)
        work = parts[0] + ("/" + str(threads) if threads > 1 else "")
        works[work][parts[1]] = Figure(entries, threads)
    return works


def is_measured_once(work):
    """Whether a work has no time, but memory that does not vary."""
    return work.startswith(("json_peak_", "coded_size_"))


def spread_of(peers):
    return max(figure.spread for figure in peers.values())


def read_figures(results):
    """Figures by (work, peer)."""
    best = {}
    for result in results:
        for work, peers in read_work(result).items():
            if work not in best or spread_of(peers) < spread_of(best[work]):
                best[work] = peers
    return {(work, peer): figure for work, peers in best.items() for peer, figure in peers.items()}


def wide_filter(figures):
    """A regular expression for the works of which some figure varies too much. Works that have a row
    of several threads are left out: the filter would start them in the process of the others."""
    threaded = {work.split("/")[0] for work, _ in figures if "/" in work}
    wide = {work for (work, _), figure in figures.items()
            if figure.spread > WIDE and not is_measured_once(work) and "/" not in work} - threaded
    return f"^({'|'.join(sorted(wide))})/" if wide else ""


def number(value):
    """A number with three significant digits, without an exponent."""
    for digits, limit in ((2, 10), (1, 100)):
        if value < limit:
            return f"{value:.{digits}f}"
    return f"{value:,.0f}"


def percent(spread):
    return f"{100 * spread:.0f} %"


def met(ratio, goal):
    """A goal, with a mark where it is missed."""
    return f"{goal:.2g}" + ("" if ratio <= goal else " **missed**")


def row_line(figures, work, peers, goal):
    ours = figures.get((work, OURS))
    found = [(figures[work, peer].ns, peer) for peer in peers if (work, peer) in figures]
    if ours is None or not found:
        return None
    _, peer = min(found)
    theirs = figures[work, peer]
    ratio = ours.ns / theirs.ns
    return [f"`{work}`", number(ours.ns), number(ours.allocations), peer, number(theirs.ns),
            number(theirs.allocations), percent(max(ours.spread, theirs.spread)),
            f"{ratio:.3f}" if ratio < 0.1 else f"{ratio:.2f}", "" if goal is None else met(ratio, goal)]


def scale_line(figures, work, other):
    ours, base = figures.get((work, OURS)), figures.get((other, OURS))
    if ours is None or base is None:
        return None
    peer, peer_base = figures.get((work, "boost_json")), figures.get((other, "boost_json"))
    return [f"`{work}`", number(ours.ns), percent(ours.spread), f"{ours.ns / base.ns:.2f}",
            f"{peer.ns / peer_base.ns:.2f}" if peer and peer_base else "",
            "" if work == other else met(ours.ns / base.ns, scale_goal(work))]


def peak_line(figures, document):
    key = "json_peak_" + document
    ours = figures.get((key, OURS))
    if ours is None:
        return None
    per_byte = [f.bytes / f.units / 1024 if f else None
                for f in [ours] + [figures.get((key, peer)) for peer in JSON_PEERS]]
    own, ratio = peak_goals(document)
    goals = [met(per_byte[0], own) if own else "-",
             met(per_byte[0] / per_byte[1], ratio) if per_byte[1] else "-"]
    return [document] + [f"{p:.2f}" if p else "" for p in per_byte] + [
        f"{per_byte[0] / per_byte[1]:.2f}" if per_byte[1] else "", ", ".join(goals)]


def other_json_line(figures, document):
    """Rates of readers that are not compared with goals."""
    others = [figures.get((f"json_read_{document}", peer)) for peer in [OURS, *JSON_OTHER_PEERS]]
    if None in others[:1] or not any(others[1:]):
        return None
    return [document] + [number(1024e3 / f.ns) if f else "" for f in others]


def size_line(figures, document):
    ours = figures.get(("binary_write_" + document, OURS))
    if ours is None:
        return None
    text = figures.get(("text_write_" + document, OURS))
    peers = [figures.get(("binary_write_" + document, peer)) for peer in BINARY_PEERS]
    packed = [peer.bytes for peer in peers[:2] if peer]
    verdict = ""
    if packed:
        limit = min(packed) + ours.values
        verdict = f"{limit:,.0f}" + ("" if ours.bytes <= limit else " **missed**")
    sizes = [ours, *peers, text]
    return [document, f"{ours.values:,.0f}"] + [f"{s.bytes:,.0f}" if s else "" for s in sizes] + [verdict]


def compare(ours, peers, goals):
    """The ratios to the peers, and what to say of the goals."""
    ratios = [ours.ns / peer.ns if peer else None for peer in peers]
    verdicts = [met(ratio, goal) if ratio and goal else "-" for ratio, goal in zip(ratios, goals)]
    return [f"{ratio:.2f}" if ratio else "" for ratio in ratios], ", ".join(verdicts)


def seal_line(figures, work, name, size):
    """Times of small messages in ns, rates of large ones in MB/s."""
    ours = figures.get((f"{work}_{name}", OURS))
    if ours is None:
        return None
    peers = [figures.get((f"{work}_{name}", peer)) for peer in SEAL_PEERS]
    cells = ["" if f is None else f"{number(f.ns)} ns" if size <= 1024 else f"{number(size * 1000 / f.ns)} MB/s"
             for f in [ours, *peers]]
    ratios, verdict = compare(ours, [peers[0], peers[2]], seal_goals(work, name))
    return [f"{work} {name.replace('_', ' ')}", *cells, percent(ours.spread), *ratios, verdict]


def coded_line(figures, document):
    sizes = [figures.get((work + document, peer)) for work, peer in (
        ("coded_write_", OURS), ("coded_write_", "plain"), ("coded_size_", "cbor_integer_keys"))]
    if None in sizes:
        return None
    return [document] + [f"{size.bytes:,.0f}" for size in sizes] + [f"{sizes[0].bytes / sizes[2].bytes:.3f}"]


def json_line(figures, work, document):
    """Rates in MB/s, where a unit is a KiB. Ratios are of times."""
    key = f"json_{work}_{document}"
    ours = figures.get((key, OURS))
    if ours is None:
        return None
    peers = [figures.get((key, peer)) for peer in JSON_PEERS]
    ratios, verdict = compare(ours, peers, json_goals(work, document))
    cells = [number(1024e3 / f.ns) if f else "" for f in [ours, *peers]]
    spread = percent(max(figure.spread for figure in [ours, *peers] if figure))
    return [f"{work} {document}", *cells, spread, number(ours.allocations), *ratios, verdict]


def table(head, lines):
    align = ["---"] + ["---:"] * (len(head) - 1)
    return "\n".join("| " + " | ".join(cells) + " |" for cells in [head, align, *filter(None, lines)])


def processor():
    try:
        text = pathlib.Path("/proc/cpuinfo").read_text()
    except OSError:
        return "unknown processor"
    match = re.search(r"model name\s*:\s*(.*)", text)
    return match.group(1) if match else "unknown processor"


def output_of(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return "unknown"


def headline(context):
    commit = output_of("git", "rev-parse", "--short=12", "HEAD")
    if output_of("git", "status", "--porcelain", "--", "int", "bench", "cmake"):
        commit += " with changes"
    return (f"Commit {commit}; {output_of('g++', '--version').splitlines()[0]}; {processor()}, "
            f"{context['num_cpus']} processors; load {context['load_avg'][0]:.1f} at the start; "
            f"{context['date'][:10]}.")


def report(context, figures):
    times = table(["work", "ours, ns", "allocations", "peer", "peer, ns", "allocations", "spread", "ratio", "goal"],
                  [row_line(figures, *row) for row in ROWS])
    scale = table(["work", "ours, ns", "spread", "to the first", "Boost.JSON to its first", "goal"],
                  [scale_line(figures, *row) for row in SCALE_ROWS])
    sizes = table(["document", "attributes", "binary", "MessagePack (nlohmann)", "MessagePack (msgpack-cxx)",
                   "CBOR", "FlexBuffers", "text", "goal"],
                  [size_line(figures, document) for document in DOCUMENTS])
    seals = table(["message", "ours", "Crypto++ EAX", "OpenSSL GCM", "block by block", "spread", "to Crypto++",
                   "to block by block", "goals"],
                  [seal_line(figures, work, *size) for size in SEAL_SIZES for work in ("seal", "verify", "open")])
    coded = table(["document", "coded", "plain", "CBOR, integer keys", "coded to CBOR"],
                  [coded_line(figures, document) for document in DOCUMENTS])
    texts = table(["JSON", "ours, MB/s", "nlohmann", "RapidJSON", "Boost.JSON", "spread", "allocations per KiB",
                   "to nlohmann", "to RapidJSON", "to Boost.JSON", "goals"],
                  [json_line(figures, work, document)
                   for work, documents in (("read", JSON_READ_DOCUMENTS), ("write", JSON_DOCUMENTS),
                                           ("walk", JSON_DOCUMENTS)) for document in documents])
    others = table(["read", "ours, MB/s", "Boost.JSON in an arena", "simdjson to standard containers", "simdjson"],
                   [other_json_line(figures, document) for document in JSON_READ_DOCUMENTS])
    peaks = table(["document", "ours", "nlohmann", "RapidJSON", "Boost.JSON", "to nlohmann", "goals"],
                  [peak_line(figures, document) for document in JSON_DOCUMENTS])
    return (f"{headline(context)}\n\n{times}\n\nScale, in ns per attribute:\n\n{scale}\n\n"
            f"Sizes in bytes:\n\n{sizes}\n\n"
            f"Sizes with names as numbers, in bytes:\n\n{coded}\n\n"
            f"Sealing under a key of 128 bits:\n\n{seals}\n\n"
            f"JSON text to values and back:\n\n{texts}\n\n"
            f"Other ways to read JSON, for information, in MB/s:\n\n{others}\n\n"
            f"Peak memory while a JSON text is read, in bytes per byte of text:\n\n{peaks}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("results", type=pathlib.Path, nargs="+")
    parser.add_argument("--wide", action="store_true", help="prints a filter instead of the tables")
    parser.add_argument("--update", type=pathlib.Path, metavar="PAGE",
                        help="a page with the markers")
    options = parser.parse_args()
    results = [json.loads(result.read_text()) for result in options.results]
    figures = read_figures(results)
    if options.wide:
        print(wide_filter(figures))
        return
    text = report(results[0]["context"], figures)
    print(text)
    if options.update:
        page = options.update.read_text()
        before, begin, rest = page.partition(BEGIN)
        _, end, after = rest.partition(END)
        if not begin or not end:
            sys.exit(f"{options.update}: the markers are not there")
        options.update.write_text(f"{before}{BEGIN}\n{text}\n{END}{after}")


if __name__ == "__main__":
    main()
