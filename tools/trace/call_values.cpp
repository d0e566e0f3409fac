// Text leaves out what is seldom anything (flags of 0, raw bytes of what has been told as fields) and shortens names;
// JSON has everything that it takes to make the call again.
//
// SPDX-License-Identifier: Apache-2.0
#include "call_values.h"

#include <dlfcn.h>

#include <algorithm>

#include "record_writer.h"
#include "tarvex_pd/snapshots.h"

namespace tarvex::trace {

namespace {

/// Longer lists of handles and answers are cut.
constexpr std::uint32_t longest_list = 64;

template <typename T>
const T *pointed_at(word argument)
{
  return reinterpret_cast<const T *>(static_cast<std::uintptr_t>(argument));
}

std::string address_text(word value)
{
  std::string text;
  value_writer(text, false).hexadecimal(value);
  return text;
}

class call_writer {
 public:
  call_writer(value_writer &to, const call_row &row, std::span<const word> arguments)
      : to_(to), row_(row), arguments_(arguments), records_(to)
  {
    // An answer's action handle is known only once it has come.
    for (std::size_t i = 0; i < row.count; ++i) {
      const argument_row &argument = row.rows[i];
      if (argument.kind != value_kind::handle) continue;
      const handle_meaning *const meaning = meaning_of(static_cast<std::uint32_t>(arguments[i]));
      if (meaning == nullptr) continue;
      if (meaning->action != nullptr) {
        records_.action = meaning->action;
      } else if (meaning->table != nullptr) {
        records_.table = meaning->table;
      }
    }
  }

  void inputs()
  {
    for (std::size_t i = 0; i < row_.count; ++i) {
      if (goes_in(row_.rows[i])) input(i);
    }
  }

  void outputs()
  {
    if (const std::size_t at = row_.place_of("act_hdl"); at < row_.count && !goes_in(row_.rows[at])) {
      answered_action(at);
    }
    for (std::size_t i = 0; i < row_.count; ++i) {
      if (!goes_in(row_.rows[i]) && arguments_[i] != 0) output(i);
    }
  }

 private:
  /// What is only an address is shown as it goes in.
  static bool goes_in(const argument_row &argument)
  {
    return argument.way == direction::in || is_opaque(argument.kind);
  }

  void answered_action(std::size_t at)
  {
    const auto *const handle = pointed_at<std::uint32_t>(arguments_[at]);
    const handle_meaning *const meaning = handle == nullptr ? nullptr : meaning_of(*handle);
    if (meaning == nullptr || meaning->action == nullptr) return;
    records_.action = meaning->action;
    if (records_.table == nullptr) records_.table = meaning->table;
  }

  value_writer &member(std::size_t at) { return to_.member(records_.shown(row_.rows[at].name)); }

  void input(std::size_t at)
  {
    using enum value_kind;
    const std::string_view name = row_.rows[at].name;
    const value_kind kind = row_.rows[at].kind;
    const word value = arguments_[at];
    switch (kind) {
      case number:
      case device:
      case entry_handle:
      case member_handle:
      case group_handle:
      case value_set_handle:
      case snapshot_handle:
        if (to_.json() || name != "flags" || value != 0) member(at).number(value);
        return;
      case handle: return records_.row_handle(name, static_cast<std::uint32_t>(value));
      case device_target: return target(value);
      case state:
        if (const rows::profile_info *const profile = profile_of(pointed_at<void>(value))) {
          member(at).name(profile->name);
          return;
        }
        break;
      case callback: return function(at);
      default: break;
    }
    if (value == 0) {
      member(at).name("null");
    } else if (is_opaque(kind) || kind == state) {
      member(at).name(address_text(value));
    } else {
      record(at);
    }
  }

  void target(pd_dev_tgt_t value)
  {
    to_.member(to_.json() ? "dev_tgt" : "dev");
    const auto pipe = static_cast<std::uint32_t>(value >> 32);
    if (to_.json()) {
      to_.number(value);
      return;
    }
    to_.number(value & 0xffffffff).name(" pipe=").name(std::string_view(address_text(pipe)).substr(2));
  }

  void function(std::size_t at)
  {
    Dl_info found{};
    const auto *const code = pointed_at<void>(arguments_[at]);
    if (code != nullptr && dladdr(code, &found) != 0 && found.dli_saddr == code) {
      member(at).name(found.dli_sname);
    } else {
      member(at).name(code == nullptr ? "null" : address_text(arguments_[at]));
    }
  }

