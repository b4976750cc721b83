#!/usr/bin/env bash
# Cross-builds the Windows x64 programs (mingw preset), installs them, and runs every test program,
# the demo session and the script tests (hostsim sessions, the module's exports) under wine with a
# fresh prefix. Ends with "N passed, M failed".
# Environment: PLR_JOBS (default 2), PLR_TEST_TIMEOUT seconds per program (default 600).
set -uo pipefail
cd "$(dirname "$0")/.."
root_dir=$(pwd)

scripts/install-deps.sh --windows || { echo "could not install mingw-w64 and wine64"; exit 1; }

build=build/mingw
install_dir=$root_dir/$build/install
jobs=${PLR_JOBS:-2}
per_test_timeout=${PLR_TEST_TIMEOUT:-600}
wine=/usr/lib/wine/wine64
wineserver=/usr/lib/wine/wineserver64
passed=0
failed=0
fail() { echo "FAILED: $*"; failed=$((failed + 1)); }

# Windows path of a file on this machine: wine shows the root as drive Z:.
winpath() { local p; p=$(realpath -m "$1"); printf 'Z:%s' "${p//\//\\}"; }

echo "== configure and build (mingw preset)"
if ! cmake --preset mingw; then
  fail "configure"
  echo "$passed passed, $failed failed"
  exit 1
fi
# Keep going past a broken target so that everything that does build is still run.
rm -rf "$install_dir"
if cmake --build --preset mingw -j "$jobs" -- -k 0; then
  cmake --install "$build" --prefix "$install_dir" >/dev/null || fail "install"
else
  fail "build (see the errors above)"
  # Install what did build; the missing files are the build failure's, not counted again.
  cmake --install "$build" --prefix "$install_dir" >/dev/null 2>&1 || true
fi

echo "== fresh wine prefix"
export WINEPREFIX=$root_dir/$build/wineprefix
export WINEDEBUG=-all
# No prompts to fetch wine's .NET or HTML engines: nobody is there to answer.
export WINEDLLOVERRIDES="mscoree,mshtml="
# Any message box that reaches the system is printed instead of waiting for a click.
export PLR_UNATTENDED=1
"$wineserver" -k 2>/dev/null || true
rm -rf "$WINEPREFIX"
# A server still leaving from an earlier run can make the first start fail: one retry.
timeout 300 "$wine" wineboot -i >/dev/null 2>&1 ||
  { "$wineserver" -k 2>/dev/null; sleep 2; timeout 300 "$wine" wineboot -i >/dev/null 2>&1; } || fail "wine prefix"
# Windows need a display driver; the null driver gives hidden windows and timers without a display.
"$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /t REG_SZ /d null /f >/dev/null
"$wineserver" -k 2>/dev/null || true

# The installation root is the folder that holds pelloran/ (the core sits below it).
core=$(find "$install_dir" -path '*/pelloran/data/core/win/x64/core.dll' 2>/dev/null | head -n 1)
if [[ -n "$core" ]]; then
  install_root=${core%/pelloran/data/core/win/x64/core.dll}
else
  echo "(no core.dll in the install tree yet; the registry names the install prefix)"
  install_root=$install_dir
fi
export PLR_EXPECTED_INSTALL_ROOT
PLR_EXPECTED_INSTALL_ROOT=$(winpath "$install_root")
"$wine" reg add 'HKLM\SOFTWARE\Wow6432Node\Tavrelo' /v path /t REG_SZ /d "$PLR_EXPECTED_INSTALL_ROOT" /f >/dev/null \
  || fail "registry value"
echo "registry path = $PLR_EXPECTED_INSTALL_ROOT"

# Programs in the build tree find the project's DLLs through wine's search path.
dll_dirs=$(find "$build" -name '*.dll' -not -path '*/wineprefix/*' -not -path '*/install/*' \
  -not -path '*/CMakeFiles/*' -printf '%h\n' | sort -u)
WINEPATH=""
for d in $dll_dirs; do WINEPATH+="$(winpath "$d");"; done
export WINEPATH

# One wine server for the whole run (it stays a minute past its last program, should this
# script be stopped): each program starts faster, and ctest's listing of a test program's cases,
# which has a few seconds, does not wait for a server to start.
"$wineserver" -p60

echo "== test programs"
mapfile -t programs < <(find "$build" -name '*.exe' -not -path '*/wineprefix/*' -not -path '*/install/*' \
  -not -path '*/CMakeFiles/*' -not -path '*/googletest/*' | sort)
