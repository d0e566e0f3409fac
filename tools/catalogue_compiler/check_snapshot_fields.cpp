// Checks of the fields of snapshots.
//
// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "checks.h"

namespace catalogue {

namespace {

/// Room for the fields in a trigger record and in a capture.
constexpr unsigned record_bytes = 712;

bool is_field_size(unsigned size) { return (size >= 1 && size <= 4) || size == 16; }

void check_fields(const snapshot_layout &layout, const subject &about)
{
  unsigned end = 0;
  for (const snapshot_field &f : layout.fields) {
    const subject s(about, "field", f);
    if (!is_field_size(f.size)) return s.error("size", "a field has 1, 2, 3, 4 or 16 bytes");
    if (f.offset != end)
      s.error("offset", "the field stands at " + std::to_string(f.offset) + ", but those before it end at " +
                            std::to_string(end));
    end += f.slot();
  }
  if (layout.bytes != end)
    about.error("bytes", "'bytes' is " + std::to_string(layout.bytes) + ", but the fields make " + std::to_string(end));
  if (end > record_bytes)
    about.error("fields",
                "the fields take " + std::to_string(end) + " bytes; a record has " + std::to_string(record_bytes));
}

}  // namespace

void check_snapshot_fields(const model &m, diagnostics &diag)
{
  for (const snapshot_layout &layout : m.snapshot_layouts)
    if (all_sound(layout, layout.fields)) check_fields(layout, subject(diag, "snapshot_layout", layout));
}

}  // namespace catalogue
