// Seed and selected input fields of a hash calculation.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "switch_state.h"

namespace tarvex::shell {

/// What messages say of a calculation.
std::string of_calculation(const hash_info &hash);

/// These throw refused_error.
hash_state read_hash(const hash_info &hash, const target &where);
void write_hash_seed(const hash_info &hash, std::uint64_t seed, const target &where);
void write_hash_fields(const hash_info &hash, const std::vector<bool> &selected, const target &where);

}  // namespace tarvex::shell
