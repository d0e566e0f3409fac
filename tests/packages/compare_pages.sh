#!/bin/bash
# compare_pages.sh FOLDER: runs the programs of examples/pages that were built into a folder, and compares what each
# prints with what it ought to. Every page has to be there, and every program has to have its expected output.
# SPDX-License-Identifier: Apache-2.0
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
folder=${1:?"the folder of the programs is missing"}

failed=0
for source in "$here"/../../examples/pages/*.c; do
  page=$(basename "$source" .c)
  if ! "$folder/$page" | diff -u "$here/expected_pages/$page.txt" -; then
    printf '%s: not as expected, or an exit code that is not 0\n' "$page" >&2
    failed=$((failed + 1))
  fi
  "$folder/$page" >/dev/full 2>/dev/null
  if [ $? -ne 4 ]; then
    printf '%s: ends well though its output was lost\n' "$page" >&2
    failed=$((failed + 1))
  fi
done
((failed == 0))
