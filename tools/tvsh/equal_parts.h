// Parts of two states of a profile that are equal but for the numbers of their members and groups.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

#include "profile_graph.h"

namespace tarvex::shell {

/// Nodes of the state that is there, each with its image in the wanted state.
using node_pairs = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

/// Pairs whole components that are isomorphic: contents, memberships and their states, what refers to them, and sizes,
/// as far as they are known. Two states that are equal are paired wholly. Exact, unless a component is so large and so
/// symmetric at once that the search is given up; it is left out then.
node_pairs find_equal_parts(const profile_graph &graph);

}  // namespace tarvex::shell
