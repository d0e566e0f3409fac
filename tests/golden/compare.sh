#!/bin/bash
# Compares a checked-in list with what the build made, both ways.
# SPDX-License-Identifier: Apache-2.0
set -euo pipefail

(($# == 2)) || { echo "usage: compare.sh CHECKED-IN MADE" >&2; exit 2; }
if ! difference=$(diff "$1" "$2" 2>&1); then
  head -n 40 <<<"$difference"
  echo "'<' stands in $1, '>' in the build. If the change is meant:"
  echo "  cmake --build BUILD-FOLDER --target accept_generated"
  exit 1
fi
