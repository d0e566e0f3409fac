// One call for each entry, its arguments laid down once.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_reader.h"

#include "status_text.h"
#include "tarvex_standin/standin.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

const exported_function &read_function(const table_info &table)
{
  return function_for(table.profile != nullptr ? family_id::get_indirect_entry : family_id::get_entry, table);
}

}  // namespace

entry_reader::entry_reader(const table_info &table, const target &where, bool from_hardware)
    : call_(read_function(table), where), table_(table)
{
  call_.give(read_from_hw, std::uint64_t{from_hardware})
      .give(match_spec_out, entry_.key.data())
      .give(priority_out, &entry_.priority)
      .give(action_name_out, nullptr)
      .give(any_action_spec_out, entry_.parameters.data())
      .give(action_enum_out, &action_)
      .give(no_key_out, &no_key_)
      .give(is_member_out, &is_member_)
      .give(is_group_out, &is_group_)
      .give(grp_hdl_out, &entry_.group)
      .give(mbr_hdl_out, &entry_.member);
}

const table_entry &entry_reader::read(std::uint32_t handle)
{
  const table_entry *const entry = read_if_there(handle);
  if (entry == nullptr) throw refused_error(status_, what(handle));
  return *entry;
}

std::string entry_reader::what(std::uint32_t handle) const
{
  return "reading entry " + std::to_string(handle) + " of " + table_.name;
}

const table_entry *entry_reader::read_if_there(std::uint32_t handle)
{
  status_ = call_.give(entry_hdl, handle).status();
  if (!found_there(status_, [&] { return what(handle); })) return nullptr;
  entry_.handle = handle;
  entry_.has_key = no_key_ == 0 && !table_.fields.empty();
  entry_.action = table_.profile != nullptr ? nullptr : &calls::actions[action_];
  entry_.is_group = is_group_ != 0;
  return &entry_;
}

std::optional<std::uint32_t> default_entry(const table_info &table, const target &where)
{
  std::uint32_t handle = STANDIN_NO_HANDLE;
  function_call call(function_for(family_id::get_default_entry_handle, table), where);
  const auto status = static_cast<pd_status_t>(call.give(entry_hdl_out, &handle).make());
  if (handle == STANDIN_NO_HANDLE && says_no_entry(status)) return std::nullopt;
  require_success(status, std::string("asking ") + table.name + " for its default entry");
  return handle;
}

std::uint32_t entry_count(const table_info &table, const target &where)
{
  std::uint32_t count = 0;
  function_call(function_for(family_id::get_entry_count, table), where)
      .give(entry_count_out, &count)
      .must(std::string("counting the entries of ") + table.name);
  return count;
}

}  // namespace tarvex::shell
