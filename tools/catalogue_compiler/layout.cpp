// Structures as a C compiler lays them out, with the room that rows ask for.
//
// SPDX-License-Identifier: Apache-2.0
#include "layout.h"

#include <algorithm>
#include <cstdint>

namespace catalogue {

namespace {

/// Offsets and sizes of structures are held in 16 bits.
constexpr std::uint64_t longest_record = 0xffff;

/// A structure as its members are laid down.
class record {
 public:
  /// Returns the offset of the member; `room` bytes stand ahead of it.
  unsigned add(unsigned size, unsigned align, unsigned room)
  {
    end_ = aligned(end_ + room, align);
    align_ = std::max(align_, align);
    const auto offset = static_cast<unsigned>(end_);
    end_ += size;
    return offset;
  }

  /// The whole length: what is stated, or else what the members make.
  unsigned close(unsigned stated, const subject &s) const
  {
    const std::uint64_t made = aligned(end_, align_);
    if (std::max<std::uint64_t>(made, stated) > longest_record) {
      s.error("record_bytes", "the structure is longer than " + std::to_string(longest_record) + " bytes");
    } else if (stated != 0 && stated < made) {
      s.error("record_bytes",
              "'record_bytes' is " + std::to_string(stated) + ", but the members take " + std::to_string(made));
    } else if (stated == made && stated != 0) {
      s.error("record_bytes", "'record_bytes' is what the members make; leave it out");
    } else if (stated % align_ != 0) {
      s.error("record_bytes", "'record_bytes' is " + std::to_string(stated) + ", not a multiple of the alignment " +
                                  std::to_string(align_));
    }
    return stated != 0 ? stated : static_cast<unsigned>(made);
  }

 private:
  static std::uint64_t aligned(std::uint64_t offset, unsigned align) { return (offset + align - 1) / align * align; }

  std::uint64_t end_ = 0;
  unsigned align_ = 1;
};

std::vector<std::size_t> key_order(const table &t)
{
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < t.fields.size(); ++i) order.push_back(i);
  return order;
}

/// The fields in the order of the structure, which is the key's unless the table states another.
std::vector<std::size_t> member_order(const table &t, const subject &s)
{
  if (t.record_order.empty()) return key_order(t);
  std::vector<std::size_t> order;
  std::vector<bool> placed(t.fields.size());
  for (const std::string &name : t.record_order) {
    const auto found = std::find_if(t.fields.begin(), t.fields.end(), [&](const field &f) { return f.name == name; });
    if (found == t.fields.end()) {
      s.error("record_order", "the table has no field '" + name + "'");
      continue;
    }
    const auto i = static_cast<std::size_t>(found - t.fields.begin());
    if (placed[i]) {
      s.error("record_order", "field '" + name + "' is listed twice");
    } else {
      order.push_back(i);
    }
    placed[i] = true;
  }
  for (std::size_t i = 0; i < placed.size(); ++i) {
    if (!placed[i]) s.error("record_order", "field '" + t.fields[i].name + "' is missing");
  }
  if (order == key_order(t)) s.error("record_order", "'record_order' is the order of the fields; leave it out");
  return order;
}

void lay_out_key(table &t, diagnostics &diag)
{
  const subject s(diag, "table", t);
  t.members = member_order(t, s);
  record made;
  for (const std::size_t i : t.members) {
    field &f = t.fields[i];
    const unsigned size = storage_size(f.type);
    f.offset = made.add(size, storage_align(f.type), f.room);
    if (f.match == match_kind::ternary) f.companion_offset = made.add(size, storage_align(f.type), 0);
    if (f.match == match_kind::lpm) f.companion_offset = made.add(2, 2, 0);
  }
  t.record_size = made.close(t.record_bytes, s);

  unsigned next = 0;
  for (field &f : t.fields) {
    // A partition index holds its place among the bytes, though it travels beside them.
    if (f.key.partition) f.key.first = next;
    next = f.key.first + f.key.count;
  }
}

void lay_out_params(action &a, diagnostics &diag)
{
  const subject s(diag, "action", a);
  record made;
  for (parameter &p : a.params) {
    p.offset = made.add(storage_size(p.type), storage_align(p.type), p.room);
    a.data_bits += p.bits;
    a.data_bytes += (p.bits + 7) / 8;
  }
  if (!a.params.empty()) {
    a.record_size = made.close(a.record_bytes, s);
  } else if (a.record_bytes != 0) {
    s.error("record_bytes", "an action without parameters has no structure");
  }
}

}  // namespace

void lay_out(model &m, diagnostics &diag)
{
  for (table &t : m.tables) {
    if (t.keyed() && all_sound(t, t.fields)) lay_out_key(t, diag);
  }
  for (action &a : m.actions) {
    if (all_sound(a, a.params)) lay_out_params(a, diag);
  }
}

}  // namespace catalogue
