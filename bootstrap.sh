#!/usr/bin/env bash
# Installs what is missing (Debian 12, as root), builds libocl_ravl_l9.so and
# libocl_ravl_l9.dll, and shows both working.
#   ./bootstrap.sh            install + build + demo
#   ./bootstrap.sh --build    install + build only
set -euo pipefail
cd "$(dirname "$0")"

# Every program the scripts and the build call, by the package that puts it on PATH:
#   clang, clang++ (clang)      lld-link, ld.lld (lld)     llvm-readobj, llvm-mca (llvm)
#   llc, llvm-as, llvm-nm (llvm) cmake, ctest (cmake)       ninja (ninja-build)
#   python3 (python3)           nm, readelf (binutils)      wine (wine, with wine64)
#   x86_64-w64-mingw32-gcc (mingw-w64)                      pkg-config (pkgconf)
#   gnuplot (gnuplot-nox: the plots of the ravl tool)
# and the libraries: MPFR, GMP, GoogleTest (tests), SLEEF (benchmark peer).
PACKAGES=(clang lld llvm cmake ninja-build python3 binutils libmpfr-dev libgmp-dev
          libgtest-dev libsleef-dev wine wine64 mingw-w64 pkgconf gnuplot-nox)
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
for tool in clang clang++ lld-link llvm-readobj llc llvm-as llvm-nm cmake ninja python3 nm readelf \
            wine x86_64-w64-mingw32-gcc pkg-config gnuplot; do
  command -v "$tool" >/dev/null || { echo "bootstrap: $tool is not on PATH" >&2; exit 1; }
done

BUILD=${RAVL_BUILD_DIR:-build}
CC=clang CXX=clang++ cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release | grep -E "exports:"
ninja -C "$BUILD"

[ "${1:-}" = "--build" ] && exit 0

echo
echo "== libocl_ravl_l9.so"
echo "exported names: $(nm -D --defined-only "$BUILD/libocl_ravl_l9.so" | grep -c ' T ')"
echo "needed libraries: $(readelf -d "$BUILD/libocl_ravl_l9.so" | awk '/NEEDED/ {n++} END {print n+0}')"
"$BUILD/tools/demo/ravl_demo"
echo
echo "== libocl_ravl_l9.dll"
echo "exported names: $(llvm-readobj --coff-exports "$BUILD/libocl_ravl_l9.dll" | grep -c 'Name:')"
echo "imported DLLs:  $(llvm-readobj --coff-imports "$BUILD/libocl_ravl_l9.dll" | awk '/Name:/ {n++} END {print n+0}')"
export WINEPREFIX=${WINEPREFIX:-$PWD/$BUILD/wineprefix} WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
(cd "$BUILD" && wine tests/win/ravl_win_runner.exe --demo libocl_ravl_l9.dll)
