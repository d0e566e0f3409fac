// Knows no table, field or action: all that it prints it has learned from the schema and value texts.
//
// SPDX-License-Identifier: Apache-2.0
#include "dumper.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>

#include "literal.h"
#include "program.h"
#include "switch_device.h"
#include "tarvex_pd/dispatch.h"

namespace tarvex::examples {
namespace {

/// Room for any text: a buffer's size is the caller's to know.
using text_room = std::array<char, 4096>;

// Handles count up from here; where one belongs to nothing, its schema is empty.
constexpr std::uint32_t first_table = 0x1000001, last_table = 0x1000fff;

/// A number of an entry: a field of the key, the mask or prefix length behind one, or a parameter.
struct column {
  std::string heading;
  std::string name;
  std::string display;  // how a person reads it; empty for plainly
  std::uint64_t bits = 0;
  std::string mask;  // its live bits, as digits; empty for all
};

struct action {
  std::string name;
  std::vector<column> parameters;
};

struct table {
  std::uint32_t handle = 0;
  std::string name;
  std::vector<column> key;
  std::vector<action> actions;
};

std::string hexadecimal(std::uint32_t handle)
{
  text_room text;
  return {text.data(), static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "0x%08x", handle))};
}

std::string text_or_nothing(const literal &word) { return word.is == literal::kind::none ? "" : word.string(); }

action read_action(const literal &from)
{
  const auto &pair = from.tuple_of(2);
  action read{pair[0].string(), {}};
  for (const literal &row : pair[1].tuple()) {
    const auto &columns = row.tuple_of(4);
    const std::string &name = columns[0].string();
    read.parameters.push_back({name, name, text_or_nothing(columns[1]), columns[2].number(), {}});
  }
  return read;
}

/// What a handle's schema says; nothing for a handle that is nobody's, and for a schema that nobody can read.
std::optional<table> read_schema(std::uint32_t handle, tally &compared)
try {
  text_room text;
  const auto length = static_cast<std::size_t>(p4_pd_tarvex_switch_cli_schema(handle, text.data()));
  const literal schema = parse_literal({text.data(), length});
  if (schema.tuple().empty()) return std::nullopt;
  const auto &parts = schema.tuple_of(3);
  table read{handle, parts[0].tuple_of(3)[0].string(), {}, {}};
  for (const literal &row : parts[1].tuple()) {
    const auto &columns = row.tuple_of(7);
    read.key.push_back({columns[0].string(), columns[1].string(), text_or_nothing(columns[4]), columns[2].number(),
                        columns[3].digits()});
  }
  for (const literal &each : parts[2].tuple()) read.actions.push_back(read_action(each));
  return read;
} catch (const literal_error &error) {
  compared.expect(false, [&] { return "schema of " + hexadecimal(handle) + ": " + error.what(); });
  return std::nullopt;
}

std::string address(const std::string &digits, std::size_t digits_each, char between)
{
  std::string text;
  for (std::size_t at = 0; at < digits.size(); at += digits_each) {
    if (at != 0) text += between;
    text += digits.substr(at, digits_each);
  }
  return text;
}

/// A number as a person reads it.
std::string shown(const literal &value, const column &column)
{
  const std::string digits = value.digits();
  const auto padded = [&](std::size_t count) {
    return std::string(count - std::min(count, digits.size()), '0') + digits;
  };
  if (column.display == "v6addr") return address(padded(32), 4, ':');
  if (column.display == "mac") return address(padded(6), 2, ':');
  if (column.display == "v4addr") {
    const std::uint64_t v = value.number();
    return std::to_string(v >> 24) + '.' + std::to_string(v >> 16 & 255) + '.' + std::to_string(v >> 8 & 255) + '.' +
           std::to_string(v & 255);
  }
  if (column.display == "dec" || column.display == "port") return std::to_string(value.number());
  return "0x" + digits;
}

/// A field and what stands behind it: the mask with which it counts, or the length of its prefix.
std::string shown(const literal &value, const column &column, const literal &behind, const struct column &behind_column)
{
  if (behind_column.name.ends_with("_prefix_length"))
    return shown(value, column) + '/' + std::to_string(behind.number());
  if (behind.digits() == "0") return "*";
  if (behind.digits() == column.mask) return shown(value, column);
  return shown(value, column) + "&0x" + behind.digits();
}

/// Whether the row behind a field belongs to it.
bool is_behind(const column &behind, const column &field)
{
  return behind.name == field.name + "_mask" || behind.name == field.name + "_prefix_length";
}

/// What an entry says, a cell for each heading of its table.
class entry_reader {
 public:
  entry_reader(const table &of, tally &compared) : table_(of), compared_(compared) {}

  std::vector<std::string> headings() const
  {
    std::vector<std::string> all = {"entry"};
    for (std::size_t i = 0; i < table_.key.size(); ++i) {
      if (i == 0 || !is_behind(table_.key[i], table_.key[i - 1])) all.push_back(table_.key[i].heading);
    }
    all.insert(all.end(), {"priority", "action"});
    return all;
  }

  std::vector<std::string> read(pd_entry_hdl_t entry, const std::string &text) const
  try {
    const literal whole = parse_literal(text);
    const auto &parts = whole.tuple_of(2);
    const auto &contents = parts[0].tuple();
    if (contents.empty()) throw literal_error("a key is wanted, not nothing");
    std::vector<std::string> cells = {hexadecimal(entry)};
    put_key(contents[0].tuple(), cells, entry);
    cells.push_back(parts[1].tuple_of(2)[0].text);
    cells.push_back(contents.size() > 1 ? told_action(contents[1], entry) : "-");
    return cells;
  } catch (const literal_error &error) {
    compared_.expect(false, [&] { return where(entry) + ": '" + text + "': " + error.what(); });
    return {hexadecimal(entry), "?"};
  }

