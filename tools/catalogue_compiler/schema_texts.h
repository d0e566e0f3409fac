// Schema texts as the library holds them, and the room that the longest text of each sort takes.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace catalogue {

/// The schema of a table's key, a piece for each field or companion; "()" without a key.
std::vector<std::string> key_schema(const table &t);

/// The schema of an action, a piece for each parameter.
std::vector<std::string> action_schema(const action &a);

/// Characters of the longest text of each sort, its NUL included.
struct text_sizes {
  std::size_t schema = 0;
  std::size_t entry = 0;
  std::size_t key = 0;
  std::size_t action = 0;
  std::size_t label = 0;
};

text_sizes longest_texts(const model &m);

}  // namespace catalogue
