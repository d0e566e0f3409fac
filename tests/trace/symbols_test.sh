#!/bin/bash
# The interposer defines what the library wants of a driver, and adds one jump while it is off.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail
library=$1 interposer=$2 optimised=$3

names() { nm -D --format=posix "$@" | sed 's/@.*//; s/ .*//' | grep -E '^(pipe_|bf_|p4_pd_ms_)' | grep -v '^bf_drv_hdl$' | sort; }
wanted=$(names --undefined-only "$library")
[[ $(wc -l <<<"$wanted") -eq 111 ]] || { echo "the library wants $(wc -l <<<"$wanted") functions"; exit 1; }
diff <(echo "$wanted") <(names --defined-only "$interposer")
[[ $optimised == yes ]] || exit 0

# A jump by way of the pointer, or one that loads it first: neither touches the stack nor calls anything.
address='0x[0-9a-f]+\(%rip\)'
jump="^(jmp \*$address|mov $address,(%r[a-z0-9]+);jmp \*\2);$"
while read -r function; do
  case $function in
    pipe_mgr_idle_tmo_enable | p4_pd_ms_init_state) continue ;;  # a record by value, a state that is kept
  esac
  code=$(objdump -d --no-show-raw-insn --disassemble="$function" "$interposer" |
    sed -nE 's/^ +[0-9a-f]+:\t//p' | grep -vE 'nop|endbr' | sed -E 's/ *#.*//; s/ +/ /g; s/ $//' | tr '\n' ';')
  grep -qE "$jump" <<<"$code" || { echo "$function does more than jump: $code"; exit 1; }
done <<<"$wanted"
