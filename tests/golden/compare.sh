#!/bin/bash
# Compares a checked-in list with what the build made, both ways.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail
export LC_ALL=C

usage="usage: compare.sh CHECKED-IN MADE | compare.sh CHECKED-IN --exports LIBRARY"
(($# == 2 || $# == 3)) || { echo "$usage" >&2; exit 2; }
checked_in=$1

made() {
  if [[ $1 == --exports ]]; then nm -D --defined-only --format=posix "$2" | cut -d ' ' -f 1 | sort; else cat "$1"; fi
}
if ! difference=$(diff "$checked_in" <(made "${@:2}")); then
  head -n 40 <<<"$difference"
  echo "'<' stands in $checked_in, '>' in the build. If the change is meant:"
  echo "  cmake --build BUILD-FOLDER --target accept_generated"
  exit 1
fi
