// Walks over the handles of entries, members and groups.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <optional>
#include <string>

#include "catalogue.h"
#include "cell_set.h"
#include "function_call.h"
#include "tarvex_pd/types.h"

namespace tarvex::shell {

class handle_walk {
 public:
  static handle_walk entries(const table_info &table, const target &where);
  static handle_walk members(const profile_info &profile, const target &where);
  static handle_walk groups(const profile_info &profile, const target &where);
  static handle_walk group_members(const profile_info &profile, std::uint32_t group, const target &where);

  /// Nothing behind the last one. What others add or delete meanwhile may be missed, all the rest is met once. Throws
  /// refused_error.
  std::optional<std::uint32_t> next();

 private:
  static constexpr std::uint32_t batch = 1024;

  /// `handle_kind`: how the functions take the handle to go on from, `out_kind`: how they give the first; `what`: what
  /// is walked, for errors.
  handle_walk(const exported_function &first, argument_kind out_kind, const exported_function &next,
              argument_kind handle_kind, std::uint32_t group, std::string what, const target &where);

  /// Fills the batch with what comes behind a handle, or with the first one.
  pd_status_t fetch();
  pd_status_t fetch_first();
  pd_status_t fetch_behind(std::uint32_t handle);

  function_call first_;
  function_call next_;
  argument_kind out_kind_;
  argument_kind handle_kind_;
  std::array<std::uint32_t, batch> handles_;
  std::size_t at_ = 0;
  std::size_t size_ = 0;
  cell_set met_;  // handles that were given, mostly few ranges
  bool went_back_ = false;
  std::string what_;
};

}  // namespace tarvex::shell
