// catalogue_compiler: turns the rows of the catalogue into the public headers, the library's descriptors and exported
// functions, and the tables for tools and tests.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <exception>

#include "emit.h"
#include "read.h"

namespace {

enum exit_code { written = 0, bad_usage = 1, bad_catalogue = 2, cannot_write = 3 };

}  // namespace

int main(int argc, char **argv)
{
  if (argc != 3) {
    std::fprintf(stderr,
                 "usage: catalogue_compiler CATALOGUE OUTPUT\n"
                 "Compiles the rows of the folder CATALOGUE into the folder OUTPUT.\n"
                 "Exit codes: 0 written, 1 wrong usage, 2 errors in the catalogue, 3 a file cannot be written.\n");
    return bad_usage;
  }
  catalogue::diagnostics diag;
  const catalogue::model m = catalogue::read_catalogue(argv[1], diag);
  if (diag.failed()) {
    for (const std::string &line : diag.lines()) std::fprintf(stderr, "%s\n", line.c_str());
    std::fprintf(stderr, "catalogue_compiler: %zu errors, nothing written\n", diag.lines().size());
    return bad_catalogue;
  }
  try {
    const std::filesystem::path output = argv[2];
    const catalogue::functions all = catalogue::list_functions(m);
    catalogue::emit_public_headers(m, all, output / "include" / "tarvex_pd");
    catalogue::emit_library_sources(m, all, output);
    catalogue::emit_snapshot_fields(m, output);
    catalogue::emit_call_table(m, all, output);
    catalogue::emit_pipeline_rows(m, output);
    catalogue::emit_description(m, output);
  } catch (const std::exception &e) {
    std::fprintf(stderr, "catalogue_compiler: %s\n", e.what());
    return cannot_write;
  }
  return written;
}
