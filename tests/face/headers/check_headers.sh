#!/usr/bin/env bash
# Compiles each installed header of the C++ library alone and with all warnings: check_headers.sh FOLDER
# With g++ and clang++, as C++17, 20 and 23. calendar.h needs C++20, and its types clang with libstdc++ 12 or later.
set -u
folder=$1
failed=0
for compiler in g++ clang++; do
  command -v "$compiler" >/dev/null || { echo "no $compiler"; failed=1; continue; }
  for standard in 17 20 2b; do
    for header in "$folder"/*.h; do
      [ "$standard" != 17 ] || [ "${header##*/}" != calendar.h ] || continue
      echo "#include <scriptwells/${header##*/}>" |
        "$compiler" -std=c++$standard -I"$folder/.." -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror \
          -fsyntax-only -x c++ - || { echo "FAILED: $compiler -std=c++$standard ${header##*/}"; failed=1; }
    done
  done
done
if grep -nE '#include [<"](boost|curl|xercesc|nlohmann|qvscriptwells)' "$folder"/*.h; then
  echo "FAILED: a header includes another library"
  failed=1
fi
# But the line with the licence, which nobody reads nine times.
lines=$(cat "$folder"/*.h | grep -cv '^// SPDX-License-Identifier: ')
echo "$lines lines in all headers"
[ "$lines" -lt 920 ] || { echo "FAILED: more than a person reads once"; failed=1; }
exit $failed
