#!/usr/bin/env bash
# Compiles callers of a sample of the generated LLVM IR declarations
# (share/ocl_ravl_l9/ocl_ravl_l9.ll) with llc for Linux and both Windows
# triples, runs the Linux object against the .so, and the MinGW object against
# the DLL's import library under Wine. Then calls every register-form export
# through its declaration (ir_probes.py) and through the tests' harness, on
# both systems, and compares the results bit for bit (ir_probe_driver.cpp).
#   ir_test.sh GEN_DIR SOURCE_DIR SO_PATH DLL_PATH IMPLIB WINEPREFIX MINGW_LIBGCC_DIR
set -euo pipefail
gen=$1 src=$2 so=$3 dll=$4 implib=$5 wineprefix=$6 libgcc=$7
here=$src/tests/package
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

names=$(grep -o '@__ocl_ravl_l9_[a-z0-9_]*' "$here/ir_caller.ll" | sort -u | tr -d @)
{
  for n in $names; do
    grep -E "@$n\(" "$gen/ocl_ravl_l9.ll" || { echo "no declaration of $n" >&2; exit 1; }
  done
  cat "$here/ir_caller.ll"
} > "$work/caller.ll"
grep '^declare' "$work/caller.ll"

# LLVM 14 reads `ptr` only with -opaque-pointers (later versions by default).
opaque=$(llc --version | grep -q 'LLVM version 14' && echo -opaque-pointers || true)
for triple in x86_64-linux-gnu x86_64-windows-gnu x86_64-pc-windows-msvc; do
  llc $opaque -O2 -mtriple=$triple -mattr=+avx2,+fma -filetype=obj "$work/caller.ll" -o "$work/caller-$triple.o"
done
# the whole declarations file parses
llvm-as $opaque "$gen/ocl_ravl_l9.ll" -o /dev/null

echo "== Linux"
clang -O2 -mavx2 -mfma -Wno-psabi -I"$src/include" "$here/ir_driver.c" "$work/caller-x86_64-linux-gnu.o" \
      "$so" -Wl,-rpath,"$(dirname "$so")" -lm -o "$work/ir_linux"
"$work/ir_linux"

echo "== Windows (MinGW object, under Wine)"
clang --target=x86_64-w64-mingw32 -O2 -mavx2 -mfma -Wno-psabi -I"$src/include" "$here/ir_driver.c" \
      "$work/caller-x86_64-windows-gnu.o" "$implib" -fuse-ld=lld -static -L"$libgcc" -o "$work/ir_win.exe"
cp "$dll" "$work/"
export WINEPREFIX=$wineprefix WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
(cd "$work" && wine ir_win.exe) | tr -d '\r'

echo "== every register-form declaration against the harness"
python3 "$here/ir_probes.py" "$gen/ocl_ravl_l9.ll" "$work/probes.ll"
llc $opaque -O1 -relocation-model=pic -mtriple=x86_64-linux-gnu -mattr=+avx2,+fma -filetype=obj \
    "$work/probes.ll" -o "$work/probes.o"
llc $opaque -O1 -mtriple=x86_64-windows-gnu -mattr=+avx2,+fma -filetype=obj "$work/probes.ll" -o "$work/probes.obj"
drv=("$here/ir_probe_driver.cpp" "$src/tests/call_checked.S" -std=c++17 -O1 -mavx2 -mfma -Wall -Wno-psabi
     -I"$src/tests" -I"$gen")
clang++ "${drv[@]}" "$work/probes.o" "$so" -Wl,-rpath,"$(dirname "$so")" -ldl -o "$work/probe_linux"
"$work/probe_linux" "$so"
clang++ --target=x86_64-w64-mingw32 -fno-exceptions -fno-rtti -nostdlib++ "${drv[@]}" "$work/probes.obj" \
        "$implib" -fuse-ld=lld -static -L"$libgcc" -o "$work/probe_win.exe"
(cd "$work" && wine probe_win.exe "$(basename "$dll")") | tr -d '\r'
echo "ir test: 4 runs ok"
