# Fills the names between at-signs in a file: cmake -Dfrom=... -Dto=... -DNAME=VALUE... -P fill_in.cmake
# SPDX-License-Identifier: Apache-2.0
configure_file(${from} ${to} @ONLY)
