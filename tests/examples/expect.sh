# Sourced by the tests of example programs, with the program's path in $program: runs it and looks at what it says.
# Leaves the count of failures in $failures and a folder for files in $work.
#
# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=sh
failures=0
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT

# expect STATUS TEXT_OF_STDOUT TEXT_OF_STDERR ARGUMENT...: both texts as basic regular expressions; an empty one for
# standard error says that nothing may stand there.
expect() {
  status=$1 out=$2 err=$3
  shift 3
  "$program" "$@" >"$work/out" 2>"$work/err"
  got=$?
  if [ $got -ne "$status" ] || ! grep -q -e "$out" "$work/out" && [ -n "$out" ] ||
    { if [ -n "$err" ]; then ! grep -q -e "$err" "$work/err"; else [ -s "$work/err" ]; fi; }; then
    echo "FAILED: FAULT='$FAULT' REFUSE_CALL='$REFUSE_CALL' $program $*"
    echo "exit status $got, wanted $status, '$out' and '$err'"
    cat "$work/out" "$work/err"
    failures=$((failures + 1))
  fi
}
