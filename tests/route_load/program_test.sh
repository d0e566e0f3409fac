#!/bin/sh
# Runs route_load on whole files: exit status, what it says on each output, the result line.
# usage: program_test.sh ROUTE_LOAD ROUTE_LOAD_FAULTY SMALL_LIST
#
# SPDX-License-Identifier: Apache-2.0
program=$1 faulty=$2 small_list=$3
. "$(dirname "$0")/../examples/expect.sh"
cd "$work" || exit 1

expect_every_program_to_end_well -- "$small_list"
expect 1 '' 'no file given'
expect 1 '' "no option '--fast'" --fast small
expect 1 '' 'one file at a time' one two
expect 1 '' 'takes a number' small --seed
expect 1 '' "not '-1'" --resolve -1 small
expect 0 'usage: route_load' '' --help

expect 4 '' 'missing: cannot be opened: No such file' missing
printf '; nothing here\n' >empty
expect 4 '' 'empty: holds no route' empty

{
  printf '10.0.0.0/8 1\n10.0.0.0/33 2\n10.0.0.0/8 3\n'
  i=0
  while [ $i -lt 24 ]; do
    echo 'no route'
    i=$((i + 1))
  done
} >bad
expect 5 'result: nothing loaded: 25 bad lines' '^bad:2: prefix length 33 is beyond' --strict bad
expect 6 'incomplete: 1 route loaded, 0 not loaded, 25 bad lines, 1 duplicate, 1 entry compared' '^\.\.\. and 5 more bad lines' bad
expect 6 ': 27 lines, 25 bad lines, 1 duplicate' '^bad:22: no prefix length' bad
expect 6 '' '^-:2: ' - <bad
cp bad ./--strict && expect 6 '' '^--strict:2: ' -- --strict

# One block for each /64: 2,047 get an index.
awk 'BEGIN { print "2001:db8::/32 9"; for (i = 0; i < 2100; ++i) printf "2001:db8:0:%x::/80 %d\n", i, i + 1 }' >crowded
expect 6 'incomplete: 2048 routes loaded, 53 not loaded, .* 5000 addresses resolved, 0 differences' \
  'no partition index left for block 2001:db8:0:7ff::/64: all 2047 of ipv6LgMaskPartition' --resolve 5000 crowded

# All lengths of both families, nested.
awk 'BEGIN {
  for (i = 0; i <= 32; ++i) printf "0.0.0.0/%d %d\n", i, i + 100
  for (i = 0; i <= 128; ++i) printf "::/%d %d\n", i, i + 200
}' | gzip >nested
expect 0 'good: 162 routes loaded, 0 not loaded, .* 165 entries compared, 30000 .*, 0 differences' '' \
  --resolve 30000 nested

expect 0 'good: [1-9][0-9]\{4\} routes loaded, 0 not loaded, .* 100000 addresses resolved, 0 differences' '' \
  "$small_list"
expect 0 'good: .* 1000 addresses resolved, 0 differences' '' --strict --seed 77 --resolve 1000 "$small_list"

expect 0 'so: setNextHop' '' --explain --resolve 0 "$small_list"
[ "$(grep -c '^    ipv4Partition .*/12, partition index' "$work/out")" -eq 3 ] || {
  echo 'FAILED: three lookups with their blocks'
  failures=$((failures + 1))
}

# Faults of the switch. The call to refuse is well behind those that start the library.
program=$faulty
expect 0 'good: ' '' nested
export REFUSE_CALL=60
expect 2 'result: the driver refused' 'adding ipv[46][A-Za-z]* .*: the driver answers status 74 (STANDIN_FULL)' nested
unset REFUSE_CALL
export FAULT='lost entry'
expect 3 'DIFFERENT: .* [1-9][0-9]* difference' 'is missing in the switch' nested
FAULT='mask with a hole'
expect 3 'DIFFERENT: .* 1 difference,' 'the same, but its key does not lead to it' --resolve 0 nested

[ $failures -eq 0 ]
