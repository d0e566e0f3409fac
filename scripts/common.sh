# What the scripts share; sourced, not run.
# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash

repository=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
script_name=$(basename "$0")
jobs=$(nproc)

say() { printf '%s\n' "$*"; }

fail() {
  printf '%s: error: %s\n' "$script_name" "$*" >&2
  exit 1
}

# quietly LOG WHAT COMMAND...: runs a command into a log file; the user meets the log only if it fails.
quietly() {
  local log=$1 what=$2 from=$SECONDS status=0
  shift 2
  mkdir -p "$(dirname "$log")"
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if ((status != 0)); then
    printf '%s: %s failed (exit code %d); the end of %s:\n' "$script_name" "$what" "$status" "$log" >&2
    tail -n 60 "$log" | sed 's/^/  | /' >&2
    return "$status"
  fi
  say "$what: done in $((SECONDS - from)) s"
}

# build_preset PRESET CMAKE-ARGUMENT...: configures and builds everything of a preset.
build_preset() {
  local preset=$1 folder=$repository/build/$1
  shift
  quietly "$folder/configure.log" "configure $preset" \
    cmake -S "$repository" --preset "$preset" -Wno-dev "$@" || return
  quietly "$folder/build.log" "build $preset" cmake --build "$folder" -j "$jobs"
}

# test_preset PRESET [WRAPPER...]: runs a preset's tests, prints a line that counts them, fails if one failed or
# none ran.
test_preset() {
  local preset=$1 folder=$repository/build/$1 status=0 head
  shift
  rm -f "$folder/tests.xml"
  "$@" ctest --test-dir "$folder" -j "$jobs" --output-on-failure --output-junit "$folder/tests.xml" \
    >"$folder/tests.log" 2>&1 </dev/null || status=$?
  head=$(tr '\n' ' ' <"$folder/tests.xml" 2>/dev/null | grep -o '<testsuite [^>]*>' | head -n 1) || true
  count_of() { sed -n "s/.* $1=\"\([0-9]*\)\".*/\1/p" <<<"$head"; }
  tests_failed=$(count_of failures) tests_skipped=$(($(count_of skipped) + $(count_of disabled)))
  tests_passed=$(($(count_of tests) - ${tests_failed:=0} - tests_skipped))
  if ((status != 0 || tests_failed > 0)); then
    # The failing tests with their output, not the hundreds that passed.
    grep -vE '^ *(Start +[0-9]+:|[0-9]+/[0-9]+ Test +#[0-9]+:.* (Passed|\*+Skipped) )' "$folder/tests.log" |
      tail -n 150 | sed 's/^/  | /' >&2
    printf '%s: the whole output is in %s\n' "$script_name" "$folder/tests.log" >&2
    ((tests_failed > 0)) || tests_failed=1
  elif ((tests_passed == 0)); then
    printf '%s: no test ran in %s\n' "$script_name" "$folder" >&2
    tests_failed=1
  fi
  local skipped=
  ((tests_skipped == 0)) || skipped=", $tests_skipped skipped"
  say "$tests_passed passed, $tests_failed failed$skipped"
  ((tests_failed == 0))
}
