#!/bin/bash
# Reads what the compiler noted of stack frames (-fstack-usage) and holds the frame of every entry write to a limit.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail

(($# == 3)) || { echo "usage: stack_use.sh FOLDER-OF-OBJECTS EXPORTED-SYMBOLS LIMIT" >&2; exit 2; }
folder=$1 symbols=$2 limit=$3
writes='_(table_(add|modify)_with_|table_delete|match_spec_to_entry_hdl|set_default_action_|add_entry|modify_entry|set_default_entry)'
expected=$(grep -cE "$writes" "$symbols")

# A line is 'file:line:column:function', bytes, kind; a frame of no fixed limit is of kind 'dynamic'.
find "$folder" -name 'exports_*.su' -exec cat {} + | awk -F '\t' -v limit="$limit" -v writes="$writes" -v expected="$expected" '
  $1 ~ writes {
    ++functions
    if ($2 > most) most = $2
    if ($2 >= limit || $3 == "dynamic") { print $1 ": " $2 " bytes of stack, " $3; ++wrong }
  }
  END {
    print functions + 0 " entry writes, the largest frame " most + 0 " bytes"
    exit !(functions == expected && functions > 0 && !wrong)
  }'
