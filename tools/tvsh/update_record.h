// What the updates of a switch said was meant, for holding it against the hardware.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <optional>
#include <unordered_set>

#include "update_feed.h"

namespace tarvex::shell {

/// What is known of one source, by handle.
struct meant_objects {
  std::map<std::uint32_t, std::vector<std::byte>> placed;  // entries and members, as they were told last
  std::unordered_set<std::uint32_t> untold;  // that were there at the beginning, and nothing was told of since
};

using group_members = std::map<std::uint32_t, bool>;  // active or not

struct meant_state {
  std::chrono::system_clock::time_point since;
  std::uint64_t updates = 0;
  std::map<std::uint32_t, meant_objects> objects;                           // by source
  std::map<std::pair<std::uint32_t, std::uint32_t>, group_members> groups;  // by source and group
};

/// Keeps what is meant, from its beginning on. Entries and members that were there by then are known by handle alone;
/// groups as the switch has them.
class update_record : public update_receiver {
 public:
  /// Both throw refused_error; a record that goes on already, and one that does not, are left as they are.
  void begin(const target &where, update_feed &feed);
  void end(update_feed &feed);

  /// A copy; nothing where the record does not go on.
  std::optional<meant_state> state() const;

  /// Whether the record that began then still goes on.
  bool is_since(std::chrono::system_clock::time_point begin) const;
  /// What is meant of one entry or member, and of one group, as it is known by now.
  struct known_object {
    std::vector<std::byte> placed;  // empty where nothing was told of it
    bool untold = false;

    bool operator==(const known_object &) const = default;
  };
  known_object object(std::uint32_t source, std::uint32_t handle) const;
  std::optional<group_members> group(std::uint32_t source, std::uint32_t handle) const;

  void take(const switch_update &update) override;

 private:
  void enter(const switch_update &update);

  std::mutex switching_;
  mutable std::mutex mutex_;
  bool on_ = false;
  std::vector<switch_update> early_;  // that came while it was found out what is there
  meant_state state_;
};

}  // namespace tarvex::shell
