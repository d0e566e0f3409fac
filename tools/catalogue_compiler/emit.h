// What the compiler writes, one function for each kind of file. No generated file holds logic.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "families.h"
#include "generated_file.h"
#include "model.h"

namespace catalogue {

using functions = std::vector<exported_function>;

/// include/tarvex_pd/: text_sizes.h, actions.h, a header for each group of tables, and the umbrella tarvex_pd.h.
void emit_public_headers(const model &m, const functions &all, const std::filesystem::path &folder);

/// pd/: constant descriptors, exported functions, names; symbols.map; exported_symbols.txt.
void emit_library_sources(const model &m, const functions &all, const std::filesystem::path &folder);

/// call_table/: every exported function with its address and the kinds of its arguments.
void emit_call_table(const model &m, const functions &all, const std::filesystem::path &folder);

/// rows/pipeline_rows.cpp: all rows at run time.
void emit_rows(const model &m, const std::filesystem::path &folder);

/// pd/snapshot_fields.cpp: the fields of snapshots.
void emit_snapshot_fields(const model &m, const std::filesystem::path &folder);

/// descriptors.txt: every descriptor as a line of text, for reading and for comparing.
void emit_description(const model &m, const std::filesystem::path &folder);

}  // namespace catalogue
