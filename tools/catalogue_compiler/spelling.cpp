// SPDX-License-Identifier: Apache-2.0
#include "spelling.h"

#include <algorithm>

#include "generated_file.h"

namespace catalogue {

std::string live_mask_text(const field &f)
{
  std::string digits;
  for (const std::uint8_t b : f.live) digits += hex(0x100u | b).substr(3);
  return "0x" + digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1));
}

namespace {

std::string c_type(storage s)
{
  switch (s) {
    case storage::u8: return "uint8_t";
    case storage::u16: return "uint16_t";
    case storage::u32: return "uint32_t";
    default: return "uint8_t";
  }
}

std::string extent(storage s) { return s == storage::bytes16 ? "[16]" : ""; }

/// Room between two members that has no name of its own. Padding that alignment gives is left to the compiler.
void add_room(std::vector<member> &to, unsigned end, unsigned offset)
{
  if (offset > end)
    to.push_back({"uint8_t", "reserved_" + std::to_string(end) + "[" + std::to_string(offset - end) + "]", end,
                  offset - end, "not read; a read clears it"});
}

unsigned end_of(const std::vector<member> &members)
{
  return members.empty() ? 0 : members.back().offset + members.back().size;
}

unsigned aligned(unsigned end, unsigned alignment) { return (end + alignment - 1) / alignment * alignment; }

std::string bits_text(unsigned bits) { return bits == 1 ? "1 bit" : std::to_string(bits) + " bits"; }

std::string field_comment(const field &f)
{
  std::string text = bits_text(f.bits);
  if (!f.live_all) text += ", live " + live_mask_text(f);
  if (f.key.partition) text += ", the partition";
  if (f.type == storage::bytes16) text += ", network order";
  return text;
}

}  // namespace

bool is_direct(const resource &r) { return r.direct && r.kind != resource_kind::register_; }

match_kind match_of(const field &f) { return f.key.partition ? match_kind::partition : f.match; }

std::string offset_of(const std::string &type, const std::string &name)
{
  return name.empty() ? "0" : "offsetof(" + type + ", " + name + ")";
}

std::string member_name(const parameter &p) { return "action_" + p.name; }

std::string companion_name(const field &f)
{
  if (f.match == match_kind::ternary) return f.name + "_mask";
  if (f.match == match_kind::lpm) return f.name + "_prefix_length";
  return {};
}

std::vector<member> key_members(const table &t)
{
  std::vector<member> all;
  unsigned alignment = 1;
  for (const std::size_t i : t.members) {
    const field &f = t.fields[i];
    if (f.room > 0) add_room(all, end_of(all), f.offset);
    alignment = std::max(alignment, storage_align(f.type));
    all.push_back({c_type(f.type), f.name + extent(f.type), f.offset, storage_size(f.type), field_comment(f)});
    if (f.match == match_kind::ternary) {
      all.push_back({c_type(f.type), companion_name(f) + extent(f.type), f.companion_offset, storage_size(f.type),
                     "its bits that count; 0 for anything"});
    } else if (f.match == match_kind::lpm) {
      alignment = std::max(alignment, 2u);
      all.push_back({"uint16_t", companion_name(f), f.companion_offset, 2, "from the most significant bit"});
    }
  }
  if (aligned(end_of(all), alignment) != t.record_size) add_room(all, end_of(all), t.record_size);
  return all;
}

std::vector<member> param_members(const action &a)
{
  std::vector<member> all;
  unsigned alignment = 1;
  for (const parameter &p : a.params) {
    if (p.room > 0) add_room(all, end_of(all), p.offset);
    alignment = std::max(alignment, storage_align(p.type));
    all.push_back({c_type(p.type), member_name(p) + extent(p.type), p.offset, storage_size(p.type),
                   p.resource_index ? "index of the resource" : bits_text(p.bits)});
  }
  if (aligned(end_of(all), alignment) != a.record_size) add_room(all, end_of(all), a.record_size);
  return all;
}

std::string field_row(const snapshot_field &f)
{
  return "{\"" + f.name + "\", " + std::to_string(f.offset) + ", " + std::to_string(f.size) + "}";
}

std::string_view c_result(result_kind kind)
{
  switch (kind) {
    case result_kind::status: return "pd_status_t ";
    case result_kind::none: return "void ";
    case result_kind::number: return "uint32_t ";
    case result_kind::pointer: return "void *";
    case result_kind::count: return "int32_t ";
    case result_kind::truth: return "uint8_t ";
    default: return "const char *";
  }
}

std::vector<std::string> declarations(const exported_function &f)
{
  if (f.arguments.empty()) return {"void"};
  std::vector<std::string> all;
  for (const argument &a : f.arguments) all.push_back(a.declaration());
  return all;
}

std::string argument_list(const exported_function &f)
{
  std::string list;
  for (const std::string &one : declarations(f)) list += (list.empty() ? "" : ", ") + one;
  return list;
}

}  // namespace catalogue
