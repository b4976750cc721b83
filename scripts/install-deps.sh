#!/usr/bin/env bash
# Installs what the build needs from Debian's packages; skips what is there.
# Usage: scripts/install-deps.sh [--windows]   (--windows adds mingw-w64 and wine64)
set -euo pipefail
pkgs=(cmake ninja-build g++ libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev libpugixml-dev clang libclang-rt-14-dev)
# The benchmarks measure against these as references; the module never uses them.
pkgs+=(libxml2-dev zlib1g-dev)
# scripts/lint.sh checks src/ with these.
pkgs+=(clang-format clang-tidy)
if [[ "${1:-}" == "--windows" ]]; then
  pkgs+=(g++-mingw-w64-x86-64 wine64)
fi
missing=()
for p in "${pkgs[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  SUDO=""; [[ $(id -u) -ne 0 ]] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
