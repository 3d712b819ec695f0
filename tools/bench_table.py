#!/usr/bin/env python3
"""Turns the JSON of vxattribute_bench into the tables of docs/performance.md.

bench_table.py RESULT.json [--update PAGE.md]

Prints the tables as Markdown. With --update, they also replace the text between the markers of the
page. Figures are medians over the repetitions: of processor time, or of real time where several
threads run.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys

OURS = "vxattribute"
BEGIN, END = "<!-- bench: begin -->", "<!-- bench: end -->"
DOCUMENTS = ["settings", "records", "mixed", "inventory"]
SEAL_SIZES = [("16_B", 16), ("1_KiB", 1024), ("64_KiB", 64 * 1024), ("16_MiB", 16 * 1024 * 1024)]
SEAL_PEERS = ["cryptopp_eax", "openssl_gcm", "aes_encrypt"]
JSON_DOCUMENTS = ["configuration", "records", "strings", "integers", "doubles", "iso_codes"]
JSON_PEERS = ["nlohmann", "rapidjson", "boost_json"]
BINARY_PEERS = ["nlohmann_msgpack", "msgpack_cxx", "nlohmann_cbor", "flexbuffers"]

# Rows: benchmark, peers (the fastest of them counts), goal. The goal is the largest good ratio; None
# means that the row is for information only.
ROWS = [
    ("copy_map_100", ["nlohmann"], 0.01),
    ("copy_list_1000", ["nlohmann"], 0.01),
    ("build_map_100", ["nlohmann", "boost_json"], 0.4),
    ("copy_map_and_write_one_100", ["nlohmann"], 0.5),
    ("copy_map_and_write_one_10000", ["nlohmann"], 0.5),
    ("build_map_100_mixed", ["nlohmann", "boost_json"], 0.4),
    ("copy_map_and_write_one_100_mixed", ["nlohmann"], 0.5),
    ("copy_map_and_write_one_10000_mixed", ["nlohmann"], 0.5),
    ("find_16", ["boost_json"], 0.7),
    ("find_100", ["boost_json"], 1.15),
    ("find_10000", ["boost_json"], 2.2),
    ("find_16", ["nlohmann"], 0.6),
    ("find_100", ["nlohmann"], 0.6),
    ("find_10000", ["nlohmann"], 0.6),
    ("equal_maps_10000", ["nlohmann"], 1.1),
    ("make_integer", ["nlohmann"], 2.2),
    ("make_double", ["nlohmann"], 2.2),
    ("copy_integer", ["nlohmann"], 2.2),
    ("copy_double", ["nlohmann"], 2.2),
    ("make_string", ["nlohmann"], None),
    ("copy_string", ["nlohmann"], None),
    ("list_1000_from_range", ["std_vector"], 1.1),
    *[("binary_write_" + document, ["msgpack_cxx"], 1.0) for document in DOCUMENTS],
    *[("binary_read_" + document, ["flexbuffers"], 1.0) for document in DOCUMENTS],
    *[("binary_read_" + document, ["msgpack_cxx"], None) for document in DOCUMENTS],
    *[("text_write_" + document, ["nlohmann_json"], None) for document in DOCUMENTS[:2]],
    *[("text_read_" + document, ["nlohmann_json"], None) for document in DOCUMENTS[:2]],
    *[("coded_write_" + document, ["plain"], None) for document in DOCUMENTS],
    *[("coded_read_" + document, ["plain"], None) for document in DOCUMENTS[:3]],
    ("coded_read_inventory", ["plain"], 0.77),
    *[(f"query_{names}_{size}", ["nlohmann_value", "nlohmann_get"], None)
      for names in ("ready", "text") for size in (10, 100, 1000)],
    ("query_failing_10000", ["to_text"], 2.0),
    ("render_settings", ["ostream"], 0.6),
    ("render_settings", ["fmt"], 1.5),
    ("intern_known_name", ["unordered_set"], 1.0),
    ("intern_known_name/2", ["unordered_set"], 0.5),
]


class Figure:
    """The median of one benchmark."""

    def __init__(self, entry, threads):
        self.units = entry.get("units", 1)
        self.ns = entry["real_time" if threads > 1 else "cpu_time"] / self.units
        self.allocations = entry.get("allocations", 0) / self.units
        self.bytes = entry.get("bytes")
        self.values = entry.get("values")


def read_figures(entries):
    """Figures by (work, peer). The name of a work with several threads ends in their number."""
    figures = {}
    for entry in entries:
        if entry.get("aggregate_name", "median") != "median" or entry.get("error_occurred"):
            continue
        parts = entry["run_name"].split("/")
        threads = next((int(p[8:]) for p in parts if p.startswith("threads:")), 1)
        work = parts[0] + ("/" + str(threads) if threads > 1 else "")
        figures[work, parts[1]] = Figure(entry, threads)
    return figures


def number(value):
    """A number with three significant digits, without an exponent."""
    for digits, limit in ((2, 10), (1, 100)):
        if value < limit:
            return f"{value:.{digits}f}"
    return f"{value:,.0f}"


def row_line(figures, work, peers, goal):
    ours = figures.get((work, OURS))
    found = [(figures[work, peer].ns, peer) for peer in peers if (work, peer) in figures]
    if ours is None or not found:
        return None
    _, peer = min(found)
    theirs = figures[work, peer]
    ratio = ours.ns / theirs.ns
    verdict = "" if goal is None else f"{goal:g}" + ("" if ratio <= goal else " **missed**")
    return [f"`{work}`", number(ours.ns), number(ours.allocations), peer, number(theirs.ns),
            number(theirs.allocations), f"{ratio:.3f}" if ratio < 0.1 else f"{ratio:.2f}", verdict]


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


def seal_line(figures, work, name, size):
    """Times of small messages in ns, rates of large ones in MB/s; goals are for 64 KiB."""
    ours = figures.get((f"{work}_{name}", OURS))
    if ours is None:
        return None
    peers = [figures.get((f"{work}_{name}", peer)) for peer in SEAL_PEERS]
    cells = ["" if f is None else f"{number(f.ns)} ns" if size <= 1024 else f"{number(size * 1000 / f.ns)} MB/s"
             for f in [ours, *peers]]
    ratios, verdict = [], []
    for peer, goal in ((peers[0], 1), (peers[2], 1 / 6)):
        ratio = ours.ns / peer.ns if peer else None
        ratios.append(f"{ratio:.2f}" if peer else "")
        if peer and name == "64_KiB":
            verdict.append(f"{goal:.2g}" + ("" if ratio <= goal else " **missed**"))
    return [f"{work} {name.replace('_', ' ')}", *cells, *ratios, ", ".join(verdict)]


def coded_line(figures, document):
    sizes = [figures.get((work + document, peer)) for work, peer in (
        ("coded_write_", OURS), ("coded_write_", "plain"), ("coded_size_", "cbor_integer_keys"))]
    if None in sizes:
        return None
    return [document] + [f"{size.bytes:,.0f}" for size in sizes] + [f"{sizes[0].bytes / sizes[2].bytes:.3f}"]


def json_goals(work, document):
    """The goals: the largest good ratios to nlohmann and to Boost.JSON."""
    if work == "read":
        return (1 / 3 if document in ("integers", "doubles") else 0.4,
                1.0 if document in ("records", "iso_codes") else None)
    if work == "write":
        return (0.4 if document != "integers" else None,
                {"strings": 1.0, "integers": None}.get(document, 1.5))
    return None, None


def json_line(figures, work, document):
    """Rates in MB/s, where a unit is a KiB. Ratios are of times."""
    key = f"json_{work}_{document}"
    ours = figures.get((key, OURS))
    if ours is None:
        return None
    peers = [figures.get((key, peer)) for peer in JSON_PEERS]
    ratios, verdict = [], []
    for peer, goal in zip((peers[0], peers[2]), json_goals(work, document)):
        ratio = ours.ns / peer.ns if peer else None
        ratios.append(f"{ratio:.2f}" if peer else "")
        verdict.append(f"{goal:.2g}" + ("" if ratio <= goal else " **missed**") if peer and goal else "-")
    cells = [number(1024e3 / f.ns) if f else "" for f in [ours, *peers]]
    return [f"{work} {document}", *cells, number(ours.allocations), *ratios, ", ".join(verdict)]


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


def report(result):
    figures = read_figures(result["benchmarks"])
    context = result["context"]
    commit = output_of("git", "rev-parse", "--short=12", "HEAD")
    if output_of("git", "status", "--porcelain", "--", "int", "bench", "cmake"):
        commit += " with changes"
    head = (f"Commit {commit}; {output_of('g++', '--version').splitlines()[0]}; {processor()}, "
            f"{context['num_cpus']} processors; load {context['load_avg'][0]:.1f} at the start; "
            f"{context['date'][:10]}.")
    times = table(["work", "ours, ns", "allocations", "peer", "peer, ns", "allocations", "ratio", "goal"],
                  [row_line(figures, *row) for row in ROWS])
    sizes = table(["document", "attributes", "binary", "MessagePack (nlohmann)", "MessagePack (msgpack-cxx)",
                   "CBOR", "FlexBuffers", "text", "goal"],
                  [size_line(figures, document) for document in DOCUMENTS])
    seals = table(["message", "ours", "Crypto++ EAX", "OpenSSL GCM", "block by block", "to Crypto++",
                   "to block by block", "goals"],
                  [seal_line(figures, work, *size) for size in SEAL_SIZES for work in ("seal", "verify", "open")])
    coded = table(["document", "coded", "plain", "CBOR, integer keys", "coded to CBOR"],
                  [coded_line(figures, document) for document in DOCUMENTS])
    texts = table(["JSON", "ours, MB/s", "nlohmann", "RapidJSON", "Boost.JSON", "allocations per KiB",
                   "to nlohmann", "to Boost.JSON", "goals"],
                  [json_line(figures, work, document)
                   for work in ("read", "write", "walk") for document in JSON_DOCUMENTS])
    return (f"{head}\n\n{times}\n\nSizes in bytes:\n\n{sizes}\n\n"
            f"Sizes with names as numbers, in bytes:\n\n{coded}\n\n"
            f"Sealing under a key of 128 bits:\n\n{seals}\n\n"
            f"JSON text to values and back:\n\n{texts}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("result", type=pathlib.Path)
    parser.add_argument("--update", type=pathlib.Path, metavar="PAGE",
                        help="a page with the markers")
    options = parser.parse_args()
    text = report(json.loads(options.result.read_text()))
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
