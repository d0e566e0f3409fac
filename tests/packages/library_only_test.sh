#!/bin/sh
# Configures the library alone as on a machine that has nothing else: usage: library_only_test.sh CMAKE SOURCE
# SPDX-License-Identifier: Apache-2.0
folder=$(mktemp -d) || exit 1
trap 'rm -rf "$folder"' EXIT
"$1" -S "$2" -B "$folder" -G Ninja -DTARVEX_LIBRARY_ONLY=ON -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON \
  -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON \
  -DCMAKE_DISABLE_FIND_PACKAGE_ZLIB=ON -DCMAKE_DISABLE_FIND_PACKAGE_Python3=ON >"$folder/log" 2>&1 || {
  cat "$folder/log"
  exit 1
}
others=$(ninja -C "$folder" -n all | grep -E 'tvsh|standin|route_load|bench|tests/') && {
  printf 'built though only the library is wanted:\n%s\n' "$others"
  exit 1
}
exit 0
