// Reads a catalogue folder: what a file holds is told by its keys, not by its name.
//
// SPDX-License-Identifier: Apache-2.0
#include "read.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "checks.h"
#include "layout.h"
#include "ordering.h"
#include "read_rows.h"
#include "totals.h"

namespace catalogue {

namespace {

struct catalogue_reader {
  diagnostics &diag;
  model made;
  std::optional<stated_totals> totals;
  bool files_read = true;

  void read_file(const std::filesystem::path &path);

 private:
  void read_rows(const toml::table &root, const std::string &stem, const std::string &shown);
};

void catalogue_reader::read_file(const std::filesystem::path &path)
{
  if (const std::optional<toml::table> root = parse_file(path, diag)) {
    read_rows(*root, path.stem().string(), path.string());
  } else {
    files_read = false;
  }
}

void catalogue_reader::read_rows(const toml::table &root, const std::string &stem, const std::string &shown)
{
  row file(root, shown, diag);
  const bool is_group = file.has("table") || file.has("action");
  const std::string title = is_group ? file.text("title") : file.extra_text("title");
  if (is_group) made.groups.push_back({stem, title});
  file.extra_table("pipeline", [&](const toml::table &node) {
    if (!made.pipeline.at.file.empty())
      file.error("pipeline", "the pipeline is named in " + made.pipeline.at.file + " already");
    made.pipeline = read_pipeline(node, file);
  });
  file.each_extra("table", [&](const toml::table &node) {
    made.tables.push_back(read_table(node, file));
    made.tables.back().group = made.groups.size() - 1;
  });
  file.each_extra("action", [&](const toml::table &node) {
    made.actions.push_back(read_action(node, file));
    made.actions.back().group = made.groups.size() - 1;
  });
  file.each_extra("profile", [&](const toml::table &node) { made.profiles.push_back(read_profile(node, file)); });
  for (const resource_kind kind :
       {resource_kind::counter, resource_kind::meter, resource_kind::wred, resource_kind::register_}) {
    file.each_extra(word_of(kind),
                    [&](const toml::table &node) { made.resources.push_back(read_resource(node, file, kind)); });
  }
  file.each_extra("hash_calculation",
                  [&](const toml::table &node) { made.hashes.push_back(read_hash_calculation(node, file)); });
  file.each_extra("digest", [&](const toml::table &node) { made.digests.push_back(read_digest(node, file)); });
  file.each_extra("value_set", [&](const toml::table &node) { made.value_sets.push_back(read_value_set(node, file)); });
  file.each_extra("snapshot_layout",
                  [&](const toml::table &node) { made.snapshot_layouts.push_back(read_snapshot_layout(node, file)); });
  file.extra_table("totals", [&](const toml::table &node) {
    if (totals) return file.error("totals", "the totals stand in " + totals->at.file + " already");
    totals = read_totals(node, file);
  });
  file.finish();
}

/// Whether every row is known by its name, and every table by its handle, so that what is missing is missing indeed.
bool all_rows_known(const model &m)
{
  const auto named = [](const auto &row) { return !row.name.empty(); };
  const auto all_named = [&](const auto &rows) { return std::all_of(rows.begin(), rows.end(), named); };
  const auto names_its_actions = [&](const auto &owner) { return named(owner) && all_named(owner.actions); };
  return std::all_of(m.tables.begin(), m.tables.end(),
                     [&](const table &t) { return t.handle != 0 && names_its_actions(t); }) &&
         std::all_of(m.profiles.begin(), m.profiles.end(), names_its_actions) && all_named(m.actions) &&
         all_named(m.resources);
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
  std::error_code failure;
  const auto files = catalogue_files(folder, failure);
  const position whole{folder.string()};
  if (failure) {
    diag.error(whole, "the catalogue folder cannot be read: " + failure.message());
    return {};
  }
  if (files.empty()) {
    diag.error(whole, "no .toml file in the catalogue folder");
    return {};
  }

  catalogue_reader reader{diag, {}, {}};
  for (const auto &path : files) reader.read_file(path);
  const bool rows_read = !diag.failed();

  model &m = reader.made;
  check_file_order(m, diag);
  sort_all(m);
  lay_out(m, diag);
  check_names(m, diag);
  check_handles(m, diag);
  check_keys(m, diag);
  check_parameters(m, diag);
  check_hashes(m, diag);
  check_snapshot_fields(m, diag);
  check_services(m, diag);
  check_labels(m, diag);
  check_halves(m, diag);
  if (reader.files_read && all_rows_known(m)) {
    check_action_order(m, diag);
    check_action_uses(m, diag);
    check_resources(m, diag);
    check_profiles(m, diag);
  }
  // A row that could not be read would be missed in every total.
  if (rows_read) {
    if (m.pipeline.at.file.empty()) diag.error(whole, "no file names the pipeline; add a [pipeline] table");
    if (m.tables.empty()) diag.error(whole, "no file holds a [[table]]; a pipeline has one at least");
    if (reader.totals) {
      check_totals(m, *reader.totals, diag);
    } else {
      diag.error(whole, "no file states the totals; add a [totals] table");
    }
  }
  if (!diag.failed()) number_actions(m);
  return std::move(m);
}

}  // namespace catalogue
