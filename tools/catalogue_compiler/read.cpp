// Reads a catalogue folder: what a file holds is told by its keys, not by its name.
//
// SPDX-License-Identifier: Apache-2.0
#include "read.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <system_error>

#include "checks.h"
#include "layout.h"
#include "readers.h"

namespace catalogue {

namespace {

struct catalogue_reader {
  diagnostics &diag;
  model made;
  std::optional<stated_totals> totals;

  void read_file(const std::filesystem::path &path, const std::string &shown);

 private:
  void read_rows(const toml::table &root, const std::string &stem, const std::string &shown);
};

void catalogue_reader::read_file(const std::filesystem::path &path, const std::string &shown)
{
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  if (!in || content.fail()) return diag.error({shown}, "cannot be read; check that it is a file and its permissions");
  try {
    read_rows(toml::parse(content.view(), shown), path.stem().string(), shown);
  } catch (const toml::parse_error &e) {
    const toml::source_position at = e.source().begin;
    diag.error({shown, static_cast<std::uint32_t>(at.line), static_cast<std::uint32_t>(at.column)},
               std::string(e.description()));
  }
}

void catalogue_reader::read_rows(const toml::table &root, const std::string &stem, const std::string &shown)
{
  row file(root, shown, diag);
  const std::size_t group = made.groups.size();
  file.each_extra("table", [&](const toml::table &node) {
    made.tables.push_back(read_table(node, file));
    made.tables.back().group = group;
  });
  file.each_extra("action", [&](const toml::table &node) {
    made.actions.push_back(read_action(node, file));
    made.actions.back().group = group;
  });
  if (file.has("table") || file.has("action")) made.groups.push_back({stem, file.text("title")});

  file.each_extra("profile", [&](const toml::table &node) { made.profiles.push_back(read_profile(node, file)); });
  constexpr word<resource_kind> resources[] = {{"counter", resource_kind::counter},
                                               {"meter", resource_kind::meter},
                                               {"wred", resource_kind::wred},
                                               {"register", resource_kind::register_}};
  for (const auto &[key, kind] : resources) {
    file.each_extra(key, [&, of = kind](const toml::table &node) {
      made.resources.push_back(read_resource(node, file, of));
    });
  }
  file.extra_table("totals", [&](const toml::table &node) {
    if (totals) return file.error("totals", "the totals stand in " + totals->at.file + " already");
    totals = read_totals(node, file);
  });
  if (!file.has("title") || !file.extra_text("title").empty()) file.finish();
}

std::vector<std::filesystem::path> catalogue_files(const std::filesystem::path &folder, std::error_code &failure)
{
  std::vector<std::filesystem::path> files;
  for (std::filesystem::directory_iterator i(folder, failure), end; !failure && i != end; i.increment(failure)) {
    if (i->path().extension() == ".toml") files.push_back(i->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

model read_catalogue(const std::filesystem::path &folder, diagnostics &diag)
{
  std::filesystem::path shown = folder.lexically_normal();
  if (!shown.has_filename()) shown = shown.parent_path();
  shown = shown.filename();

  std::error_code failure;
  const auto files = catalogue_files(folder, failure);
  if (failure) {
    diag.error({folder.string()}, "the catalogue folder cannot be read: " + failure.message());
  } else if (files.empty()) {
    diag.error({folder.string()}, "no .toml file in the catalogue folder");
  }

  catalogue_reader reader{diag, {}, {}};
  for (const auto &path : files) reader.read_file(path, (shown / path.filename()).string());
  const bool all_read = !diag.failed();

  model &m = reader.made;
  check_file_order(m, diag);
  sort_by_handle(m);
  check_rows(m, diag);
  lay_out(m, diag);
  // A row that could not be read would be missed in every total.
  if (all_read && reader.totals) check_totals(m, *reader.totals, diag);
  if (!diag.failed()) number_actions(m);
  return std::move(m);
}

}  // namespace catalogue
