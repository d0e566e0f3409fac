// driver_compiler: turns the rows of the driver's functions into the C header, and into rows and definitions for C++.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <exception>

#include "driver_rows.h"

namespace {

enum exit_code { written = 0, bad_usage = 1, bad_rows = 5, cannot_write = 4 };

}  // namespace

int main(int argc, char **argv)
{
  if (argc != 4) {
    std::fprintf(stderr,
                 "usage: driver_compiler ROWS HEADER OUTPUT\n"
                 "Compiles the file ROWS into the folder OUTPUT; HEADER is the C header without its functions.\n"
                 "Exit codes: 0 written, 1 wrong usage, 4 a file cannot be written, 5 errors in the rows.\n");
    return bad_usage;
  }
  catalogue::diagnostics diag;
  const std::vector<driver_rows::group> groups = driver_rows::read(argv[1], diag);
  const catalogue::generated_file header = driver_rows::header(groups, argv[2], diag);
  if (diag.failed()) {
    for (const std::string &line : diag.lines()) std::fprintf(stderr, "%s\n", line.c_str());
    std::fprintf(stderr, "driver_compiler: %zu %s, nothing written\n", diag.lines().size(),
                 diag.lines().size() == 1 ? "error" : "errors");
    return bad_rows;
  }
  try {
    const std::filesystem::path output = argv[3];
    header.write(output / "include" / "tarvex_platform" / "driver.h");
    driver_rows::row_definitions(groups).write(output / "driver" / "driver_functions.h");
    driver_rows::function_definitions(groups, false).write(output / "driver" / "driver_definitions.inc");
    driver_rows::function_definitions(groups, true).write(output / "driver" / "driver_registers.inc");
  } catch (const std::exception &e) {
    std::fprintf(stderr, "driver_compiler: %s\n", e.what());
    return cannot_write;
  }
  return written;
}
