// Driver functions of the snapshots. A handle is four times the number of the snapshot, with bit 1 set for egress. They
// stand beside the devices, since a handle names no device; those of a device go when it does.
//
// SPDX-License-Identifier: Apache-2.0
#include "snapshots.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include "device.h"
#include "pipeline_rows.h"

namespace tarvex::standin {
namespace {

using field_record = std::array<std::uint8_t, STANDIN_SNAPSHOT_FIELD_BYTES>;

struct capture {
  std::uint32_t pipe_id;
  field_record fields;
};

struct snapshot {
  std::uint32_t dev_id = 0;
  std::uint32_t pipe_id = 0;
  bool armed = false;
  field_record value{};
  field_record mask{};
  std::vector<capture> captures;
};

struct snapshot_list {
  std::mutex mutex;
  std::map<std::uint32_t, snapshot> by_handle;
  std::uint32_t made = 0;
};

snapshot_list &the_snapshots()
{
  static snapshot_list instance;
  return instance;
}

constexpr std::uint32_t egress_bit = 2;
constexpr std::uint32_t most_stages = 255;

/// Whether a snapshot of pipe `own` sees what goes on in pipe `other`, either of which may be all.
bool covers(std::uint32_t own, std::uint32_t other)
{
  return own == other || own == PD_ALL_PIPES || other == PD_ALL_PIPES;
}

/// Runs body(snapshot) under the lock.
template <class Body>
pd_status_t on_snapshot(std::uint32_t hdl, Body body)
{
  snapshot_list &list = the_snapshots();
  const std::lock_guard lock(list.mutex);
  const auto found = list.by_handle.find(hdl);
  if (found == list.by_handle.end()) return STANDIN_NO_SNAPSHOT;
  try {
    return body(found->second);
  } catch (const std::bad_alloc &) {
    return STANDIN_NO_MEMORY;
  }
}

template <class Body>
pd_status_t serve_snapshot(const char *function, std::uint32_t hdl, Body body)
{
  if (const pd_status_t refused = announce(function, hdl)) return refused;
  return on_snapshot(hdl, body);
}

std::span<const rows::snapshot_field_info> fields_of(std::uint32_t direction)
{
  return direction == STANDIN_SNAPSHOT_EGRESS ? rows::egress_fields : rows::ingress_fields;
}

/// Brings the masks of 3 bytes into the order of their values.
void line_up_masks(field_record &mask, std::uint32_t direction)
{
  for (const rows::snapshot_field_info &field : fields_of(direction)) {
    const auto at = mask.begin() + field.offset;
    if (field.size == 3) std::reverse(at, at + 4);
  }
}

void store_field(std::uint8_t *to, std::uint16_t size, const std::uint32_t *value)
{
  if (size == 16) {
    for (std::size_t i = 0; i < size; ++i) to[i] = static_cast<std::uint8_t>(value[i]);
    return;
  }
  for (unsigned i = 0; i < size; ++i) {
    const unsigned shift = 8 * (size == 4 ? 3 - i : i);
    to[i] = static_cast<std::uint8_t>(*value >> shift);
  }
  if (size == 3) to[3] = 0;
}

bool triggers(const snapshot &snap, const std::uint8_t *fields)
{
  for (std::size_t i = 0; i < snap.mask.size(); ++i)
    if (((fields[i] ^ snap.value[i]) & snap.mask[i]) != 0) return false;
  return snap.armed;
}

}  // namespace

void drop_snapshots(std::uint32_t dev_id)
{
  snapshot_list &list = the_snapshots();
  const std::lock_guard lock(list.mutex);
  std::erase_if(list.by_handle, [dev_id](const auto &each) { return each.second.dev_id == dev_id; });
}

}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t bf_snapshot_create(uint64_t dev_id, uint32_t pipe_id, uint32_t start_stage, uint32_t end_stage,
                               uint32_t direction, uint32_t *hdl)
{
  return serve(__func__, device_of(dev_id), 0, [&](device &) -> pd_status_t {
    if (hdl == nullptr || start_stage > end_stage || end_stage > most_stages || direction > STANDIN_SNAPSHOT_EGRESS)
      return STANDIN_BAD_ARGUMENT;
    snapshot_list &list = the_snapshots();
    const std::lock_guard lock(list.mutex);
    *hdl = 4 * ++list.made | (direction == STANDIN_SNAPSHOT_EGRESS ? egress_bit : 0);
    snapshot &made = list.by_handle[*hdl];
    made.dev_id = device_of(dev_id);
    made.pipe_id = pipe_id;
    return success;
  });
}

