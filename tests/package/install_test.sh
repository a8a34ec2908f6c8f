#!/usr/bin/env bash
# Installs the build into a temporary prefix and builds consumers against the
# installed files only: with pkg-config (C and C++), with find_package (C and
# C++), and for Windows against the import library libocl_ravl_l9.lib: MinGW
# (C and C++, linked by clang with lld) and the MSVC target (linked by
# lld-link), run under Wine beside the installed DLL.
#   install_test.sh BUILD_DIR SOURCE_DIR WINEPREFIX MINGW_LIBGCC_DIR
set -euo pipefail
build=$1 src=$2 wineprefix=$3 libgcc=$4
here=$src/tests/package/consumer
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
for f in lib/libocl_ravl_l9.so bin/libocl_ravl_l9.dll lib/libocl_ravl_l9.lib lib/libocl_ravl_l9.def \
         include/ocl_ravl_l9.h lib/pkgconfig/ocl_ravl_l9.pc lib/cmake/ocl_ravl_l9/ocl_ravl_l9Config.cmake \
         share/ocl_ravl_l9/builtins.tsv share/ocl_ravl_l9/ocl_ravl_l9.ll; do
  [ -f "$prefix/$f" ] || { echo "not installed: $f"; exit 1; }
done
readelf -d "$prefix/lib/libocl_ravl_l9.so" | grep -q 'Library soname: \[libocl_ravl_l9.so\]' \
  || { echo "libocl_ravl_l9.so has no SONAME libocl_ravl_l9.so"; exit 1; }

echo "== pkg-config"
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
flags=$(pkg-config --cflags --libs ocl_ravl_l9)
clang -x c -std=c11 -O2 -mavx2 -mfma -Wall -Werror -Wno-psabi "$here/consumer.c" $flags \
      -Wl,-rpath,"$prefix/lib" -o "$work/pc_c"
clang++ -x c++ -std=c++17 -O2 -mavx2 -mfma -Wall -Werror -Wno-psabi "$here/consumer.c" $flags \
        -Wl,-rpath,"$prefix/lib" -o "$work/pc_cxx"
"$work/pc_c"
"$work/pc_cxx"
readelf -d "$work/pc_c" | grep -q 'Shared library: \[libocl_ravl_l9.so\]'

echo "== find_package"
CC=clang CXX=clang++ cmake -S "$here" -B "$work/cm" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_RPATH="$prefix/lib" >/dev/null
cmake --build "$work/cm" >/dev/null
"$work/cm/consumer_C"
"$work/cm/consumer_CXX"

echo "== Windows: the import library, under Wine"
mkdir -p "$work/win"
for lang in c c++; do
  name=$([ $lang = c ] && echo c || echo cxx)
  clang --target=x86_64-w64-mingw32 -x $lang -O2 -mavx2 -mfma -Wall -Werror -Wno-psabi \
        -I"$prefix/include" "$here/consumer.c" -x none "$prefix/lib/libocl_ravl_l9.lib" \
        -fuse-ld=lld -static -L"$libgcc" $([ $lang = c++ ] && echo -nostdlib++) -o "$work/win/consumer_$name.exe"
done
cp "$prefix/bin/libocl_ravl_l9.dll" "$work/win/"
# an import library (what MSVC's link and lld-link read): __imp_ pointers for every export
[ "$(llvm-nm "$prefix/lib/libocl_ravl_l9.lib" | grep -c ' __imp___ocl_ravl_l9_')" = \
  "$(grep -c '^  __ocl_ravl_l9_' "$prefix/lib/libocl_ravl_l9.def")" ]
# the MSVC target's objects, linked by lld-link with no C runtime
clang --target=x86_64-pc-windows-msvc -O2 -mavx2 -mfma -Wall -Werror -Wno-psabi -ffreestanding \
      -mno-stack-arg-probe -I"$prefix/include" -c "$here/msvc_entry.c" -o "$work/win/msvc_entry.obj"
lld-link /nologo /subsystem:console /entry:ravl_consumer_entry /nodefaultlib "$work/win/msvc_entry.obj" \
         "$prefix/lib/libocl_ravl_l9.lib" /out:"$work/win/consumer_msvc.exe"
export WINEPREFIX=$wineprefix WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
(cd "$work/win" && wine consumer_c.exe && wine consumer_cxx.exe) | tr -d '\r'
rc=0
(cd "$work/win" && wine consumer_msvc.exe) || rc=$?
[ $rc = 42 ] || { echo "consumer_msvc.exe: exit code $rc, not 42"; exit 1; }
echo "consumer: ok (MSVC target, lld-link)"
echo "install test: 7 consumers ok"
