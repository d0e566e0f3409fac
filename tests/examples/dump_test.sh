#!/bin/sh
# Runs dump: exit status and what it says on each output; then on a switch that tells of its tables wrongly.
# usage: dump_test.sh DUMP DUMP_FAULTY
#
# SPDX-License-Identifier: Apache-2.0
program=$1 faulty=$2
. "$(dirname "$0")/expect.sh"

expect_every_program_to_end_well
expect 1 '' "'two' is a second one" one two
expect 1 '' "dump: the switch has no table 'ipv4Hos'" ipv4Hos
expect 0 'result: good: 1 table, 0 with entries, 0 entries printed' '' nextHop

expect 0 'result: good: 120 tables, 10 with entries, 15 entries printed, .*, 0 differences$' ''
while read -r line; do
  grep -q "^ *$line\$" "$work/out" || { echo "FAILED: not printed: $line"; failures=$((failures + 1)); }
done <<'LINES'
ipv4Host (0x0100000a), 4 entries
entry       vrfId  dip       priority  action
0x00000002  0x1    10.0.0.2  0         setNextHop nextHop=0x66
0x80000001  any    any       0         onMiss
0x00000001  0x0    2001:0db8:0007:0000:0000:0000:0000:0001  0         setEcmp ecmpGroup=0x5
0x00000001  12                 0.1.2.0/24  0         setNextHop nextHop=0x7
0x00000001  0            01:00:00&0x10000  \*            20        setMcast
0x00000002  0            ff:ff:ff          ff:ff:ff     10        setBcast
0x00000001  0x1        0         setMbrHdl mbrHdl=0x1
0x00000002  0x2        0         setGrpHdl grpHdl=0x1
0x80000001  0         setQosRewriteConfiguration cosRewrite=0x1 dscpRewrite=0x0
0x00000001  0x3          0         setIngressMirrorColor meterIndex=0x4d
LINES

program=$faulty
expect 0 'result: good' ''
wrong() {
  FAULT=$1
  export FAULT
  expect 3 'result: DIFFERENT: .* [1-9][0-9]* differences\{0,1\}$' "^different: $2" ipv4Host
}
wrong 'lost column' 'ipv4Host, entry 0x00000001: .*: 2 values are wanted, not 1$'
wrong 'other action' "ipv4Host, entry 0x00000001: .*: the table has no action 'setMcast'$"
wrong 'wide value' 'ipv4Host, entry 0x00000001: l3Info_vrfId is 0x101, more than 8 bits$'
wrong 'cut short' "ipv4Host, entry 0x00000001: .*: character 46: ',' or ')' is wanted, not the end$"
wrong 'word for a number' "ipv4Host, entry 0x00000001: .*: character 10: a literal is wanted, not 'ten,"
wrong 'no key at all' 'ipv4Host, entry 0x00000001: .*: a key is wanted, not nothing$'
FAULT='schema cut short'
expect 3 'result: DIFFERENT: 0 tables' '^different: schema of 0x01000001: character [0-9]*: '
FAULT=unreadable
expect 2 'result: the driver refused' '^dump: reading entry 0x00000001 of ipv4Host: no text$' ipv4Host

[ $failures -eq 0 ]
