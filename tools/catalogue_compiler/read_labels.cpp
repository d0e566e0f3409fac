// Pieces of counter labels. What a piece shows follows from the keys that it has.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"

namespace catalogue {

label_piece read_label_piece(const toml::table &node, row &owner)
{
  row r(node, owner, "piece", "text");
  label_piece p;
  p.text = r.text("text");
  if (r.optional("flag")) {
    p.form = label_form::flag;
    p.field = r.text("flag");
    p.cut = r.optional("bit") ? r.number("bit") : 1;
  } else {
    p.field = r.text("field");
    p.cut = r.extra_number("cut");
    if (r.optional("is")) {
      p.form = label_form::words;
      p.values = {r.number("is")};
    } else {
      if (r.optional("unless")) p.values = r.numbers("unless");
      p.width = r.extra_number("width");
      if (p.width != 0) p.form = label_form::decimal;
    }
  }
  static_cast<origin &>(p) = r.finish();
  return p;
}

}  // namespace catalogue
