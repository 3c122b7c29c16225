#!/usr/bin/env bash
# scripts/check-abi notices what breaks programs, on small libraries and on the real one: check_abi_test.sh PROJECT LIBRARY
set -euo pipefail
project=$1
real=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# Its own tree, with a library that has every kind of change as a variant.
mkdir -p "$work/scripts" "$work/abi" "$work/include" "$work/src"
cp "$project/scripts/check-abi" "$work/scripts/"
cat >"$work/include/probe.h" <<'END'
struct Point {
#ifdef WIDER
  long before = 0;
#endif
  long x = 0, y = 0;
};
struct Hidden;
__attribute__((visibility("default"))) long Sum(const Point& point);
#ifdef OTHER_RESULT
__attribute__((visibility("default"))) int Count(const Hidden& hidden);
#else
__attribute__((visibility("default"))) long Count(const Hidden& hidden);
#endif
END
cat >"$work/src/probe.cpp" <<'END'
#include "probe.h"
struct Hidden {
  long count = 0;
#ifdef WIDER_INSIDE
  long more = 0;
#endif
};
#ifndef WITHOUT_SUM
long Sum(const Point& point) { return point.x + point.y; }
#endif
decltype(Count(Hidden())) Count(const Hidden& hidden) { return hidden.count != 0 ? 1 : 0; }
#ifdef WITH_MORE
__attribute__((visibility("default"))) void More() {}
#endif
END

build() {  # VARIANT [OPTION...]
  g++ -std=c++17 -g -shared -fPIC -fvisibility=hidden -I"$work/include" -D"$1" "${@:2}" -Wl,-soname,libprobe.so.3 \
    "$work/src/probe.cpp" -o "$work/$1.so"
}

expect() {  # RESULT TEXT ARGUMENT...
  local result=0 said
  said=$("$work/scripts/check-abi" "${@:3}" 2>&1) || result=$?
  if [ "$result" -ne "$1" ] || [[ $said != *"$2"* ]]; then
    echo "FAILED: check-abi ${*:3} gave $result, not $1 with '$2':"
    echo "$said"
    failed=1
  fi
}

build BASE
expect 1 "abi/ has no record of libprobe.so.3" "$work/BASE.so"
expect 0 "" --write "$work/BASE.so"
if grep -n "$work" "$work"/abi/*; then
  echo "FAILED: a record names the folder of the build"
  failed=1
fi
expect 0 "" "$work/BASE.so"
for change in "WITHOUT_SUM:< Sum(Point const&)" "WITH_MORE:> More()" "WIDER:size changed from 128 to 192" \
  "OTHER_RESULT:return type changed"; do
  build "${change%%:*}"
  expect 1 "${change#*:}" "$work/${change%%:*}.so"
done
expect 0 "" --exports-only "$work/WIDER.so"
expect 1 "< Sum(Point const&)" --exports-only "$work/WITHOUT_SUM.so"
build WIDER_INSIDE
expect 0 "" "$work/WIDER_INSIDE.so"
build BASE -g0
expect 1 "has no debug information" "$work/BASE.so"
expect 2 "no library given"
expect 2 "there is no option '--wirte'" --wirte "$work/BASE.so"

# The real library, whose export of one function has another name.
cp "$project"/abi/*.exports "$project"/abi/*.abi "$work/abi/"
LC_ALL=C sed 's/_ZN11scriptwells4ByteEl/_ZN11scriptwells4ByreEl/g' "$real" >"$work/real.so"
expect 1 "< scriptwells::Byte(long)" --exports-only "$work/real.so"

# Its record has the types that programs use, and none that the library keeps to itself.
record=$project/abi/libscriptwells.so.0.abi
for type in Session Options RunOptions Value Table Error ErrorDetails Exchange; do
  grep -q "<class-decl name='$type' size-in-bits=" "$record" || { echo "FAILED: no layout of $type"; failed=1; }
done
if grep -nE "name='(TableData|Impl|Content)' size-in-bits=" "$record"; then
  echo "FAILED: the record has private types"
  failed=1
fi
exit $failed
