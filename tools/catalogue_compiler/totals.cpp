// Counts the catalogue and compares it with the stated numbers.
//
// SPDX-License-Identifier: Apache-2.0
#include "totals.h"

#include <algorithm>
#include <array>
#include <string>

namespace catalogue {

namespace {

template <class Rows, class Matches>
std::size_t count_rows(const Rows &rows, Matches matches)
{
  return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), matches));
}

template <class Matches>
std::size_t count_fields(const model &m, Matches matches)
{
  std::size_t n = 0;
  for (const table &t : m.tables) n += count_rows(t.fields, matches);
  return n;
}

template <table_kind kind>
std::size_t tables_of_kind(const model &m)
{
  return count_rows(m.tables, [](const table &t) { return t.kind == kind; });
}

template <match_kind kind>
std::size_t fields_of_kind(const model &m)
{
  return count_fields(m, [](const field &f) { return f.match == kind; });
}

std::size_t action_handles(const model &m)
{
  std::size_t n = 0;
  for (const table &t : m.tables) n += t.actions.size();
  for (const profile &p : m.profiles) n += p.actions.size();
  return n;
}

std::size_t add_pairs(const model &m)
{
  std::size_t n = 0;
  for (const table &t : m.tables) n += t.keyed() ? t.actions.size() : 0;
  return n;
}

std::size_t defaults(const model &m)
{
  std::size_t n = 0;
  for (const table &t : m.tables) n += count_rows(t.actions, [](const action_use &u) { return u.is_default; });
  return n;
}

std::size_t actions_with_parameters(const model &m)
{
  return count_rows(m.actions, [](const action &a) { return !a.params.empty(); });
}

std::size_t validity_fields(const model &m)
{
  return count_fields(m, [](const field &f) { return !f.header.empty(); });
}

std::size_t counters(const model &m)
{
  return count_rows(m.resources, [](const resource &r) { return r.kind == resource_kind::counter; });
}

std::size_t meters_and_wred(const model &m)
{
  return count_rows(m.resources,
                    [](const resource &r) { return r.kind == resource_kind::meter || r.kind == resource_kind::wred; });
}

std::size_t registers(const model &m)
{
  return count_rows(m.resources, [](const resource &r) { return r.kind == resource_kind::register_; });
}

std::size_t hash_inputs(const model &m)
{
  std::size_t n = 0;
  // A count of fields that is far off is told as such.
  for (const hash_calculation &h : m.hashes) n += h.fields < 32 ? (std::size_t{1} << h.fields) - 1 : 0;
  return n;
}

template <snapshot_direction direction>
std::size_t snapshot_fields(const model &m)
{
  const snapshot_layout *layout = m.find_snapshot_layout(direction);
  return layout == nullptr ? 0 : layout->fields.size();
}

std::size_t idle_time_tables(const model &m)
{
  return count_rows(m.tables, [](const table &t) { return t.idle_time; });
}

std::size_t labelled_tables(const model &m)
{
  return count_rows(m.tables, [](const table &t) { return t.labelled(); });
}

constexpr std::array counted{
    total{"tables", [](const model &m) { return m.tables.size(); }},
    total{"exact", tables_of_kind<table_kind::exact>},
    total{"ternary", tables_of_kind<table_kind::ternary>},
    total{"lpm", tables_of_kind<table_kind::lpm>},
    total{"keyless", tables_of_kind<table_kind::keyless>},
    total{"action_handles", action_handles},
    total{"actions", [](const model &m) { return m.actions.size(); }},
    total{"actions_with_parameters", actions_with_parameters},
    total{"add_pairs", add_pairs},
    total{"defaults", defaults},
    total{"fields", [](const model &m) { return count_fields(m, [](const field &) { return true; }); }},
    total{"masks", fields_of_kind<match_kind::ternary>},
    total{"prefixes", fields_of_kind<match_kind::lpm>},
    total{"validity_fields", validity_fields},
    total{"counters", counters},
    total{"meters_and_wred", meters_and_wred},
    total{"registers", registers},
    total{"hash_calculations", [](const model &m) { return m.hashes.size(); }},
    total{"hash_inputs", hash_inputs},
    total{"snapshot_ingress_fields", snapshot_fields<snapshot_direction::ingress>},
    total{"snapshot_egress_fields", snapshot_fields<snapshot_direction::egress>},
    total{"profiles", [](const model &m) { return m.profiles.size(); }},
    total{"idle_time_tables", idle_time_tables},
    total{"labelled_tables", labelled_tables},
};

}  // namespace

std::span<const total> all_totals() { return counted; }

stated_totals read_totals(const toml::table &node, row &file)
{
  row r(node, file, "totals", "");
  stated_totals stated;
  for (const total &t : all_totals()) stated.numbers.push_back(r.number(t.key));
  static_cast<origin &>(stated) = r.finish();
  return stated;
}

void check_totals(const model &m, const stated_totals &stated, diagnostics &diag)
{
  for (std::size_t i = 0; i < counted.size(); ++i) {
    const std::size_t found = counted[i].count(m);
    if (found == stated.numbers[i]) continue;
    diag.error(stated.of(counted[i].key), "totals: '" + std::string(counted[i].key) + "' is " +
                                              std::to_string(stated.numbers[i]) + ", but the rows make " +
                                              std::to_string(found));
  }
}

}  // namespace catalogue
