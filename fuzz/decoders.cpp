// Keys and actions of any bytes through the decoders, into a write, and through the decoders again: the second time
// round nothing may change any more.
//
// SPDX-License-Identifier: Apache-2.0
#include "library_call.h"
#include "require.h"

namespace tarvex::fuzz {

namespace {

using enum argument_kind;
using enum calls::family_id;

// The function of a family that is of the same table or action as another one.
const exported_function *sibling(const exported_function &of, calls::family_id family)
{
  for (const exported_function &each : calls::functions)
    if (each.family == family && (of.table == nullptr ? each.action == of.action : each.table == of.table))
      return &each;
  return nullptr;
}

bytes bytes_of(std::span<const std::uint8_t> content) { return {content.begin(), content.end()}; }

void copy(std::span<const std::uint8_t> from, std::span<std::uint8_t> to)
{
  std::copy(from.begin(), from.end(), to.begin());
}

// The driver record of the key that was handed over last, decoded.
bytes decoded_key(const exported_function &unbuild, byte_source &input)
{
  library_call decode(unbuild, input);
  auto &key = *reinterpret_cast<drv_match_spec_t *>(decode.memory(drv_match_spec).data());
  copy(driver().key_value, {key.key_value, driver().key_value.size()});
  copy(driver().key_mask, {key.key_mask, driver().key_mask.size()});
  key.partition_index = driver().key.partition_index;
  decode.make({});
  bytes record = bytes_of(decode.memory(match_spec_out));
  if (const exported_function *const masks = sibling(unbuild, unbuild_mask)) {
    library_call add_masks(*masks, input);
    copy(decode.memory(drv_match_spec), add_masks.memory(drv_match_spec));
    copy(record, add_masks.memory(match_spec_out));
    add_masks.make({});
    record = bytes_of(add_masks.memory(match_spec_out));
  }
  return record;
}

void check_key(const exported_function &unbuild, byte_source &input)
{
  const std::size_t size = unbuild.table->key_bytes;
  driver().key = {};
  driver().key.partition_index = input.number<std::uint32_t>();
  driver().key_value = input.block(size);
  driver().key_mask = input.block(size);
  const exported_function *const find = sibling(unbuild, match_spec_to_entry_hdl);
  bytes record = decoded_key(unbuild, input), value, mask;
  // The first write cuts masks to their fields' widths, the second values to their masks.
  for (int round = 0; round < 3; ++round) {
    library_call write(*find, input);
    copy(record, write.memory(match_spec));
    write.make({});
    require(driver().key.key_bytes == size && driver().key_value.size() == size, "a key has its table's bytes");
    require(round < 2 || (driver().key_value == value && driver().key_mask == mask), "a key is written the same again");
    value = driver().key_value;
    mask = driver().key_mask;
    const bytes again = decoded_key(unbuild, input);
    require(round < 2 || again == record, "a key is read the same again");
    record = again;
  }
}

bytes decoded_action(const exported_function &unbuild, std::span<const std::uint8_t> data,
                     std::span<const pd_res_spec_t> resources)
{
  byte_source none({});
  library_call decode(unbuild, none);
  const auto &record = *reinterpret_cast<const drv_act_data_t *>(decode.memory(drv_act_data).data());
  std::copy_n(data.begin(), std::min<std::size_t>(data.size(), unbuild.action->data_bytes), record.data);
  decode.give(res_list, resources.data());
  decode.give(res_count, resources.size());
  decode.make({});
  return bytes_of(decode.memory(action_spec_out));
}

void check_action(const exported_function &unbuild, byte_source &input)
{
  const calls::action_info &action = *unbuild.action;
  bytes data = input.block(action.data_bytes);
  std::vector<pd_res_spec_t> resources;
  for (const std::uint32_t handle : action.index_resources)
    resources.push_back({handle, input.number<std::uint32_t>()});
  const bytes record = decoded_action(unbuild, data, resources);
  const exported_function *write_function = nullptr;
  for (const calls::family_id family : {entry_add, set_default_action, add_member})
    if (write_function == nullptr) write_function = sibling(unbuild, family);
  if (write_function == nullptr || action.params.empty()) return;
  library_call write(*write_function, input);
  if (write.takes(meter_spec)) return;  // may refuse before the driver is called
  copy(record, write.memory(action_spec));
  write.make({});
  resources.clear();
  for (std::uint32_t i = 0; i < driver().action.res_count; ++i)
    resources.push_back({driver().action.res[i].res_hdl, driver().action.res[i].res_index});
  require(driver().data.size() == action.data_bytes, "action data has its action's bytes");
  require(decoded_action(unbuild, driver().data, resources) == record, "an action is read as it was written");
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  using namespace tarvex::fuzz;
  byte_source input({data, size});
  const auto &function = pick_function(input, [](const exported_function &each) {
    return each.family == unbuild_key || each.family == unbuild_action_spec;
  });
  driver().begin({}, {}, {});
  function.family == unbuild_key ? check_key(function, input) : check_action(function, input);
  return 0;
}
