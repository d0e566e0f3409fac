// Placement buffers: a head, then the bytes of key value, key mask, action data and resources. They hold no pointer, so
// a copy is as good as the buffer itself, wherever it stands.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <optional>

#include "call_gate.h"
#include "entry_record.h"

namespace tarvex::standin {
namespace {

constexpr std::uint16_t placement_room = 28;  // bytes of action data that every caller has room for

constexpr std::uint64_t entry_mark = 0x31657463616c7074;   // first bytes of a buffer of an entry
constexpr std::uint64_t member_mark = 0x326d657463616c70;  // and of a member

struct placement_head {
  std::uint64_t mark;
  std::uint32_t size;  // of the whole buffer
  std::uint32_t action;
  std::uint32_t partition;
  std::uint32_t priority;
  std::uint32_t reference;
  std::uint32_t resource_count;
  std::uint16_t key_bits;
  std::uint16_t key_bytes;
  std::uint16_t data_bits;
  std::uint16_t data_bytes;
  std::uint8_t kind;
  std::uint8_t has_key;
};

std::vector<std::byte> encode(std::uint64_t mark, const entry_record &record)
{
  placement_head head{};
  head.mark = mark;
  head.action = record.action.action;
  head.partition = record.partition;
  head.priority = record.priority;
  head.reference = record.reference;
  head.resource_count = record.resource_count;
  head.key_bits = record.key_bits;
  head.key_bytes = record.key_bytes;
  head.data_bits = record.action.data_bits;
  head.data_bytes = record.action.data_bytes;
  head.kind = record.kind;
  head.has_key = record.has_key;
  const std::size_t resource_bytes = record.resource_count * sizeof(drv_res_spec_t);
  head.size =
      static_cast<std::uint32_t>(sizeof head + 2u * record.key_bytes + record.action.data_bytes + resource_bytes);

  std::vector<std::byte> buffer(head.size, std::byte{0xff});
  std::byte *to = buffer.data();
  const auto append = [&to](const void *from, std::size_t bytes) {
    if (bytes != 0 && from != nullptr) std::memcpy(to, from, bytes);  // a mask that is not there stays all ones
    to += bytes;
  };
  append(&head, sizeof head);
  append(record.value, record.key_bytes);
  append(record.mask, record.key_bytes);
  append(record.action.data, record.action.data_bytes);
  append(record.resources, resource_bytes);
  return buffer;
}

std::optional<entry_record> decode(std::uint64_t mark, const void *buffer)
{
  placement_head head;
  std::memcpy(&head.mark, buffer, sizeof head.mark);
  if (head.mark != mark) return std::nullopt;
  std::memcpy(&head, buffer, sizeof head);

  entry_record record;
  const auto *from = static_cast<const std::uint8_t *>(buffer) + sizeof head;
  record.has_key = head.has_key != 0;
  record.key_bits = head.key_bits;
  record.key_bytes = head.key_bytes;
  record.value = from;
  record.mask = from + head.key_bytes;
  record.partition = head.partition;
  record.priority = head.priority;
  record.kind = head.kind;
  record.reference = head.reference;
  record.action = {head.action, head.data_bits, head.data_bytes, from + 2 * head.key_bytes};
  record.resource_count = std::min<std::uint32_t>(head.resource_count, DRV_ACTION_MAX_RES);
  std::memcpy(record.resources, record.action.data + head.data_bytes, record.resource_count * sizeof(drv_res_spec_t));
  return record;
}

}  // namespace

std::vector<std::byte> placement_of(const entry_record &record) { return encode(entry_mark, record); }

std::vector<std::byte> placement_of(const action_record &record)
{
  entry_record whole;
  whole.action = record;
  return encode(member_mark, whole);
}

}  // namespace tarvex::standin

using namespace tarvex::standin;

size_t standin_placement_size(const void *plcmt_data)
{
  if (plcmt_data == nullptr) return 0;
  placement_head head;
  std::memcpy(&head.mark, plcmt_data, sizeof head.mark);
  if (head.mark != entry_mark && head.mark != member_mark) return 0;
  std::memcpy(&head, plcmt_data, sizeof head);
  return head.size;
}

pd_status_t pipe_mgr_plcmt_mat_data_get_entry(const void *plcmt_data, drv_match_spec_t *match_spec,
                                              drv_action_spec_t *action_spec, uint32_t *act_hdl)
{
  if (const pd_status_t refused = announce(__func__, 0)) return refused;
  if (plcmt_data == nullptr) return STANDIN_BAD_ARGUMENT;
  const auto record = decode(entry_mark, plcmt_data);
  return record ? deliver(*record, match_spec, action_spec, act_hdl) : pd_status_t{STANDIN_BAD_PLACEMENT};
}

pd_status_t pipe_mgr_plcmt_adt_data_get_entry(const void *plcmt_data, drv_act_data_t *act_data, uint32_t *act_hdl)
{
  if (const pd_status_t refused = announce(__func__, 0)) return refused;
  if (plcmt_data == nullptr) return STANDIN_BAD_ARGUMENT;
  const auto record = decode(member_mark, plcmt_data);
  if (!record || act_data == nullptr) return record ? STANDIN_BAD_ARGUMENT : STANDIN_BAD_PLACEMENT;
  // Only a read from the device says how much room there is; here the room is that of every read.
  drv_act_data_t room = *act_data;
  room.data_bytes = placement_room;
  const pd_status_t status = deliver(record->action, &room, act_hdl);
  if (status == BF_SUCCESS) *act_data = room;
  return status;
}
