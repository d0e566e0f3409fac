#!/bin/bash
# A program that knows nothing of it is traced, by its environment alone.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail
interposer=$1 program=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

traced() { env LD_PRELOAD="$interposer" TARVEX_TRACE="$folder/calls" "$@" "$program" >"$folder/output"; }
"$program" >"$folder/untraced"
echo old >"$folder/calls"
chmod 644 "$folder/calls"
traced TARVEX_TRACE_JSON=
cmp "$folder/output" "$folder/untraced"
[[ $(stat -c %a "$folder/calls") == 600 ]]
grep -qE '^[0-9:.]+ \[[0-9]+\] bf_drv_register\(client_name="p4_pd_tarvex_switch_pd", client=[0-9]+\) = 0 OK <[0-9.]+us>$' "$folder/calls"
if grep -qv '>$' "$folder/calls"; then echo "not every line is whole"; exit 1; fi
calls=$(wc -l <"$folder/calls")

traced TARVEX_TRACE_JSON=1
python3 -c '
import json, sys
calls = [json.loads(line) for line in open(sys.argv[1])]
assert len(calls) == int(sys.argv[2]), len(calls)
assert calls[0]["call"] == "p4_pd_ms_init" and all(call["schema_version"] == 1 for call in calls)
' "$folder/calls" "$calls"

mkfifo "$folder/pipe"
while read -r file told; do
  env LD_PRELOAD="$interposer" TARVEX_TRACE="$file" "$program" 2>&1 >"$folder/output" | grep -q "$file: $told"
  cmp "$folder/output" "$folder/untraced"
done <<END
/no/such/folder/calls .*; nothing is traced
$folder/pipe .*; nothing is traced
/dev/full No space left on device; the trace is not whole
END
