// catalogue_compiler: turns the rows of the catalogue into the public headers, the library's descriptors and exported
// functions, and the tables for tools and tests.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <exception>
#include <new>
#include <string_view>

#include "emit.h"
#include "read.h"
#include "tarvex_pd/version.h"

namespace {

enum exit_code { written = 0, wrong_use = 1, file_failed = 4, bad_catalogue = 5, out_of_memory = 7 };

constexpr char usage[] =
    "usage: catalogue_compiler CATALOGUE TEMPLATES OUTPUT | --help | --version\n"
    "Compiles the rows of the folder CATALOGUE, and the templates of headers in the folder TEMPLATES, into the folder\n"
    "OUTPUT.\n"
    "\n"
    "Exit status:\n"
    "  0  done, and as expected\n"
    "  1  wrong use\n"
    "  4  a file, a socket or the output failed\n"
    "  5  bad input, nothing was done\n"
    "  7  out of memory\n";

int output_written() { return std::fflush(stdout) == 0 ? written : file_failed; }

}  // namespace

int main(int argc, char **argv)
{
  const std::string_view option = argc == 2 ? argv[1] : "";
  if (option == "--help" || option == "--version") {
    std::fputs(option == "--help" ? usage : "catalogue_compiler (tarvex_pd) " TARVEX_VERSION "\n", stdout);
    return output_written();
  }
  if (argc != 4) {
    std::fputs(usage, stderr);
    return wrong_use;
  }
  catalogue::diagnostics diag;
  const catalogue::model m = catalogue::read_catalogue(argv[1], diag);
  if (diag.failed()) {
    for (const std::string &line : diag.lines()) std::fprintf(stderr, "%s\n", line.c_str());
    std::fprintf(stderr, "catalogue_compiler: %zu %s, nothing written\n", diag.lines().size(),
                 diag.lines().size() == 1 ? "error" : "errors");
    return bad_catalogue;
  }
  try {
    const std::filesystem::path output = argv[3];
    const catalogue::functions all = catalogue::list_functions(m);
    catalogue::fill_header_templates(m, all, argv[2], output / "include" / "tarvex_pd");
    catalogue::emit_public_headers(m, all, output / "include" / "tarvex_pd");
    catalogue::emit_library_sources(m, all, output);
    catalogue::emit_forwarders(all, output);
    catalogue::emit_services(m, all, output);
    catalogue::emit_snapshot_fields(m, output);
    catalogue::emit_call_table(m, all, output);
    catalogue::emit_rows(m, output);
    catalogue::emit_description(m, output);
  } catch (const std::bad_alloc &) {
    std::fputs("catalogue_compiler: out of memory\n", stderr);
    return out_of_memory;
  } catch (const std::exception &e) {
    std::fprintf(stderr, "catalogue_compiler: %s\n", e.what());
    return file_failed;
  }
  return written;
}
