// SPDX-License-Identifier: Apache-2.0
#include "told_entry.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace tarvex::test {

namespace {

/// Room that ends where a page begins which nobody may touch.
char *guarded(std::size_t size)
{
  static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  static char *const end = [] {
    void *const pages = mmap(nullptr, 3 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED || mprotect(static_cast<char *>(pages) + 2 * page, page, PROT_NONE) != 0) std::abort();
    return static_cast<char *>(pages) + 2 * page;
  }();
  std::memset(end - 2 * page, 'x', 2 * page);
  return end - size;
}

}  // namespace

::testing::AssertionResult writes(const std::string &expected, const std::function<std::uint32_t(char *)> &write)
{
  char *const buffer = guarded(expected.size() + 1);
  const std::uint32_t length = write(buffer);
  if (length == expected.size() && buffer[-1] == 'x' && std::memcmp(buffer, expected.c_str(), length + 1U) == 0)
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "result " << length << " instead of " << expected.size()
                                       << "\nis:        " << std::string(buffer, expected.size())
                                       << "\nshould be: " << expected;
}

::testing::AssertionResult writes_nothing(const std::function<std::uint32_t(char *)> &write)
{
  char *const buffer = guarded(8);
  const std::uint32_t length = write(buffer);
  if (length == 0 && std::string(buffer, 8) == "xxxxxxxx") return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "result " << length << ", buffer " << std::string(buffer, 8);
}

record random_record(std::size_t size)
{
  static std::mt19937 source(19810212);
  record made(size);
  std::ranges::generate(made, [] { return static_cast<std::uint8_t>(source()); });
  return made;
}

told_entry::told_entry(const calls::table_info &told_table, const calls::use_info *told_use, bool told_key)
    : table(&told_table),
      use(told_use),
      with_key(told_key),
      value(random_record(told_table.key_bytes)),
      mask(random_record(told_table.key_bytes)),
      act_hdl(told_use == nullptr ? 0 : told_use->handle)
{
}

std::uint64_t told_entry::operator()(const recorded_call &call) const
{
  if (call.function == "pipe_mgr_plcmt_adt_data_get_entry") {
    std::ranges::copy(data, call.at<drv_act_data_t>(1).data);
    call.at<std::uint32_t>(2) = act_hdl;
    return status;
  }
  const std::size_t first = call.function == "pipe_mgr_get_entry" ? 4 : 1;
  auto &spec = call.at<drv_match_spec_t>(first);
  auto &action = call.at<drv_action_spec_t>(first + 1);
  if (spec.key_value != nullptr) {
    std::ranges::copy(value, spec.key_value);
    std::ranges::copy(mask, spec.key_mask);
  }
  if (!with_key) spec.key_value = nullptr;
  spec.partition_index = partition;
  spec.priority = priority;
  action.act_kinds = act_kinds;
  action.mbr_hdl = mbr_hdl;
  action.grp_hdl = grp_hdl;
  if (action.act_data.data != nullptr) std::ranges::copy(data, action.act_data.data);
  if (use != nullptr && !use->action->index_resources.empty()) {
    action.res[0].res_hdl = use->action->index_resources[0];
    action.res[0].res_index = resource_index;
    action.res[0].res_tag = 1;
    action.res_count = 1;
  }
  call.at<std::uint32_t>(first + 2) = act_hdl;
  return status;
}

record told_entry::key() const
{
  record to(table->record_size);
  record value_copy = value, mask_copy = mask;
  drv_match_spec_t spec{};
  spec.partition_index = partition;
  spec.key_bits = table->key_bits;
  spec.key_bytes = table->key_bytes;
  spec.key_value = value_copy.data();
  spec.key_mask = mask_copy.data();
  for (const char *part : {"unbuild_key_", "unbuild_mask_"}) {
    if (part[8] == 'm' && (table->kind == calls::table_kind::exact || table->kind == calls::table_kind::keyless)) break;
    using unbuild = void (*)(drv_match_spec_t *, void *);
    const auto function = function_named(std::string(part) + table->name).function;
    reinterpret_cast<unbuild>(reinterpret_cast<void *>(function))(&spec, to.data());
  }
  return to;
}

record told_entry::parameters() const
{
  record to(use->action->record_size);
  record data_copy = data;
  drv_act_data_t spec{};
  spec.data_bytes = 28;
  spec.data = data_copy.data();
  pd_res_spec_t resource{};
  const bool indexed = !use->action->index_resources.empty();
  if (indexed) resource = {use->action->index_resources[0], resource_index};
  using unbuild = void (*)(drv_act_data_t *, pd_res_spec_t *, std::uint32_t, void *);
  const auto function = function_named(std::string("unbuild_action_spec_") + use->action->name).function;
  reinterpret_cast<unbuild>(reinterpret_cast<void *>(function))(&spec, indexed ? &resource : nullptr, indexed ? 1 : 0,
                                                                to.data());
  return to;
}

std::string told_entry::key_and_action() const
{
  std::string text = "(" + (no_key() ? "()," : key_value(*table, key()));
  if (use != nullptr) return text + action_value(*use->action, use->action->params.empty() ? record() : parameters());
  if (act_kinds == 2) text += formatted("('setMbrHdl',(0x%x,))", mbr_hdl);
  if (act_kinds == 4) text += formatted("('setGrpHdl',(0x%x,))", grp_hdl);
  return text;
}

void for_each_entry(const std::function<void(const told_entry &)> &check)
{
  for (const calls::table_info &table : calls::tables) {
    for (const bool with_key : {true, false}) {
      for (const calls::use_info &use : table.actions) check(told_entry(table, &use, with_key));
      for (const int kind : {2, 4}) {
        if (table.profile == nullptr) break;
        told_entry entry(table, nullptr, with_key);
        entry.act_kinds = static_cast<std::uint8_t>(kind);
        check(entry);
      }
    }
  }
}

}  // namespace tarvex::test
