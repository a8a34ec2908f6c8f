#!/usr/bin/env bash
# Installs what is missing (Debian 12, as root), builds libocl_ravl_l9.so and
# libocl_ravl_l9.dll, and shows both working.
#   ./bootstrap.sh            install + build + demo
#   ./bootstrap.sh --build    install + build only
set -euo pipefail
cd "$(dirname "$0")"

PACKAGES=(clang lld llvm cmake ninja-build python3 libmpfr-dev libgmp-dev libgtest-dev
          libsleef-dev wine64 mingw-w64)
missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

BUILD=${RAVL_BUILD_DIR:-build}
CC=clang CXX=clang++ cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release | grep -E "exports:"
ninja -C "$BUILD"

[ "${1:-}" = "--build" ] && exit 0

echo
echo "== libocl_ravl_l9.so"
echo "exported names: $(nm -D --defined-only "$BUILD/libocl_ravl_l9.so" | grep -c ' T ')"
echo "needed libraries: $(readelf -d "$BUILD/libocl_ravl_l9.so" | grep -c NEEDED)"
"$BUILD/tools/ravl_demo"
echo
echo "== libocl_ravl_l9.dll"
echo "exported names: $(llvm-readobj --coff-exports "$BUILD/libocl_ravl_l9.dll" | grep -c 'Name:')"
echo "imported DLLs:  $(llvm-readobj --coff-imports "$BUILD/libocl_ravl_l9.dll" | grep -c 'Name:')"
if [ -x "$BUILD/tests/win/ravl_win_runner.exe" ] || [ -f "$BUILD/tests/win/ravl_win_runner.exe" ]; then
  export WINEPREFIX=${WINEPREFIX:-$PWD/$BUILD/wineprefix} WINEDEBUG=-all
  (cd "$BUILD" && wine tests/win/ravl_win_runner.exe --demo libocl_ravl_l9.dll) || true
fi
