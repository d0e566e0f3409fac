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

# expect_every_program_to_end_well [ARGUMENT...]: what is the same for all programs. Run with these arguments the program
# prints something.
expect_every_program_to_end_well() {
  name=$(basename "$program")
  expect 0 "^usage: $name" '' --help
  expect 0 "^$name (tarvex_pd) [0-9]*\\.[0-9]*\\.[0-9]*\$" '' --version
  expect 1 '' "$name: there is no option '--bogus'" --bogus
  for each in '--help' '--version' "$*"; do
    # shellcheck disable=SC2086  # the arguments are words
    "$program" $each >/dev/full 2>"$work/err" </dev/null
    got=$?
    if [ $got -ne 4 ] || ! grep -q "^$name: standard output cannot be written" "$work/err"; then
      echo "FAILED: $program $each >/dev/full: exit status $got, wanted 4"
      cat "$work/err"
      failures=$((failures + 1))
    fi
  done
}

# expect_out_of_memory KIBIBYTES ARGUMENT...: the program with so little memory says so in a sentence. A sanitizer's
# program does not even start with it, and is left out.
expect_out_of_memory() {
  room=$1
  shift
  (ulimit -v "$room" && "$program" --version) >/dev/null 2>&1 || return 0
  (ulimit -v "$room" && exec "$program" "$@") >/dev/null 2>"$work/err"
  got=$?
  if [ $got -ne 7 ] || ! grep -q 'out of memory$\|no thread can be started' "$work/err"; then
    echo "FAILED: $program $* in $room KiB: exit status $got, wanted 7"
    cat "$work/err"
    failures=$((failures + 1))
  fi
}