  void record(std::size_t at)
  {
    using enum value_kind;
    member(at);
    const word value = arguments_[at];
    switch (row_.rows[at].kind) {
      case text: to_.quoted(pointed_at<char>(value)); break;
      case match_spec: records_.key(*pointed_at<drv_match_spec_t>(value)); break;
      case action_spec: records_.action_record(*pointed_at<drv_action_spec_t>(value)); break;
      case action_data:
        to_.open();
        records_.data(*pointed_at<drv_act_data_t>(value), {});
        to_.close();
        break;
      case resources:
        records_.resource_list(
            {pointed_at<drv_res_spec_t>(value), static_cast<std::uint32_t>(arguments_[row_.rows[at].room])});
        break;
      case register_value: to_.bytes(pointed_at<drv_stful_spec_t>(value)->bytes); break;
      case register_queries: queries(at); break;
      case trigger: records_.trigger_bytes(pointed_at<snap_trig_spec_t>(value)->fields); break;
      default: records_.members(members_of(row_.rows[at].kind), pointed_at<std::uint8_t>(value)); break;
    }
  }

  void queries(std::size_t at)
  {
    const std::uint8_t filled = row_.rows[at].filled;
    const std::uint32_t count = filled == driver::no_argument ? 1 : *pointed_at<std::uint32_t>(arguments_[filled]);
    to_.open('[');
    for (std::uint32_t i = 0; i < std::min(count, longest_list); ++i) {
      const drv_stful_query_t &query = pointed_at<drv_stful_query_t>(arguments_[at])[i];
      to_.element().open('[');
      for (std::int32_t row = 0; query.rows != nullptr && row < query.row_count; ++row) {
        for (std::int32_t value = 0; value < query.values_per_row; ++value) {
          to_.element().bytes(query.rows[row][value].bytes);
        }
      }
      to_.close(']');
    }
    to_.close(']');
  }

  void output(std::size_t at)
  {
    using enum value_kind;
    const word value = arguments_[at];
    switch (row_.rows[at].kind) {
      case number:
      case entry_handle:
      case member_handle:
      case group_handle:
      case value_set_handle:
      case snapshot_handle: return numbers_out(at);
      case handle: return records_.row_handle(row_.rows[at].name, *pointed_at<std::uint32_t>(value));
      case signed_number: member(at).signed_number(*pointed_at<std::int32_t>(value)); return;
      case resource_list: return listed_resources(at);
      default: return record(at);
    }
  }

  void numbers_out(std::size_t at)
  {
    const argument_row &row = row_.rows[at];
    if (row.size == sizeof(std::uint64_t)) {
      member(at).hexadecimal(*pointed_at<std::uint64_t>(arguments_[at]));
      return;
    }
    const auto *const numbers = pointed_at<std::uint32_t>(arguments_[at]);
    if (row.room == driver::no_argument) {
      member(at).number(*numbers);
      return;
    }
    const auto count = static_cast<std::uint32_t>(arguments_[row.room]);
    member(at).open('[');
    for (std::uint32_t i = 0; i < std::min(count, longest_list); ++i) to_.element().number(numbers[i]);
    to_.close(']');
  }

  void listed_resources(std::size_t at)
  {
    const auto *const count = pointed_at<std::uint32_t>(arguments_[row_.rows[at].filled]);
    const pd_res_spec_t *const list = *pointed_at<const pd_res_spec_t *>(arguments_[at]);
    if (count == nullptr || list == nullptr) return;
    member(at).open('[');
    for (std::uint32_t i = 0; i < std::min(*count, longest_list); ++i) {
      to_.element().open();
      records_.row_handle("res_hdl", list[i].res_hdl);
      to_.member("index").number(list[i].res_index).close();
    }
    to_.close(']');
  }

  value_writer &to_;
  const call_row &row_;
  std::span<const word> arguments_;
  record_writer records_;
};

}  // namespace

void write_inputs(value_writer &to, const call_row &row, std::span<const word> arguments)
{
  call_writer(to, row, arguments).inputs();
}

void write_outputs(value_writer &to, const call_row &row, std::span<const word> arguments)
{
  call_writer(to, row, arguments).outputs();
}

std::string_view status_name(std::uint32_t status)
{
  using name_of_status = const char *(*)(std::uint32_t);
  static const auto stand_in_names = reinterpret_cast<name_of_status>(dlsym(RTLD_DEFAULT, "standin_status_name"));
  if (status == 0) return "OK";
  const char *const name = stand_in_names == nullptr ? nullptr : stand_in_names(status);
  if (name == nullptr) return {};
  const std::string_view text = name;
  return text.substr(text.starts_with("STANDIN_") ? 8 : 0);
}

void write_result(value_writer &to, const call_row &row, word result)
{
  switch (row.result) {
    case result_kind::status: to.number(static_cast<std::uint32_t>(result)); break;
    case result_kind::nothing: break;
    case result_kind::state:
      if (const rows::profile_info *const profile = profile_of(pointed_at<void>(result))) {
        to.name(profile->name);
        break;
      }
      [[fallthrough]];
    case result_kind::block: to.name(address_text(result)); break;
  }
}

}  // namespace tarvex::trace
