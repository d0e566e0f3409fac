#!/bin/bash
# bash_completion_test.sh TVSH COMPLETION: asks the completion for bash what can follow a line that was begun.
# SPDX-License-Identifier: Apache-2.0
set -uo pipefail
tvsh=${1:?} completion=${2:?}
# shellcheck source=/dev/null
source "$completion" || exit 1
complete -p tvsh | grep -q -- '-F _tvsh' || exit 1

failed=0
cd "$(mktemp -d)" || exit 1
trap 'rm -r "$PWD"' EXIT
mkdir loaded && touch loaded/one
# expect WANTED WORD...: the completions of the last word, joined by bars.
expect() {
  local wanted=$1 found
  shift
  COMP_WORDS=("$tvsh" "$@") COMP_CWORD=$# COMPREPLY=()
  _tvsh
  found=$(IFS='|'; printf '%s' "${COMPREPLY[*]-}")
  [[ $found == "$wanted" ]] && return
  printf '%s: wanted "%s", found "%s"\n' "$*" "$wanted" "$found" >&2
  failed=$((failed + 1))
}
expect '--command|--color' --co
expect 'auto|always' --color a
expect 'auto|always' --color = a
expect 'auto|always|never' --color =
expect 'members|meters|member|meter' -c "'me"
expect 'schema' --command '"sche'
expect 'dump ipv4Host' -c "'dump ipv4H"
expect 'add ipv4Host dip=' -c "'add ipv4Host d"
expect 'sim lookup' -c "'sim loo"
expect 'add ipv4Host vrfId=a&b dip=' -c "'add ipv4Host vrfId=a&b di"
expect '' --device ''
expect 'loaded/' --raw load loa
expect 'diff loaded/one' -c "'diff loaded/o"
expect 'schema' sche
expect 'ipv4Host' --attach socket --raw dump ipv4H
expect 'nextHop=' --color = always add ipv4Host vrfId = 1 dip = 10.0.0.1 setNextHop n
expect '' add l2SmacCheck smac = 00 : 1c
((failed == 0))
