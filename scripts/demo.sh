#!/usr/bin/env bash
# Builds the project, installs it into build/install and plays the tour
# (examples/tour.session) in hostsim, in build/demo. The tour's two pictures
# are copied to docs/ (tour-view.svg, tour-curves.svg), where the README shows
# them. Fails when anything cannot be built or installed, when hostsim is
# missing, or when a line of the tour fails or reports an error.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
scripts/install-deps.sh
cmake --preset release
cmake --build --preset release -j "$(nproc)"
cmake --install build/release --prefix build/install

hostsim=$root/build/install/bin/hostsim
if [[ ! -x $hostsim ]]; then
  echo "demo: $hostsim was not installed" >&2
  exit 1
fi
# The tour saves a scene and writes its pictures where it runs.
work=$root/build/demo
rm -rf "$work"
mkdir -p "$work"
cd "$work"
if ! "$hostsim" --registry "$root/build/install/pelloran.reg" "$root/examples/tour.session" 2>&1 | tee tour.log; then
  echo "demo: hostsim could not play the tour (see $work/tour.log)" >&2
  exit 1
fi
if grep -qiE "error|CrashInfo|MessageBox|not implemented" tour.log; then
  echo "demo: the tour reported an error (see $work/tour.log)" >&2
  exit 1
fi
for picture in tour.svg tour_curves.svg; do
  if [[ ! -s $picture ]]; then
    echo "demo: the tour drew no $picture" >&2
    exit 1
  fi
done
cp tour.svg "$root/docs/tour-view.svg"
cp tour_curves.svg "$root/docs/tour-curves.svg"
echo "demo: the tour played; pictures in docs/tour-view.svg and docs/tour-curves.svg"
