// Counters, meters, the WRED block and registers.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"

namespace catalogue {

namespace {

constexpr word<bool> directness_words[] = {{"direct", true}, {"indirect", false}};

}  // namespace

resource read_resource(const toml::table &node, row &file, resource_kind kind)
{
  row r(node, file, word_of(kind));
  resource made;
  made.name = r.text("name");
  made.handle = r.number("handle");
  made.kind = kind;
  // A register always belongs to its table.
  made.direct = kind == resource_kind::register_ || r.choice<bool>("kind", directness_words);
  if (kind == resource_kind::wred && made.direct) r.error("kind", "a wred block is indirect");
  made.table = made.direct ? r.text("table") : r.extra_text("table");
  static_cast<origin &>(made) = r.finish();
  return made;
}

}  // namespace catalogue
