#!/usr/bin/env bash
# Builds the libFuzzer targets and runs each for the given number of seconds (default 30).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-30}"
scripts/install-deps.sh
cmake --preset fuzz
cmake --build --preset fuzz -j "$(nproc)"
shopt -s nullglob
for bin in build/fuzz/fuzz/*_fuzz; do
  name=$(basename "$bin")
  corpus_seed="fuzz/corpus/${name%_fuzz}"
  work="build/fuzz/corpus/${name}"
  mkdir -p "$work"
  echo "== $name for ${seconds}s"
  seeds=()
  [[ -d "$corpus_seed" ]] && seeds=("$corpus_seed")
  # A fuzzer's dictionary, when it has one, is fuzz/<name>.dict.
  dict=()
  [[ -f "fuzz/${name%_fuzz}.dict" ]] && dict=("-dict=fuzz/${name%_fuzz}.dict")
  "$bin" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 -print_final_stats=1 "${dict[@]}" "$work" "${seeds[@]}"
done
