// The pipeline as a whole.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"

namespace catalogue {

pipeline read_pipeline(const toml::table &node, row &file)
{
  row r(node, file, "pipeline");
  pipeline made;
  made.name = r.text("name");
  made.profile = r.text("profile");
  made.library = r.text("library");
  made.client = r.text("client");
  made.sources = r.text("sources");
  static_cast<origin &>(made) = r.finish();
  return made;
}

}  // namespace catalogue
