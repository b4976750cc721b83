#!/usr/bin/env bash
# Builds the project, installs it into build/install and plays the demo session in hostsim.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset release
cmake --build --preset release -j "$(nproc)"
cmake --install build/release --prefix build/install
build/install/bin/hostsim --registry build/install/pelloran.reg examples/first.session
