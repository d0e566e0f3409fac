// Handles that the driver gave when a trace was made, and what it gives when the trace is replayed. Only those that
// differ are kept: on a fresh switch that is few or none.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace tarvex::trace {

enum class handle_sort : std::uint8_t { entry, member, group, value_set_entry, snapshot };

/// What a handle argument or a handle that comes out is of, by its name; nothing for other arguments.
constexpr std::optional<handle_sort> sort_of(std::string_view argument)
{
  if (argument == "entry_hdl") return handle_sort::entry;
  if (argument == "mbr_hdl") return handle_sort::member;
  if (argument == "grp_hdl") return handle_sort::group;
  if (argument == "pvs_entry_hdl") return handle_sort::value_set_entry;
  if (argument == "hdl") return handle_sort::snapshot;
  return std::nullopt;
}

/// Where handles of a call are from: entries are known within their table, members and groups within their profile.
struct handle_scope {
  std::uint32_t table = 0;
  std::uint32_t profile = 0;

  std::uint32_t of(handle_sort sort) const
  {
    return sort == handle_sort::entry ? table : sort == handle_sort::member || sort == handle_sort::group ? profile : 0;
  }
};

class handle_map {
 public:
  std::uint32_t now(handle_sort sort, const handle_scope &scope, std::uint32_t recorded) const
  {
    const auto found = changed_.find({sort, scope.of(sort), recorded});
    return found == changed_.end() ? recorded : found->second;
  }

  void learn(handle_sort sort, const handle_scope &scope, std::uint32_t recorded, std::uint32_t given)
  {
    const key of{sort, scope.of(sort), recorded};
    if (recorded == given) {
      changed_.erase(of);
    } else {
      changed_[of] = given;
    }
  }

 private:
  struct key {
    handle_sort sort;
    std::uint32_t scope;
    std::uint32_t recorded;
    bool operator==(const key &) const = default;
  };
  struct key_hash {
    std::size_t operator()(const key &of) const
    {
      return std::hash<std::uint64_t>{}((std::uint64_t{of.scope} << 32 | of.recorded) * 8 +
                                        static_cast<std::uint64_t>(of.sort));
    }
  };

  std::unordered_map<key, std::uint32_t, key_hash> changed_;
};

}  // namespace tarvex::trace