pd_status_t bf_snapshot_delete(uint32_t hdl)
{
  if (const pd_status_t refused = announce(__func__, hdl)) return refused;
  snapshot_list &list = the_snapshots();
  const std::lock_guard lock(list.mutex);
  return require(list.by_handle.erase(hdl) != 0, STANDIN_NO_SNAPSHOT);
}

pd_status_t bf_snapshot_capture_trigger_set(uint32_t hdl, void *value_rec, void *mask_rec)
{
  return serve_snapshot(__func__, hdl, [&](snapshot &snap) -> pd_status_t {
    if (value_rec == nullptr || mask_rec == nullptr) return STANDIN_BAD_ARGUMENT;
    std::memcpy(snap.value.data(), value_rec, snap.value.size());
    std::memcpy(snap.mask.data(), mask_rec, snap.mask.size());
    line_up_masks(snap.mask, (hdl & egress_bit) != 0 ? STANDIN_SNAPSHOT_EGRESS : STANDIN_SNAPSHOT_INGRESS);
    snap.captures.clear();
    snap.armed = true;
    return success;
  });
}

pd_status_t bf_snapshot_capture_get(uint32_t hdl, uint32_t pipe, void *capture_area, snap_capture_sizes_t *sizes,
                                    uint32_t *num_captures)
{
  return serve_snapshot(__func__, hdl, [&](const snapshot &snap) -> pd_status_t {
    if (capture_area == nullptr || sizes == nullptr || num_captures == nullptr ||
        sizes->ctrl_size < STANDIN_SNAPSHOT_CTRL_BYTES ||
        sizes->total_size != sizes->ctrl_size + STANDIN_SNAPSHOT_FIELD_BYTES)
      return STANDIN_BAD_ARGUMENT;
    auto *to = static_cast<std::uint8_t *>(capture_area);
    *num_captures = 0;
    for (const capture &each : snap.captures) {
      if (!covers(pipe, each.pipe_id)) continue;
      std::memset(to, 0, sizes->ctrl_size);
      to[0] = static_cast<std::uint8_t>(each.pipe_id);
      to[1] = static_cast<std::uint8_t>(++*num_captures);
      std::memcpy(to + sizes->ctrl_size, each.fields.data(), each.fields.size());
      to += sizes->total_size;
    }
    return success;
  });
}

pd_status_t standin_snapshot_packet(uint32_t hdl, uint32_t pipe_id, const uint8_t *fields)
{
  return on_snapshot(hdl, [&](snapshot &snap) -> pd_status_t {
    if (fields == nullptr) return STANDIN_BAD_ARGUMENT;
    if (!covers(snap.pipe_id, pipe_id) || !triggers(snap, fields)) return STANDIN_NOT_TRIGGERED;
    if (snap.captures.size() >= STANDIN_SNAPSHOT_CAPTURES) return STANDIN_FULL;
    capture taken{pipe_id, {}};
    std::copy(fields, fields + taken.fields.size(), taken.fields.begin());
    snap.captures.push_back(taken);
    return success;
  });
}

pd_status_t standin_snapshot_field_set(uint32_t direction, const char *name, const uint32_t *value, uint8_t *fields)
{
  if (name == nullptr || value == nullptr || fields == nullptr || direction > STANDIN_SNAPSHOT_EGRESS)
    return STANDIN_BAD_ARGUMENT;
  for (const rows::snapshot_field_info &field : fields_of(direction)) {
    if (std::strcmp(field.name, name) != 0) continue;
    store_field(fields + field.offset, field.size, value);
    return success;
  }
  return STANDIN_NO_OBJECT;
}
