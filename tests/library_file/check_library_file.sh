#!/bin/bash
# Looks at the shared library as a file: it needs the C library and cJSON alone, no code of ours runs when it is loaded,
# no driver function is looked up before it is called, and stripped it has at most so many bytes (0: whatever).
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

! readelf -dW "$library" | grep -qE 'BIND_NOW|FLAGS_1.*NOW' || fail "binds all functions when it is loaded"
# A weak one may be missing too: the address of a function that is handed on.
early=$(readelf -rW "$library" | grep -E ' (bf|pipe|p4_pd_ms)_' | grep -v -e R_X86_64_JUMP_SLOT -e R_AARCH64_JUMP_SLOT |
  sed -E 's/.* ((bf|pipe|p4_pd_ms)_[a-z0-9_]+).*/\1/' | sort -u | grep -v '^bf_drv_hdl$') || true
weak=$(nm -D --undefined-only "$library" | sed -n 's/^ *w \(.*_ms_.*\)/\1/p')
[[ $early == "$weak" ]] || fail "looks up at load: $early; may do so with: $weak"

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
strip -o "$stripped" "$library"
size=$(stat -c %s "$stripped")
echo "stripped: $size bytes"
((most == 0 || size <= most)) || fail "stripped it has $size bytes, $most are allowed"
exit $failed
