// Hash calculations.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"

namespace catalogue {

hash_calculation read_hash_calculation(const toml::table &node, row &file)
{
  row r(node, file, "hash_calculation");
  hash_calculation made;
  made.name = r.text("name");
  made.handle = r.number("handle");
  made.first_input = r.number("first_input");
  made.fields = r.number("fields");
  made.common = r.numbers("common");
  made.algorithms = r.numbers("algorithms");
  static_cast<origin &>(made) = r.finish();
  return made;
}

}  // namespace catalogue
