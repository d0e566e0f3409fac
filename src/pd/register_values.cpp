// SPDX-License-Identifier: Apache-2.0
#include "register_values.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "call_conventions.h"

namespace tarvex::pd {

namespace {

template <class Element>
Element *zeroed(std::size_t count)
{
  return static_cast<Element *>(bf_sys_calloc(count, sizeof(Element)));
}

void give_back(void *block)
{
  if (block != nullptr) bf_sys_free(block);
}

/// What the library has made room for, and what a driver's answer is cut to.
struct shape {
  std::size_t rows = 0;
  std::size_t values = 0;

  std::size_t slots() const { return rows * values; }
};

std::size_t at_least_0(std::int32_t n) { return n > 0 ? static_cast<std::size_t>(n) : 0; }

pd_status_t ask_for_shape(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t reg_hdl, shape &to)
{
  std::int32_t rows = 0;
  std::int32_t values = 0;
  const pd_status_t status = pipe_stful_query_get_sizes(sess_hdl, dev_tgt, reg_hdl, &rows, &values);
  to = {at_least_0(rows), at_least_0(values)};
  return status;
}

/// A query answered with more than there is room for is believed no further than the room goes.
shape shape_of(const drv_stful_query_t &query, const shape &room)
{
  const std::size_t rows = at_least_0(query.row_count);
  const std::size_t values = at_least_0(query.values_per_row);
  return {rows < room.rows ? rows : room.rows, values < room.values ? values : room.values};
}

/// Packs one answered query and gives the number of values written. `row(i)` is the library's own i-th row, whatever
/// stands in the answer.
template <class Row>
std::uint32_t pack_values(const drv_stful_query_t &query, const shape &room, Row row, std::uint8_t *values)
{
  const shape s = shape_of(query, room);
  for (std::size_t j = 0; j < s.values; ++j)
    for (std::size_t i = 0; i < s.rows; ++i) values[s.rows * j + i] = row(i)[j].bytes[0];
  return static_cast<std::uint32_t>(s.slots());
}

/// Rows of slots of one query, a block for each, and the array of pointers to them that the driver gets. The driver may
/// write to the array, so the library keeps the pointers to itself too: it reads and frees its own blocks alone.
class row_blocks {
 public:
  explicit row_blocks(const shape &room) : shown_(zeroed<drv_stful_spec_t *>(room.rows))
  {
    if (shown_ == nullptr) return;
    if (room.rows > few) own_ = static_cast<drv_stful_spec_t **>(std::malloc(room.rows * sizeof *own_));
    if (own_ == nullptr) return;
    for (; count_ < room.rows; ++count_) {
      own_[count_] = shown_[count_] = zeroed<drv_stful_spec_t>(room.values);
      if (own_[count_] == nullptr) return;
    }
    complete_ = true;
  }
  row_blocks(const row_blocks &) = delete;
  row_blocks &operator=(const row_blocks &) = delete;
  ~row_blocks()
  {
    for (std::size_t i = 0; i < count_; ++i) bf_sys_free(own_[i]);
    if (own_ != room_) std::free(own_);
    give_back(shown_);
  }
  bool complete() const { return complete_; }
  drv_stful_spec_t **shown() const { return shown_; }
  const drv_stful_spec_t *operator[](std::size_t row) const { return own_[row]; }

 private:
  /// Rows of most switches, a row for each pipe, without a further block.
  static constexpr std::size_t few = 32;
  drv_stful_spec_t **shown_;
  drv_stful_spec_t *room_[few];
  drv_stful_spec_t **own_ = room_;
  std::size_t count_ = 0;
  bool complete_ = false;
};

/// Queries of a range with the rows and slots of all of them. They go back in the order in which they were had.
struct range_blocks {
  drv_stful_query_t *queries;
  drv_stful_spec_t **rows;
  drv_stful_spec_t *slots;

  range_blocks(std::size_t query_count, std::size_t row_count, std::size_t slot_count)
      : queries(zeroed<drv_stful_query_t>(query_count)),
        rows(zeroed<drv_stful_spec_t *>(row_count)),
        slots(zeroed<drv_stful_spec_t>(slot_count))
  {
  }
  range_blocks(const range_blocks &) = delete;
  range_blocks &operator=(const range_blocks &) = delete;
  ~range_blocks()
  {
    give_back(queries);
    give_back(rows);
    give_back(slots);
  }
  bool complete() const { return queries != nullptr && rows != nullptr && slots != nullptr; }
};

}  // namespace

pd_status_t read_register_cell(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t reg_hdl, std::uint32_t index,
                               std::uint32_t from_hardware, std::uint8_t *values, std::uint32_t *value_count)
{
  shape room;
  pd_status_t status = ask_for_shape(sess_hdl, dev_tgt, reg_hdl, room);
  if (status != BF_SUCCESS) return status;
  const row_blocks rows(room);
  if (!rows.complete()) return PD_STATUS_NO_MEMORY;

  drv_stful_query_t query{};
  query.rows = rows.shown();
  status = pipe_stful_ent_query(sess_hdl, whole_target(dev_tgt), reg_hdl, index, &query, from_hardware);
  if (status == BF_SUCCESS)
    *value_count = pack_values(
        query, room, [&](std::size_t i) { return rows[i]; }, values);
  return status;
}

pd_status_t read_register_range(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t reg_hdl,
                                std::uint32_t first_index, std::int32_t count, std::uint32_t from_hardware,
                                std::uint32_t *count_read, std::uint8_t *values, std::uint32_t *value_count)
{
  shape room;
  pd_status_t status = ask_for_shape(sess_hdl, dev_tgt, reg_hdl, room);
  if (status != BF_SUCCESS) return status;
  if (count <= 0) {
    *count_read = 0;
    *value_count = 0;
    return BF_SUCCESS;
  }

  const auto wanted = static_cast<std::size_t>(count);
  std::size_t row_total = 0;
  std::size_t slot_total = 0;
  if (__builtin_mul_overflow(wanted, room.rows, &row_total) ||
      __builtin_mul_overflow(row_total, room.values, &slot_total))
    return PD_STATUS_NO_MEMORY;
  const range_blocks blocks(wanted, row_total, slot_total);
  if (!blocks.complete()) return PD_STATUS_NO_MEMORY;
  for (std::size_t k = 0; k < wanted; ++k) {
    drv_stful_query_t &query = blocks.queries[k];
    query.row_count = static_cast<std::int32_t>(room.rows);
    query.values_per_row = static_cast<std::int32_t>(room.values);
    query.rows = blocks.rows + k * room.rows;
    for (std::size_t i = 0; i < room.rows; ++i) query.rows[i] = blocks.slots + (k * room.rows + i) * room.values;
  }

  status = pipe_stful_ent_query_range(sess_hdl, whole_target(dev_tgt), reg_hdl, first_index,
                                      static_cast<std::uint32_t>(count), blocks.queries, count_read, from_hardware);
  if (status != BF_SUCCESS) return status;
  std::uint32_t written = 0;
  for (std::size_t k = 0; k < wanted && k < *count_read; ++k) {
    const auto row = [&](std::size_t i) { return blocks.slots + (k * room.rows + i) * room.values; };
    written += pack_values(blocks.queries[k], room, row, values + written);
  }
  *value_count = written;
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
