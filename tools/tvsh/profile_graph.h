// An action profile in two states as one graph: members and groups are its nodes, memberships its edges. What the
// numbers of members and groups are means nothing here; what refers to them does.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "state_model.h"

namespace tarvex::shell {

class profile_graph {
 public:
  using colour = std::uint32_t;

  struct edge {
    std::uint32_t to = 0;
    bool active = true;

    auto operator<=>(const edge &) const = default;
  };

  struct node {
    bool wanted = false;  // of which state
    bool is_group = false;
    std::uint32_t id = 0;
    const model_action *action = nullptr;  // of a member
    const model_group *group = nullptr;
    std::vector<edge> edges;             // members of a group, groups of a member; ascending
    std::vector<std::uint32_t> anchors;  // numbers of the entries that refer to it; ascending
    colour content = 0;                  // nodes of equal content have equal numbers; of a group it is 0
    std::uint32_t component = 0;
  };

  /// `there` and `wanted` are the profile in both states, the tables those that refer to it. An entry of one key is
  /// one anchor, whichever state it is of; so are the default entry, and the fallback.
  profile_graph(const model_profile &there, const model_table &table_there, const model_profile &wanted,
                const model_table &table_wanted);

  const std::vector<node> &nodes() const { return nodes_; }

  /// Colours by what is known of a node itself: kind, content, anchors, and the size of a group where `sizes`.
  std::vector<colour> first_colours(bool sizes) const;

  /// Splits colours until nodes of one colour have neighbours of the same colours. `among`: the nodes that are looked
  /// at, whole components.
  void refine(std::vector<colour> &colours, std::span<const std::uint32_t> among) const;

  /// Whether groups may have the same size: what is not known of one may be anything that it has room for.
  static bool same_size(const node &there, const node &wanted);

 private:
  void add_state(bool is_wanted, const model_profile &profile);
  void add_anchors(const model_profile &there, const model_table &table_there, const model_profile &wanted,
                   const model_table &table_wanted);
  void find_components();

  std::vector<node> nodes_;
};

}  // namespace tarvex::shell
