#!/usr/bin/env bash
# Builds (installing what is missing) and runs the whole test suite: the .so
# tests, the table generators' checks and the DLL under Wine.
set -euo pipefail
cd "$(dirname "$0")"
./bootstrap.sh --build
BUILD=${RAVL_BUILD_DIR:-build}
cd "$BUILD"
ctest --output-on-failure -j2 --timeout 1500
