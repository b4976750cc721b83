#!/usr/bin/env bash
# Builds the release preset, runs every benchmark program under build/release/bench/
# and prints one table: each row's figures and, for rows measured against a
# reference, the reference's figures and the ratio of the two.
# Usage: scripts/bench.sh [REGEX]   (REGEX picks benchmarks by name, as --benchmark_filter)
#
# A benchmark named "what | reference" is the reference for the benchmark named
# "what"; the ratio is ours over the reference (throughput where both report
# bytes per second, otherwise the reference's time over ours), so above 1 is faster.
set -euo pipefail
cd "$(dirname "$0")/.."
filter="${1:-.}"
scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)"
results=build/release/bench-results
rm -rf "$results"
mkdir -p "$results"
mapfile -t programs < <(find build/release/bench -type f -name '*_bench' -perm -u+x | sort)
for program in "${programs[@]}"; do
  name=$(basename "$program")
  echo "== $name" >&2
  "$program" --benchmark_filter="$filter" --benchmark_out="$results/$name.json" \
    --benchmark_out_format=json >"$results/$name.txt" 2>&1 || { cat "$results/$name.txt" >&2; exit 1; }
done
python3 - "$results" <<'PY'
import json, pathlib, sys

def figures(b):
    unit = b.get("time_unit", "ns")
    ns = b["cpu_time"] * {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[unit]
    return ns, b.get("bytes_per_second"), b.get("items_per_second")

def show_time(ns):
    for div, unit in ((1e9, "s"), (1e6, "ms"), (1e3, "us")):
        if ns >= div:
            return f"{ns / div:,.2f} {unit}"
    return f"{ns:,.1f} ns"

def rate(bps, ips):
    if bps:
        return f"{bps / 1e6:,.0f} MB/s"
    if ips:
        return f"{ips:,.0f} /s"
    return ""

rows, refs = [], {}
for path in sorted(pathlib.Path(sys.argv[1]).glob("*.json")):
    text = path.read_text()
    if not text.strip():
        continue  # a program none of whose benchmarks the filter picked
    data = json.loads(text)
    for b in data.get("benchmarks", []):
        if b.get("run_type") == "aggregate" or b.get("error_occurred"):
            continue
        name = b["name"]
        if " | " in name:
            row, ref = name.split(" | ", 1)
            refs.setdefault(row, []).append((ref, figures(b)))
        else:
            rows.append((name, figures(b)))

w = max([len(n) for n, _ in rows] + [20])
print(f"{'benchmark':<{w}}  {'time':>12}  {'rate':>14}  {'reference':<14}  {'its rate':>14}  {'ratio':>7}")
for name, (ns, bps, ips) in rows:
    print(f"{name:<{w}}  {show_time(ns):>12}  {rate(bps, ips):>14}", end="")
    mine = refs.get(name, [])
    if not mine:
        print()
    for k, (ref, (rns, rbps, rips)) in enumerate(mine):
        ratio = bps / rbps if bps and rbps else rns / ns
        lead = "" if k == 0 else " " * (w + 2 + 12 + 2 + 14)
        print(f"{lead}  {ref:<14}  {rate(rbps, rips) or show_time(rns):>14}  {ratio:>7.2f}")
PY
