#!/bin/sh
# Runs ecmp_fabric: exit status, what it says on each output, the file; then on a switch that goes wrong.
# usage: ecmp_fabric_test.sh ECMP_FABRIC ECMP_FABRIC_FAULTY
#
# SPDX-License-Identifier: Apache-2.0
program=$1 faulty=$2
. "$(dirname "$0")/expect.sh"
TMPDIR=$work
export TMPDIR

expect_every_program_to_end_well
expect 1 '' "'two' is a second one" one two
expect 4 '' "^ecmp_fabric: $work/none/log: cannot be opened for writing: No such file" "$work/none/log"
expect 4 '' "^ecmp_fabric: $work: cannot be opened for writing: Is a directory" "$work"
expect 4 '' 'ecmp_fabric: /dev/full: cannot be written: No space left' /dev/full
expect 4 '' 'ecmp_fabric: /dev/null: not JSON from byte 0 on' /dev/null

good='result: good: 1000 groups, [1-9][0-9]* memberships, [1-9][0-9]* entries, restored twice, .*, 0 differences$'
expect 0 "$good" '' "$work/log"
grep -q '"name":"egrMirrorLagPortActionProfile","members":\[{"hdl":' "$work/log" || failures=$((failures + 1))
expect 0 "$good" ''
if ls "$work"/ecmp_fabric.* 2>/dev/null; then
  echo "FAILED: the temporary file is left"
  failures=$((failures + 1))
fi

program=$faulty
for FAULT in 'other member' 'other state' 'lost membership' 'extra group' 'entry elsewhere' 'fallback gone' \
  'log cut short' 'state not restored' 'member not replayed' 'state kept' 'membership not recorded'; do
  export FAULT
  expect 3 'result: DIFFERENT: .* [1-9][0-9]* differences\{0,1\}$' '^different: '
done
FAULT='full group'
expect 2 'result: the driver refused' 'adding a member to group [0-9]*: the driver answers status 74 (STANDIN_FULL)$'

[ $failures -eq 0 ]
