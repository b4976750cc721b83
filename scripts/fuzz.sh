#!/usr/bin/env bash
# Builds the libFuzzer targets and runs each in turn, one process at a time,
# then prints the executions of each.
# Usage: scripts/fuzz.sh [SECONDS | --runs N] [--fast] [--merge] [TARGET...]
#   SECONDS     time for each target (default 30)
#   --runs N    a number of executions for each target instead of a time
#   --fast      targets without AddressSanitizer (UndefinedBehaviorSanitizer
#               only): several times the executions, for long campaigns
#   --merge     afterwards, minimise what was found together with the seeds
#               into fuzz/corpus/<target>/ (the committed corpus)
#   TARGET      base64, xml, state, scene_file, stored_state (default: all)
set -euo pipefail
cd "$(dirname "$0")/.."
limit=(-max_total_time=30)
merge=0
preset=fuzz
targets=()
while (($#)); do
  case "$1" in
    --runs) limit=(-runs="$2"); shift 2 ;;
    --merge) merge=1; shift ;;
    --fast) preset=fuzz-fast; shift ;;
    [0-9]*) limit=(-max_total_time="$1"); shift ;;
    *) targets+=("$1"); shift ;;
  esac
done
scripts/install-deps.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$(nproc)"
out="build/$preset"
if ((${#targets[@]} == 0)); then
  for bin in "$out"/fuzz/*_fuzz; do
    name=$(basename "$bin")
    targets+=("${name%_fuzz}")
  done
fi
summary=()
for target in "${targets[@]}"; do
  bin="$out/fuzz/${target}_fuzz"
  seeds="fuzz/corpus/$target"
  work="$out/corpus/$target"
  log="$out/${target}.log"
  mkdir -p "$work" "$seeds"
  dict=()
  [[ -f "fuzz/$target.dict" ]] && dict=("-dict=fuzz/$target.dict")
  echo "== $target ${limit[*]}"
  status=ok
  "$bin" "${limit[@]}" -rss_limit_mb=2048 -timeout=10 -print_final_stats=1 -artifact_prefix="$out/$target-" \
    "${dict[@]}" "$work" "$seeds" >"$log" 2>&1 || status=failed
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
  if [[ $status != ok ]]; then
    tail -40 "$log"
  fi
  if ((merge)) && [[ $status == ok ]]; then
    minimal="$out/minimal/$target"
    rm -rf "$minimal" && mkdir -p "$minimal"
    "$bin" -merge=1 "${dict[@]}" "$minimal" "$seeds" "$work" >>"$log" 2>&1
    rm -rf "$seeds" && mkdir -p "$seeds" && cp "$minimal"/* "$seeds"/
  fi
  summary+=("$(printf '%-12s %14s executions %10s per second  %s' "$target" "${runs:-?}" "${rate:-?}" "$status")")
done
printf '%s\n' "${summary[@]}"
for line in "${summary[@]}"; do
  [[ $line == *failed ]] && exit 1
done
exit 0
