#!/usr/bin/env python3
"""The closing table of `make bench`: reads the JSON reports of the benchmark
programs and prints each figure beside its peer, their ratio and the target.

Times are CPU times, so that a figure and its peer, measured in the same run,
stay comparable on a loaded machine. Usage: summarize.py REPORT.json...
"""
import json
import sys

UNIT_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def load(paths):
    runs = {}
    for path in paths:
        with open(path) as report:
            for run in json.load(report)["benchmarks"]:
                if run.get("run_type", "iteration") == "iteration" and not run.get("error_occurred"):
                    runs[run["name"]] = run
    return runs


def ns(runs, name):
    run = runs.get(name)
    return run["cpu_time"] * UNIT_NS[run.get("time_unit", "ns")] if run else None


def counter(runs, name, key):
    run = runs.get(name)
    return run.get(key) if run else None


def show_time(value):
    if value is None:
        return "-"
    for unit, scale in (("ms", 1e6), ("us", 1e3)):
        if value >= scale:
            return f"{value / scale:.3g} {unit}"
    return f"{value:.3g} ns"


# Each row: label, figure, peer figure (or None), how to show them, the ratio
# (None when there is no peer), the target text and the test of the ratio (or
# of the figure itself when there is no peer).
def rows(runs):
    t = lambda name: ns(runs, name)
    formula, formula_long = t("BM_Formula"), t("BM_FormulaLong")
    fill_small, fill_large = t("BM_ParameterSetFill/1000"), t("BM_ParameterSetFill/100000")
    per_item = lambda total, count: total / count if total is not None else None
    heap = counter(runs, "BM_ParameterSetMemory/100000/iterations:1", "bytes_per_parameter")
    rss = counter(runs, "BM_ParameterSetMemory/100000/iterations:1", "peak_rss_per_parameter")
    parse = counter(runs, "BM_ParseTagsLines", "bytes_per_second")
    memcpy = counter(runs, "BM_MemcpyReference", "bytes_per_second")
    mbs = lambda v: "-" if v is None else f"{v / 1e6:.0f} MB/s"
    size = lambda v: "-" if v is None else f"{v:.0f} B"
    return [
        ("Formula Max(a, b) * 2 vs set+eval", formula, t("BM_PeerSetAndEvaluate"), show_time, "faster",
         ">= 50x faster", lambda r: r >= 50),
        ("Formula Max(a, b) * 2 vs parsed eval", formula, t("BM_PeerEvaluate"), show_time, "slower",
         "<= 8x slower", lambda r: r <= 8),
        ("Longer formula vs set+eval", formula_long, t("BM_PeerSetAndEvaluateLong"), show_time, "faster",
         ">= 50x faster", lambda r: r >= 50),
        ("Longer formula vs parsed eval", formula_long, t("BM_PeerEvaluateLong"), show_time, "slower",
         "<= 8x slower", lambda r: r <= 8),
        ("Formula, set of 10,000 vs of 3", t("BM_FormulaInLargeSet"), formula, show_time, "slower",
         "<= 1.5x", lambda r: r <= 1.5),
        ("get_Index, 1,000 vs 10", t("BM_ParameterSetLookup/1000"), t("BM_ParameterSetLookup/10"), show_time,
         "slower", "<= 2x", lambda r: r <= 2),
        ("get_Index, 100,000 vs 10", t("BM_ParameterSetLookup/100000"), t("BM_ParameterSetLookup/10"), show_time,
         "slower", "<= 2x", lambda r: r <= 2),
        ("Set per item, fill 100,000 vs 1,000", per_item(fill_large, 100000), per_item(fill_small, 1000),
         show_time, "slower", "linear: <= 2x", lambda r: r <= 2),
        ("Heap per numeric parameter", heap, None, size, None, "< 256 B", lambda v: v < 256),
        ("Peak RSS growth per parameter", rss, None, size, None, "(recorded)", None),
        ("XML Load() vs pugixml parse+walk", t("BM_XMLLoad"), t("BM_PeerXMLParse"), show_time, "slower",
         "<= 8x slower", lambda r: r <= 8),
        ("XML Save() vs pugixml build+save", t("BM_XMLSave"), t("BM_PeerXMLBuild"), show_time, "slower",
         "<= 8x slower", lambda r: r <= 8),
        ("Folder-stream load vs fread", t("BM_FolderStreamLoad"), t("BM_PeerFileRead"), show_time, "slower",
         "<= 8x slower", lambda r: r <= 8),
        ("Folder-stream Save() vs fwrite", t("BM_FolderStreamSave"), t("BM_PeerFileWrite"), show_time, "slower",
         "<= 8x slower", lambda r: r <= 8),
        ("ParseTags 10 MB (peer: memcpy)", parse, memcpy, mbs, "slower", ">= 100 MB/s", None),
        ("AddRef + Release pair", t("BM_AddRefRelease"), None, show_time, None, "(recorded)", None),
        ("QueryInterface", t("BM_QueryInterface"), None, show_time, None, "(recorded)", None),
        ("Creation by class name", t("BM_CreateByClassName"), None, show_time, None, "(recorded)", None),
    ]


def main(paths):
    runs = load(paths)
    table = [("Benchmark", "Figure", "Peer", "Ratio", "Target", "Met")]
    for label, figure, peer, show, sense, target, test in rows(runs):
        ratio, verdict = "-", "-"
        if figure is None:
            verdict = "NO DATA"
        elif label.startswith("ParseTags"):
            ratio = f"{peer / figure:.0f}x {sense}" if peer else "-"
            verdict = "met" if figure >= 100e6 else "NOT MET"
        elif peer is None:
            if test:
                verdict = "met" if test(figure) else "NOT MET"
        elif peer > 0 and figure > 0:
            value = peer / figure if sense == "faster" else figure / peer
            ratio = f"{value:.2f}x {sense}"
            if test:
                verdict = "met" if test(value) else "NOT MET"
        table.append((label, show(figure), show(peer) if peer is not None else "-", ratio, target, verdict))
    widths = [max(len(row[i]) for row in table) for i in range(len(table[0]))]
    for n, row in enumerate(table):
        print("  ".join(cell.ljust(widths[i]) for i, cell in enumerate(row)).rstrip())
        if n == 0:
            print("  ".join("-" * w for w in widths))


if __name__ == "__main__":
    main(sys.argv[1:])
