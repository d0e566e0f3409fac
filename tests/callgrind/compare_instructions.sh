#!/bin/bash
# Counts what one function of a program costs, what it calls included, and holds it to a percentage of another one.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail

(($# >= 5)) || { echo "usage: compare_instructions.sh VALGRIND PERCENT FUNCTION OTHER PROGRAM [ARGUMENT]" >&2; exit 2; }
valgrind=$1 percent=$2 function=$3 other=$4
shift 4
program=("$@")

instructions_of() {
  local log
  log=$("$valgrind" --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect="$1" "${program[@]}" 2>&1) ||
    { echo "$log" >&2; exit 1; }
  sed -n 's/^==[0-9]*== Collected : //p' <<<"$log"
}
ours=$(instructions_of "$function")
theirs=$(instructions_of "$other")

((ours > 0 && theirs > 0)) || { echo "callgrind counted nothing" >&2; exit 1; }
echo "instructions: $ours in $function, $theirs in $other, $((ours * 100 / theirs)) % (at most $percent %)"
((ours * 100 <= theirs * percent))
