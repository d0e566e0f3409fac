#!/bin/sh
# Runs acl_and_qos: exit status, what it says on each output, the result line; then on a switch that goes wrong.
# usage: acl_and_qos_test.sh ACL_AND_QOS ACL_AND_QOS_FAULTY
#
# SPDX-License-Identifier: Apache-2.0
program=$1 faulty=$2
. "$(dirname "$0")/expect.sh"

expect_every_program_to_end_well
expect 1 '' "SEED is a number.*, not '1x'" 1x
expect 1 '' "'2' is a second one" 1 2

good='result: good: [3-9][0-9]\{2\} rules written, .*, [1-9][0-9]\{4,\} comparisons, 0 differences$'
for seed in 1 2 18446744073709551615; do
  expect 0 "$good" '' $seed
done
expect 0 'trapToCpu  *"BGP server" trapPacket' ''
expect 0 'finalDropControl  *"access list denies and logs" dropCountAndLog' ''

program=$faulty
expect 0 "$good" ''
for FAULT in 'lost rule' 'other action' 'other parameters' 'extra rule' 'other default' 'other configuration' \
  'direct counter' 'indexed counter' 'meter'; do
  export FAULT
  expect 3 'result: DIFFERENT: .* [1-9][0-9]* differences\{0,1\}$' '^different: '
done
unset FAULT
export REFUSE_CALL
for REFUSE_CALL in 10 100 300 600; do
  expect 2 'result: the driver refused' 'adding [^ ]* ".*: the driver answers status 74 (STANDIN_FULL)'
done

[ $failures -eq 0 ]
