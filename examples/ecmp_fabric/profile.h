// One action profile of the fabric with its indirect table: what is done to it through the library, and a plain record
// of what it ought to hold.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <random>

#include "indirect_table.h"
#include "member_action.h"
#include "tally.h"

namespace tarvex::examples {

struct fabric_counts {
  std::size_t members = 0;
  std::size_t groups = 0;
  std::size_t memberships = 0;
  std::size_t down = 0;
  std::size_t entries = 0;
};

class profile {
 public:
  profile(const profile_functions &functions, const indirect_table &table, std::vector<member_action> actions);
  profile(profile &&) = default;  // members point to the actions, which a copy would leave behind

  const char *name() const { return functions_.name; }
  fabric_counts counts() const;

  /// Members, groups with some of them, and entries that point to the ones and the others.
  void build(std::mt19937_64 &random, tally &compared);
  /// Some memberships go down, and of those that were down some come up.
  void switch_members(std::mt19937_64 &random);
  /// Sets a fallback member, then another one in its place; `reset` takes that one off too.
  void choose_fallback(bool reset, tally &compared);
  /// New members in some groups, and entries that point elsewhere.
  void grow(std::mt19937_64 &random);

  /// Reads all that the switch holds.
  void check_switch(tally &compared) const;
  /// Asks for all that the library knows: each write needs it, and repeats what is there already.
  void check_library(tally &compared) const;
  /// The library knows no member and no group, and writes nothing for them.
  void check_forgotten(tally &compared) const;

  /// An entry that points to a group, and some of its members by their numbers, as a line of text.
  std::string example() const;

 private:
  struct member {
    const member_action *action;
    std::uint32_t number;
    pd_mbr_hdl_t handle;
  };
  struct membership {
    pd_mbr_hdl_t member;
    bool active;
  };
  struct group {
    pd_grp_hdl_t handle;
    std::vector<membership> members;  // in the order in which they joined
  };
  struct entry {
    std::uint32_t number;
    target to;
    pd_entry_hdl_t handle;
  };

  pd_mbr_hdl_t add_member();
  void delete_member(pd_mbr_hdl_t handle);
  group &create_group();
  void join(group &which, pd_mbr_hdl_t handle);
  void leave(group &which, std::size_t place);
  void add_entry(target to);
  void redirect(entry &which, std::mt19937_64 &random);
  target any_target(std::mt19937_64 &random) const;

  void check_members(tally &compared) const;
  void check_group(const group &which, tally &compared) const;
  void check_entry(const entry &which, tally &compared) const;
  /// The switch does not let the fallback member go.
  void check_fallback(tally &compared) const;

  std::string text(const char *what, std::uint32_t handle) const;
  void expect_status(pd_status_t got, pd_status_t wanted, const char *what, std::uint32_t handle,
                     tally &compared) const;
  std::vector<std::uint32_t> all_handles(pd_status_t (*first)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t *),
                                         pd_status_t (*next)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t, std::uint32_t,
                                                             std::uint32_t *)) const;

  profile_functions functions_;
  indirect_table table_;
  std::vector<member_action> actions_;
  std::uint32_t next_number_ = 1;
  std::vector<member> members_;
  std::vector<group> groups_;
  std::vector<entry> entries_;
  target default_;
  pd_entry_hdl_t default_handle_ = 0;
  std::optional<pd_mbr_hdl_t> fallback_;
};

/// The five profiles of the pipeline, empty.
std::vector<profile> make_profiles();

}  // namespace tarvex::examples
