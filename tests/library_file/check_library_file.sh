#!/bin/bash
# Looks at the shared library as a file: it needs the C library and cJSON alone, no code of ours runs when it is loaded,
# and stripped it has at most so many bytes (0: whatever).
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail

(($# == 2)) || { echo "usage: check_library_file.sh LIBRARY BYTES" >&2; exit 2; }
library=$1 most=$2
failed=0
fail() { echo "$*" >&2; failed=1; }

needed=$(readelf -dW "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort | tr '\n' ' ')
[[ $needed == "libc.so.6 libcjson.so.1 " ]] || fail "needs $needed, not the C library and cJSON alone"

# One place each, which the compiler's own start and end files fill.
for section in INIT FINI; do
  bytes=$(readelf -dW "$library" | sed -n "s/.*(${section}_ARRAYSZ) *\([0-9]*\) .*/\1/p")
  ((bytes == 8)) || fail "${section}_ARRAY has $bytes bytes: something of the library runs at load or unload"
done

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
strip -o "$stripped" "$library"
size=$(stat -c %s "$stripped")
echo "stripped: $size bytes"
((most == 0 || size <= most)) || fail "stripped it has $size bytes, $most are allowed"
exit $failed
