#!/usr/bin/env bash
# The module's sources (src/) checked for format and by clang-tidy (see
# .clang-format and .clang-tidy); any difference or warning fails.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
mapfile -t files < <(git ls-files 'src/*.cpp' 'src/*.h')
clang-format --dry-run --Werror "${files[@]}"
cmake --preset default > /dev/null  # writes the compile commands clang-tidy reads
log=build/default/clang-tidy.log
# The Win32 platform code only compiles for Windows.
if ! run-clang-tidy -quiet -p build/default -j "$(nproc)" "$(pwd)/src/(?!platform/win32\.cpp).*\.cpp$" > "$log" 2>&1; then
    sed 's/\x1b\[[0-9;]*m//g' "$log" | grep -E '(error|warning):' | sort -u
    echo "clang-tidy found problems in src/ (see $log)" >&2
    exit 1
fi
echo "src/: formatted as .clang-format says, clang-tidy clean"
