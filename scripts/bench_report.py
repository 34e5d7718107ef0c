"""Reads what orv_bench printed and says what is within its aim.

    bench_report.py OUT_FOLDER RUN [RUN...]

Each RUN is the output of one run. Prints a table of each path's first candidate beside its floor, and writes
results.json and an SVG of each group of paths into OUT_FOLDER. Exits 1 when some aim was
missed in every one of several runs.
"""

import json
import pathlib
import re
import sys
from html import escape


def quantile(values, q):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(q * len(ordered)))]


def read_run(path):
    """The run's paths in order: aim, quantile, and the samples of each candidate in nanoseconds."""
    paths = {}
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        kind, *words = line.rstrip("\r").split("\t")
        if kind == "path":
            paths[words[0]] = {"aim": float(words[1]), "quantile": float(words[2]), "samples": {}}
        elif kind == "samples":
            paths[words[0]]["samples"].setdefault(words[1], []).extend(float(word) for word in words[2:])
    return paths


def read_memory(path):
    """The run's rows about memory: path, aim, candidate and bytes."""
    lines = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
    rows = [line.split("\t")[1:] for line in lines if line.startswith("memory\t")]
    return [(name, int(aim), candidate, int(taken)) for name, aim, candidate, taken in rows]


def read_processor_times(path):
    """The run's rows about processor time: what was waited for, candidate and microseconds."""
    lines = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
    rows = [line.split("\t")[1:] for line in lines if line.startswith("processor\t")]
    return [(name, candidate, int(spent)) for name, candidate, spent in rows]


def figures(samples):
    return {
        "samples": len(samples),
        "fastest_us": min(samples) / 1000,
        "median_us": quantile(samples, 0.5) / 1000,
        "p90_us": quantile(samples, 0.9) / 1000,
        "slowest_us": max(samples) / 1000,
        "spread": (quantile(samples, 0.75) - quantile(samples, 0.25)) / quantile(samples, 0.5),
    }


def judge(measured):
    """The ratio that the aim is about, and whether it is within; both None without a floor."""
    candidates = list(measured["samples"].values())
    if len(candidates) < 2:
        return None, None
    ratio = quantile(candidates[0], measured["quantile"]) / quantile(candidates[1], 0.5)
    return ratio, ratio <= measured["aim"] if measured["aim"] else None


def print_table(paths):
    print(f"{'path':44} {'ours, us':>11} {'p90':>11} {'floor':>11} {'ratio':>7} {'aim':>6} {'spread':>7}  floor is")
    for name, measured in paths.items():
        (first, samples), *others = measured["samples"].items()
        ours = figures(samples)
        ratio, within = judge(measured)
        row = f"{name:44} {ours['median_us']:11,.1f} {ours['p90_us']:11,.1f} "
        if others:
            aim = f"{measured['aim']:.2f}" if measured["aim"] else "-"
            row += f"{figures(others[0][1])['median_us']:11,.1f} {ratio:7.2f} {aim:>6} {ours['spread']:7.2f}  {others[0][0]}"
            row += "  MISSED" if within is False else ""
        else:
            row += f"{'-':>11} {'-':>7} {'-':>6} {ours['spread']:7.2f}"
        print(row)
        for other, its_samples in others[1:]:
            print(f"{'  beside it: ' + other:44} {figures(its_samples)['median_us']:11,.1f}")


def print_memory(rows):
    """The names of the paths whose first candidate takes more than the aim."""
    missed = set()
    for number, (name, aim, candidate, taken) in enumerate(rows):
        too_much = number == 0 and taken > aim
        missed |= {f"private memory after {name}"} if too_much else set()
        print(f"private memory after {name}, KiB: {taken / 1024:9,.0f}  {candidate}" +
              (f" (aim {aim / 1024:,.0f})" if number == 0 else "") + ("  MISSED" if too_much else ""))
    return missed


def bars(title, rows):
    """Rows of (label, median, p90) in microseconds, on a logarithmic scale."""
    from math import log10

    low = min(median for _, median, _ in rows) / 2
    high = max(p90 for _, _, p90 in rows) * 1.2

    def place(value):
        return 330 + 480 * log10(value / low) / log10(high / low)

    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="960" height="{60 + 24 * len(rows)}" font-family="sans-serif" font-size="12">']
    lines.append('<rect width="100%" height="100%" fill="#fff"/>')
    lines.append(f'<text x="10" y="24" font-size="15">{escape(title)}: median and 90th percentile</text>')
    for number, (label, median, p90) in enumerate(rows):
        y = 44 + 24 * number
        lines.append(f'<text x="10" y="{y + 12}">{escape(label)}</text>')
        lines.append(f'<rect x="330" y="{y}" width="{place(p90) - 330:.1f}" height="16" fill="#bcd3ea"/>')
        lines.append(f'<rect x="330" y="{y}" width="{place(median) - 330:.1f}" height="16" fill="#1f5fa8"/>')
        lines.append(f'<text x="{place(p90) + 6:.1f}" y="{y + 12}">{median:,.0f} / {p90:,.0f} us</text>')
    return "\n".join(lines + ["</svg>", ""])


