// Values that rows write as words: byte ranges, live masks, display kinds and storage types.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model.h"
#include "toml_rows.h"

namespace catalogue {

storage read_storage(row &r);
/// The display kind, empty for none.
std::string read_display(row &r);
byte_range read_byte_range(row &r, std::string_view key, bool may_be_partition);
/// Fills live_all and live; the bits must be known. All of them are live unless the row says otherwise.
void read_live_mask(row &r, field &f);

}  // namespace catalogue
