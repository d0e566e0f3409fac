// Look-ups in the catalogue, and the words of its kinds.
//
// SPDX-License-Identifier: Apache-2.0
#include "model.h"

namespace catalogue {

namespace {

template <class Rows, class Matches>
auto find_row(const Rows &rows, Matches matches)
{
  const auto found = std::find_if(rows.begin(), rows.end(), matches);
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace

const position &origin::of(std::string_view key) const
{
  const auto found = values.find(key);
  return found == values.end() ? at : found->second;
}

const field *table::find_field(const std::string &wanted) const
{
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const field &f) { return f.name == wanted; });
  return found == fields.end() ? nullptr : &*found;
}

const table *model::find_table(const std::string &name) const
{
  return find_row(tables, [&](const table &t) { return t.name == name; });
}

const profile *model::find_profile(const std::string &name) const
{
  return find_row(profiles, [&](const profile &p) { return p.name == name; });
}

const action *model::find_action(const std::string &name) const
{
  return find_row(actions, [&](const action &a) { return a.name == name; });
}

const resource *model::find_resource(std::uint32_t handle) const
{
  return find_row(resources, [&](const resource &r) { return r.handle == handle; });
}

const snapshot_layout *model::find_snapshot_layout(snapshot_direction direction) const
{
  return find_row(snapshot_layouts, [&](const snapshot_layout &layout) { return layout.direction == direction; });
}

std::uint32_t table::cut_of(const label_piece &p) const
{
  if (p.cut != 0) return p.cut;
  return static_cast<std::uint32_t>((std::uint64_t{1} << std::min(find_field(p.field)->bits, 32u)) - 1);
}

}  // namespace catalogue