 private:
  std::string where(pd_entry_hdl_t entry) const { return table_.name + ", entry " + hexadecimal(entry); }

  void put_key(const std::vector<literal> &values, std::vector<std::string> &cells, pd_entry_hdl_t entry) const
  {
    if (values.empty()) {
      cells.resize(headings().size() - 2, "any");
      return;
    }
    expect_fit(values, table_.key, entry);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const bool two = i + 1 < values.size() && is_behind(table_.key[i + 1], table_.key[i]);
      cells.push_back(two ? shown(values[i], table_.key[i], values[i + 1], table_.key[i + 1])
                          : shown(values[i], table_.key[i]));
      if (two) ++i;
    }
  }

  std::string told_action(const literal &from, pd_entry_hdl_t entry) const
  {
    const auto &pair = from.tuple_of(2);
    const auto found = std::ranges::find(table_.actions, pair[0].string(), &action::name);
    if (found == table_.actions.end()) throw literal_error("the table has no action '" + pair[0].string() + '\'');
    const auto &values = pair[1].tuple();
    expect_fit(values, found->parameters, entry);
    std::string text = found->name;
    for (std::size_t i = 0; i < values.size(); ++i)
      text += ' ' + found->parameters[i].name + '=' + shown(values[i], found->parameters[i]);
    return text;
  }

  /// Values and columns must be as many, and no value may have a digit more than its column.
  void expect_fit(const std::vector<literal> &values, const std::vector<column> &columns, pd_entry_hdl_t entry) const
  {
    if (values.size() != columns.size()) {
      throw literal_error(std::to_string(columns.size()) + " values are wanted, not " + std::to_string(values.size()));
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      compared_.expect(values[i].digits().size() <= (columns[i].bits + 3) / 4, [&] {
        return where(entry) + ": " + columns[i].name + " is " + values[i].text + ", more than " +
               std::to_string(columns[i].bits) + " bits";
      });
    }
  }

  const table &table_;
  tally &compared_;
};

void print_cells(const std::vector<std::vector<std::string>> &lines)
{
  std::vector<std::size_t> widths(lines[0].size());
  for (const auto &line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], line[i].size());
  }
  for (const auto &line : lines) {
    for (std::size_t i = 0; i + 1 < line.size(); ++i)
      std::printf("  %-*s", static_cast<int>(widths[i]), line[i].c_str());
    std::printf("  %s\n", line.back().c_str());
  }
}

std::string value_of(const table &of, pd_entry_hdl_t entry)
{
  text_room text;
  constexpr pd_flag8_t from_software = 0;
  const std::uint32_t length =
      p4_pd_tarvex_switch_entry_value(session, device_id, of.handle, entry, from_software, text.data());
  if (length == 0) throw driver_refused("reading entry " + hexadecimal(entry) + " of " + of.name + ": no text");
  return {text.data(), length};
}

/// Prints a table's entries, the default entry last; how many there are.
std::size_t dump_table(const table &of, tally &compared)
{
  auto entries = walk(
      of.name,
      [&](pd_entry_hdl_t *first) { return p4_pd_tarvex_switch_entry_hdl_first(session, all_pipes, of.handle, first); },
      [&](pd_entry_hdl_t last, std::uint32_t n, pd_entry_hdl_t *next) {
        return p4_pd_tarvex_switch_entry_hdl_next(session, all_pipes, of.handle, last, n, next);
      });
  pd_entry_hdl_t default_entry = 0;
  const pd_status_t status = p4_pd_tarvex_switch_entry_hdl_default(session, all_pipes, of.handle, &default_entry);
  if (status != STANDIN_NO_ENTRY) {
    must(status, [&] { return "asking for the default entry of " + of.name; });
    if (std::ranges::find(entries, default_entry) == entries.end()) entries.push_back(default_entry);
  }
  if (entries.empty()) return 0;
  std::printf("%s (%s), %zu %s\n", of.name.c_str(), hexadecimal(of.handle).c_str(), entries.size(),
              entries.size() == 1 ? "entry" : "entries");
  const entry_reader reader(of, compared);
  std::vector<std::vector<std::string>> lines = {reader.headings()};
  for (const pd_entry_hdl_t entry : entries) lines.push_back(reader.read(entry, value_of(of, entry)));
  print_cells(lines);
  return entries.size();
}

}  // namespace

std::string dump_switch(const std::optional<std::string> &only_table, tally &compared)
{
  std::size_t known = 0, filled = 0, entries = 0;
  for (std::uint32_t handle = first_table; handle <= last_table; ++handle) {
    const auto table = read_schema(handle, compared);
    if (!table || (only_table && table->name != *only_table)) continue;
    ++known;
    const std::size_t count = dump_table(*table, compared);
    entries += count;
    filled += count != 0 ? 1 : 0;
  }
  if (only_table && known == 0) throw usage_error("the switch has no table '" + *only_table + '\'');
  return counted(known, "table") + ", " + std::to_string(filled) + " with entries, " +
         counted(entries, "entry", "entries") + " printed";
}

}  // namespace tarvex::examples
