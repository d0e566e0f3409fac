# What the scripts share; sourced, not run.
# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash

repository=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
script_name=$(basename "$0")
jobs=$(nproc)
# shellcheck disable=SC2034  # read by the scripts that source this
full_route_list=$repository/build/routes/ipasn6_20151101.dat.gz
# shellcheck disable=SC2034
small_route_list=$repository/data/routes_small.txt.gz

say() { printf '%s\n' "$*"; }

fail() {
  printf '%s: error: %s\n' "$script_name" "$*" >&2
  exit 1
}

# takes_no_arguments ARGUMENT...: for scripts without options; standard input is the text for --help.
takes_no_arguments() {
  (($# > 0)) || return 0
  if [[ $1 == --help ]]; then
    cat
    exit 0
  fi
  cat >&2
  fail "unknown argument '$1'"
}

no_server='Temporary failure resolving|Could not resolve|Could not connect to|Cannot initiate the connection'

# lacks_network LOG: whether a log of apt says that no server was reached.
lacks_network() {
  grep -qE "$no_server" "$1"
}

# watch LOG WHAT: shows how far a command has come that writes into a log, until it is killed: a moving line on a
# terminal, a line every half minute elsewhere.
watch() {
  local log=$1 what=$2 from=$SECONDS every=30 last tick
  [[ ! -t 1 ]] || every=1
  exec {tick}<> <(:)  # nothing ever comes from there; a sleep would outlive this
  while read -rt "$every" -u "$tick"; (($? > 128)) && kill -0 $$ 2>/dev/null; do
    last=$(tail -c 4096 "$log" | tr '\r' '\n' |
      grep -oE '^\[[0-9]+/[0-9]+\]|^(Get:[0-9]+|Unpacking|Setting up) .*' | tail -n 1 | cut -c 1-60) || last=
    if [[ -t 1 ]]; then
      printf '\r\033[K%s: %s %d s' "$what" "$last" $((SECONDS - from))
    else
      say "$what: ${last:-at work} after $((SECONDS - from)) s"
    fi
  done
}

# quietly LOG WHAT COMMAND...: runs a command into a log file; the user sees how far it is, and the log only if it
# fails.
quietly() {
  local log=$1 what=$2 from=$SECONDS status=0 watcher
  shift 2
  mkdir -p "$(dirname "$log")"
  : >"$log"
  watch "$log" "$what" </dev/null &
  watcher=$!
  "$@" >"$log" 2>&1 </dev/null || status=$?
  kill "$watcher" 2>/dev/null || true
  wait "$watcher" 2>/dev/null || true
  [[ ! -t 1 ]] || printf '\r\033[K'
  if ((status != 0)) && lacks_network "$log"; then
    printf '%s: %s failed: the Debian archive cannot be reached; is there a network? (%s)\n' \
      "$script_name" "$what" "$log" >&2
    return "$status"
  fi
  if ((status != 0)); then
    printf '%s: %s failed (exit code %d); the end of %s:\n' "$script_name" "$what" "$status" "$log" >&2
    tail -n 60 "$log" | sed 's/^/  | /' >&2
    return "$status"
  fi
  say "$what: done in $((SECONDS - from)) s"
}

# packages_of GROUP LIST: the packages of a group of scripts/packages.txt, one a line.
packages_of() {
  awk -v group="[$1]" '{ sub(/#.*/, "") } /^\[/ { inside = $1 == group; next } inside && NF { print $1 }' "$2"
}

# wrapper_of PRESET: what its programs are started under. The thread sanitizer wants memory where it has always been,
# which a kernel that scatters it widely denies.
wrapper_of() {
  if [[ $1 == tsan ]] && setarch -R true 2>/dev/null; then
    printf 'setarch\n-R\n'
  fi
}

# build_preset PRESET [TARGET [CMAKE-ARGUMENT...]]: configures a preset and builds a target of it, 'all' by default.
build_preset() {
  local preset=$1 target=${2:-all} folder=$repository/build/$1 wrapper
  shift $(($# < 2 ? $# : 2))
  mapfile -t wrapper < <(wrapper_of "$preset")
  quietly "$folder/configure.log" "configure $preset" cmake -S "$repository" --preset "$preset" "$@" || return
  quietly "$folder/build.log" "build $preset" \
    "${wrapper[@]}" cmake --build "$folder" --target "$target" -j "$jobs"
}

# test_preset PRESET: runs a preset's tests; sets tests_passed and tests_failed. Fails if a test failed or none ran.
test_preset() {
  local preset=$1 folder=$repository/build/$1 wrapper status=0 head from=$SECONDS
  tests_passed=0 tests_failed=0
  mapfile -t wrapper < <(wrapper_of "$preset")
  rm -f "$folder/tests.xml"
  (cd "$repository" && "${wrapper[@]}" ctest --preset "$preset" -j "$jobs" --output-junit "$folder/tests.xml") \
    >"$folder/tests.log" 2>&1 </dev/null || status=$?
  head=$(tr -s '[:space:]' ' ' <"$folder/tests.xml" 2>/dev/null | grep -o '<testsuite [^>]*>' | head -n 1) || true
  count_of() {
    local count
    count=$(sed -n "s/.* $1=\"\([0-9]*\)\".*/\1/p" <<<"$head")
    printf '%d' "${count:-0}"
  }
  local skipped=$(($(count_of skipped) + $(count_of disabled)))
  tests_failed=$(count_of failures)
  tests_passed=$(($(count_of tests) - tests_failed - skipped))
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
  say "test $preset: done in $((SECONDS - from)) s"
  ((skipped == 0)) || say "test $preset: $skipped skipped; $folder/tests.log tells which"
  ((tests_failed == 0))
}
