// Text rows of tables, actions and profiles, for the sources that hold them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generated_file.h"
#include "model.h"
#include "row_constants.h"

namespace catalogue {

/// Definitions, within namespace tarvex::pd.
void table_texts(generated_file &to, const row_constants &constants, const table &t);
/// The pieces of the table's counter label, if it has one.
void label_texts(generated_file &to, const table &t);
void profile_texts(generated_file &to, const profile &p);
void action_texts(generated_file &to, const row_constants &constants, const action &a);

/// text_tables.h: declarations of all of them. text_tables.cpp: the arrays that find them.
void emit_text_tables(const model &m, const std::filesystem::path &folder);

}  // namespace catalogue
