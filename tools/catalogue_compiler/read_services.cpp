// Learning digests and parser value sets.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"

namespace catalogue {

namespace {

digest_field read_digest_field(const toml::table &node, row &owner)
{
  row r(node, owner, "field");
  digest_field f;
  f.name = r.text("name");
  f.short_name = r.text("short");
  f.word = r.optional("word") ? r.text("word") : f.short_name;
  f.bits = r.number("bits");
  f.bytes = r.number("bytes");
  f.low_half = r.extra_text("low_half");
  static_cast<origin &>(f) = r.finish();
  return f;
}

}  // namespace

digest read_digest(const toml::table &node, row &file)
{
  row r(node, file, "digest");
  digest made;
  made.name = r.text("name");
  made.handle = r.number("handle");
  made.entry_bytes = r.number("entry_bytes");
  r.each("fields", [&](const toml::table &inner) {
    const unsigned end = made.fields.empty() ? 0 : made.fields.back().offset + made.fields.back().bytes;
    made.fields.push_back(read_digest_field(inner, r));
    made.fields.back().offset = end;
  });
  static_cast<origin &>(made) = r.finish();
  return made;
}

value_set read_value_set(const toml::table &node, row &file)
{
  row r(node, file, "value_set");
  value_set made;
  made.name = r.text("name");
  made.handle = r.number("handle");
  static_cast<origin &>(made) = r.finish();
  return made;
}

}  // namespace catalogue