def growth(lines):
    """Each line's points (number of locations, microseconds for one of them), both on logarithmic scales."""
    from math import log10

    counts = [count for points in lines.values() for count, _ in points]
    costs = [cost for points in lines.values() for _, cost in points]
    low, high = min(costs) / 1.5, max(costs) * 1.5

    def across(count):
        return 70 + 480 * log10(count / min(counts)) / log10(max(counts) / min(counts))

    def down(cost):
        return 360 - 310 * log10(cost / low) / log10(high / low)

    colours = ("#1f5fa8", "#c0392b", "#2e8b57", "#8e44ad", "#d68910", "#555")
    text = ['<svg xmlns="http://www.w3.org/2000/svg" width="1100" height="410" font-family="sans-serif" font-size="12">']
    text.append('<rect width="100%" height="100%" fill="#fff"/>')
    text.append('<text x="10" y="24" font-size="15">growth: microseconds for one location, by the number of them</text>')
    for count in sorted(set(counts)):
        text.append(f'<text x="{across(count):.0f}" y="390" text-anchor="middle">{count:,}</text>')
        text.append(f'<path d="M{across(count):.0f} 50V370" stroke="#ddd"/>')
    for number, (name, points) in enumerate(lines.items()):
        colour = colours[number % len(colours)]
        along = " ".join(f"{across(count):.1f},{down(cost):.1f}" for count, cost in sorted(points))
        text.append(f'<polyline points="{along}" fill="none" stroke="{colour}" stroke-width="2"/>')
        text += [f'<text x="{across(count):.0f}" y="{down(cost) - 5:.0f}" fill="{colour}">{cost:.2f}</text>' for count, cost in points]
        text.append(f'<text x="640" y="{60 + 20 * number}" fill="{colour}">{escape(name)}</text>')
    return "\n".join(text + ["</svg>", ""])


def growth_lines(paths):
    lines = {}
    for name, measured in paths.items():
        if found := re.fullmatch(r"(.*?),? (\d+) locations", name):
            kind, count = found[1], int(found[2])
            for candidate, samples in measured["samples"].items():
                cost = figures(samples)["median_us"] / count
                lines.setdefault(f"{kind}: {candidate}"[:70], []).append((count, cost))
    return lines


def draw(paths, out):
    if lines := growth_lines(paths):
        (out / "growth.svg").write_text(growth(lines), encoding="utf-8")
    groups = {"clicks": "right-click", "delays": "service takes", "folders": "folder", "dates": "date", "items": "of 300 items"}
    for file, words in groups.items():
        rows = []
        for name, measured in paths.items():
            if words in name:
                for candidate, samples in measured["samples"].items():
                    shown = figures(samples)
                    rows.append((f"{name}: {candidate}"[:52], shown["median_us"], shown["p90_us"]))
        if rows:
            (out / f"{file}.svg").write_text(bars(file, rows), encoding="utf-8")


def main():
    out = pathlib.Path(sys.argv[1])
    runs = [read_run(path) for path in sys.argv[2:]]
    memories = [read_memory(path) for path in sys.argv[2:]]
    processor_times = [read_processor_times(path) for path in sys.argv[2:]]
    out.mkdir(parents=True, exist_ok=True)
    missed = None
    for number, (paths, memory, spent) in enumerate(zip(runs, memories, processor_times), 1):
        print(f"-- run {number} of {len(runs)}")
        print_table(paths)
        now_missed = {name for name, measured in paths.items() if judge(measured)[1] is False}
        now_missed |= print_memory(memory)
        for name, candidate, spent_us in spent:
            print(f"processor time of {name}, ms: {spent_us / 1000:9,.0f}  {candidate}")
        missed = now_missed if missed is None else missed & now_missed
    draw(runs[-1], out)
    shown = [
        {
            name: {
                "aim": measured["aim"],
                "ratio": judge(measured)[0],
                "candidates": {candidate: figures(samples) for candidate, samples in measured["samples"].items()},
            }
            for name, measured in paths.items()
        }
        | {f"private memory after {name}: {candidate}": {"bytes": taken} for name, _, candidate, taken in memory}
        | {f"processor time of {name}: {candidate}": {"us": spent_us} for name, candidate, spent_us in spent}
        for paths, memory, spent in zip(runs, memories, processor_times)
    ]
    (out / "results.json").write_text(json.dumps(shown, indent=1) + "\n", encoding="utf-8")
    for name in sorted(missed):
        print(f"missed in every run: {name}")
    sys.exit(1 if missed and len(runs) > 1 else 0)


if __name__ == "__main__":
    main()
