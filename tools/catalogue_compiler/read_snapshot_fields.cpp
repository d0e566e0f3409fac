// Fields of snapshots.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"

namespace catalogue {

namespace {

snapshot_field read_snapshot_field(const toml::table &node, row &layout)
{
  row r(node, layout, "field");
  snapshot_field made;
  made.name = r.text("name");
  made.offset = r.number("offset");
  made.size = r.number("size");
  static_cast<origin &>(made) = r.finish();
  return made;
}

}  // namespace

snapshot_layout read_snapshot_layout(const toml::table &node, row &file)
{
  row r(node, file, "snapshot_layout");
  snapshot_layout made;
  made.direction = r.choice<snapshot_direction>("name");
  made.name = word_of(made.direction);
  made.bytes = r.number("bytes");
  r.each("fields", [&](const toml::table &inner) { made.fields.push_back(read_snapshot_field(inner, r)); });
  static_cast<origin &>(made) = r.finish();
  return made;
}

}  // namespace catalogue