log_dir=$build/test-logs
mkdir -p "$log_dir"
for exe in "${programs[@]}"; do
  grep -aq 'gtest_list_tests' "$exe" || continue  # not a test program
  name=$(basename "$exe" .exe)
  log=$log_dir/$name.log
  (cd "$(dirname "$exe")" && timeout "$per_test_timeout" "$wine" "./$(basename "$exe")" --gtest_color=no) >"$log" 2>&1
  rc=$?
  ok=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) test.*/\1/p' "$log" | tail -n 1)
  bad=$(sed -n 's/^\[  FAILED  \] \([0-9]*\) test.*/\1/p' "$log" | tail -n 1)
  passed=$((passed + ${ok:-0}))
  failed=$((failed + ${bad:-0}))
  if [[ $rc -ne 0 && -z "$bad" ]]; then
    fail "$name exited with $rc before its summary (timeout or crash)"
  fi
  echo "$name: ${ok:-0} passed, ${bad:-0} failed (exit $rc)"
  if [[ $rc -ne 0 ]]; then
    grep -E '^\[  FAILED  \]|Failure|error' "$log" | head -n 20
  fi
done

echo "== demo session"
hostsim=$(find "$install_dir" "$build/hostsim" -name 'hostsim.exe' 2>/dev/null | head -n 1)
module=$(find "$install_dir" -name 'pelloran.cdl64' 2>/dev/null | head -n 1)
if [[ -z "$hostsim" ]]; then
  echo "hostsim.exe is not built yet: demo session skipped"
elif [[ -z "$module" || ! -f examples/first.session ]]; then
  echo "no installed pelloran.cdl64 or no examples/first.session: demo session skipped"
else
  if (cd "$(dirname "$hostsim")" && timeout "$per_test_timeout" "$wine" "./hostsim.exe" \
        --plugins "$(winpath "$(dirname "$module")")" "$(winpath "$root_dir/examples/first.session")") \
      >"$log_dir/demo.log" 2>&1; then
    passed=$((passed + 1))
    echo "demo session: passed"
  else
    fail "demo session (log: $log_dir/demo.log)"
    tail -n 30 "$log_dir/demo.log"
  fi
fi

echo "== the plug-in folder alone"
# The module as it ships: a copy of the installed plug-in folder somewhere else, a copy of hostsim
# beside nothing, no folder of the project on the search path and only the installation root in
# the registry. The module must still load and attach the core.
if [[ -z "$hostsim" || -z "$module" ]]; then
  fail "no installed hostsim.exe or pelloran.cdl64 to copy"
else
  elsewhere="$root_dir/$build/elsewhere/any place"
  rm -rf "$root_dir/$build/elsewhere"
  mkdir -p "$elsewhere/bin" "$elsewhere/plugins"
  cp "$hostsim" "$elsewhere/bin/"
  cp -r "$(dirname "$module")" "$elsewhere/plugins/"
  if (cd "$elsewhere/bin" && WINEPATH="" timeout "$per_test_timeout" "$wine" ./hostsim.exe \
        "$(winpath "$root_dir/examples/first.session")") >"$log_dir/alone.log" 2>&1 &&
     grep -q "core: main window opened" "$log_dir/alone.log" &&
     ! grep -q -e "MessageBox" -e "CORE is not attached" "$log_dir/alone.log"; then
    passed=$((passed + 1))
    echo "plug-in folder alone: passed"
  else
    fail "plug-in folder alone (log: $log_dir/alone.log)"
    tail -n 30 "$log_dir/alone.log"
  fi
fi

echo "== script tests"
# The tests ctest runs as scripts; only their folders are visited, as ctest lists the cases of
# every test program in a folder it visits by running it (their cases already ran above).
script_tests='^(module_exports_only_c4d_main|module_imports_only_system_libraries|hostsim_[a-z_]+)$'
for dir in tests/module tests/hostsim; do
  log=$log_dir/scripts-$(basename "$dir").log
  if [[ ! -f "$build/$dir/CTestTestfile.cmake" ]]; then
    fail "no script tests in $build/$dir"
    continue
  fi
  ctest --test-dir "$build/$dir" -R "$script_tests" --timeout "$per_test_timeout" --output-on-failure >"$log" 2>&1
  # Result lines: "1/4 Test #3: hostsim_bad_line .......   Passed    1.02 sec"
  ran=0
  while read -r name result; do
    ran=$((ran + 1))
    if [[ $result == Passed ]]; then
      passed=$((passed + 1))
      echo "$name: passed"
    else
      fail "$name ($result; log: $log)"
    fi
  done < <(sed -n 's/^ *[0-9]*\/[0-9]* *Test *#[0-9]*: \([^ ]*\) \.*[ *]*\([A-Za-z][A-Za-z ]*[A-Za-z]\).*/\1 \2/p' "$log")
  if [[ $ran -eq 0 ]]; then
    fail "no script test ran in $dir (log: $log)"
    tail -n 20 "$log"
  elif grep -q '^The following tests FAILED' "$log"; then
    sed -n '/^The following tests FAILED/,$p' "$log" | head -n 10
  fi
done

"$wineserver" -k 2>/dev/null || true
echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]
