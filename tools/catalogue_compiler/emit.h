// What the compiler writes, one function for each kind of file. No generated file holds logic.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "families.h"
#include "generated_file.h"
#include "model.h"

namespace catalogue {

using functions = std::vector<exported_function>;

/// Names of the public headers that are made of templates.
std::span<const std::string_view> fixed_headers();

/// include/tarvex_pd/: the headers made of the templates in `templates`. Throws std::runtime_error for a template that
/// cannot be read or names what there is not.
void fill_header_templates(const model &m, const functions &all, const std::filesystem::path &templates,
                           const std::filesystem::path &folder);

/// The comment and the declaration of an exported function.
void prototype(generated_file &to, const exported_function &f);

/// Definitions of exported functions.
void emit_exports(generated_file &to, const std::vector<const exported_function *> &of);

/// Functions of no row: pd/plain_functions.h, pd/exports_fixed.cpp and call_table/pd_calls.h.
void emit_forwarders(const functions &all, const std::filesystem::path &folder);

/// pd/exports_services.cpp: digests and value sets.
void emit_services(const model &m, const functions &all, const std::filesystem::path &folder);

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
