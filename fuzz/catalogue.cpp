// Catalogue rows of any text, as one more file of a small catalogue, or with totals of its own as the only one: every
// mistake is told at its place, or all files are written.
//
// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>

#include "emit.h"
#include "read.h"
#include "require.h"

namespace tarvex::fuzz {

namespace {

namespace fs = std::filesystem;

// Two catalogues and what is made of them, in memory, for as long as the process lives.
struct work_folder {
  work_folder() : home("/dev/shm/tarvex_fuzz_catalogue_" + std::to_string(getpid()))
  {
    fs::create_directories(home / "alone");
    fs::copy(BASE_CATALOGUE, home / "with_others");
  }
  work_folder(const work_folder &) = delete;
  work_folder &operator=(const work_folder &) = delete;
  ~work_folder() { fs::remove_all(home); }

  const fs::path home;
};

// "FOLDER/FILE.toml:LINE:COLUMN: error: WORDS", or without numbers where a whole file or the folder is meant.
bool is_at_a_place(std::string_view line, std::string_view folder)
{
  const auto mark = line.find(": error: ");
  if (!line.starts_with(folder) || mark == line.npos || mark + 9 == line.size()) return false;
  const std::string_view place = line.substr(folder.size(), mark - folder.size());
  for (const char each : place.substr(std::min(place.find(':'), place.size())))
    if (each != ':' && std::isdigit(static_cast<unsigned char>(each)) == 0) return false;
  return true;
}

void compile(const fs::path &folder, const fs::path &output)
{
  catalogue::diagnostics told;
  const catalogue::model m = catalogue::read_catalogue(folder, told);
  for (const std::string &line : told.lines())
    require(is_at_a_place(line, folder.string()), "an error stands at its place", line,
            "FILE:LINE:COLUMN: error: WORDS");
  if (told.failed()) return;
  const catalogue::functions all = catalogue::list_functions(m);
  catalogue::emit_public_headers(m, all, output / "include" / "tarvex_pd");
  catalogue::emit_library_sources(m, all, output);
  catalogue::emit_snapshot_fields(m, output);
  catalogue::emit_call_table(m, all, output);
  catalogue::emit_rows(m, output);
  catalogue::emit_description(m, output);
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  static const tarvex::fuzz::work_folder work;
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  const auto folder = work.home / (text.find("[totals]") != text.npos ? "alone" : "with_others");
  std::ofstream(folder / "rows.toml", std::ios::binary) << text;
  tarvex::fuzz::compile(folder, work.home / "output");
  return 0;
}
