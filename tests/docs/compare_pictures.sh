#!/bin/bash
# compare_pictures.sh PYTHON REPOSITORY: draws the pictures of the documents again and compares them.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail
python=$1 repository=$2
drawn=$(mktemp -d)
trap 'rm -rf "$drawn"' EXIT
"$python" "$repository/tools/docs/draw_pictures.py" "$drawn"
diff -r "$repository/docs/pictures" "$drawn" ||
  { printf 'the pictures are not those of the catalogue: cmake --build ... --target pictures draws them\n'; exit 1; }
