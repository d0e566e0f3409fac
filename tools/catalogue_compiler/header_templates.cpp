// Public headers that are written by hand but for what follows from the pipeline: "@prefix@" and the like stand there
// for it.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "emit.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

/// Bytes of field data that the driver keeps behind the fields of a snapshot.
constexpr unsigned bytes_behind_fields = 22;
/// Of the driver's own capture records.
constexpr unsigned control_bytes = 3664, captures = 12;

using values = std::map<std::string, std::string, std::less<>>;

/// "MAC_LEARNING_DIGEST" for "macLearningDigest".
std::string macro_name(std::string_view name)
{
  std::string made;
  for (const char c : name) {
    const bool capital = c >= 'A' && c <= 'Z';
    if (capital && !made.empty() && made.back() != '_') made += '_';
    made += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  return made;
}

std::string digests(const model &m, const functions &all)
{
  generated_file to;
  for (const digest &d : m.digests) {
    to.paragraph("/** ", " * ", "Bytes of one entry of the digest \"" + d.name + "\", its fields back to back. */");
    to.line("#define ", macro_prefix(), macro_name(d.name), "_ENTRY_SIZE ", to_string(d.entry_bytes)).line();
    to.line("/** By what the driver names the digest. */");
    to.line("#define ", macro_prefix(), macro_name(d.name), "_HANDLE ", hex(d.handle), "u").line();
  }
  for (const exported_function *f : functions_of_digests(all)) prototype(to, *f);
  return to.text();
}

std::string value_sets(const functions &all)
{
  generated_file to;
  for (const exported_function *f : functions_of_value_sets(all)) prototype(to, *f);
  return to.text();
}

values values_of(const model &m, const functions &all)
{
  std::size_t longest = 0;
  for (const action &a : m.actions) longest = std::max(longest, export_prefix.size() + a.name.size());
  const auto bytes_of = [&](snapshot_direction direction) {
    const snapshot_layout *layout = m.find_snapshot_layout(direction);
    return layout == nullptr ? 0 : layout->bytes;
  };
  const unsigned ingress = bytes_of(snapshot_direction::ingress), egress = bytes_of(snapshot_direction::egress);
  const unsigned field_bytes = std::max(ingress, egress) + bytes_behind_fields;
  return {{"prefix", export_prefix},
          {"PREFIX", macro_prefix()},
          {"client", m.pipeline.client},
          {"action_count", to_string(m.actions.size())},
          {"action_name_size", to_string(longest + 1)},
          {"ingress_bytes", to_string(ingress)},
          {"egress_bytes", to_string(egress)},
          {"field_bytes", to_string(field_bytes)},
          {"egress_field_bytes", to_string(egress + bytes_behind_fields)},
          {"control_bytes", to_string(control_bytes)},
          {"captures", to_string(captures)},
          {"capture_area_bytes", to_string(captures * (control_bytes + field_bytes))},
          {"digests", digests(m, all)},
          {"value_sets", value_sets(all)}};
}

/// Every "@name@" with its value; what is many lines stands in a line of its own.
std::string filled(std::string_view text, const values &by_name, const std::string &path)
{
  std::string made;
  for (std::size_t at = 0;;) {
    const std::size_t begin = text.find('@', at);
    made += text.substr(at, begin - at);
    if (begin == std::string_view::npos) return made;
    const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", begin + 1);
    if (end == std::string_view::npos || text[end] != '@' || end == begin + 1) {
      made += '@';  // of a comment: "@param"
      at = begin + 1;
      continue;
    }
    const std::string_view name = text.substr(begin + 1, end - begin - 1);
    const auto value = by_name.find(name);
    if (value == by_name.end()) throw std::runtime_error(path + ": nothing is called '@" + std::string(name) + "@'");
    made += value->second;
    at = end + 1;
    if (value->second.empty() || value->second.back() == '\n') at += text.substr(at).starts_with('\n') ? 1 : 0;
  }
}

}  // namespace

std::span<const std::string_view> fixed_headers()
{
  static constexpr std::string_view names[] = {"lifecycle",       "learning_digest", "parser_value_set", "meter_access",
                                               "register_access", "hash_access",     "snapshots",        "dispatch"};
  return names;
}

void fill_header_templates(const model &m, const functions &all, const std::filesystem::path &templates,
                           const std::filesystem::path &folder)
{
  const values by_name = values_of(m, all);
  for (const std::string_view name : fixed_headers()) {
    const std::filesystem::path path = templates / (std::string(name) + ".h.in");
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in.is_open() || !text) throw std::runtime_error(path.string() + ": cannot be read");
    generated_file to;
    to.add(filled(text.view(), by_name, path.string()));
    to.write(folder / (std::string(name) + ".h"));
  }
}

}  // namespace catalogue
