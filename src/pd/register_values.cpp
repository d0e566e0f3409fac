// SPDX-License-Identifier: Apache-2.0
#include "register_values.h"

#include <cstddef>
#include <cstdint>

#include "call_conventions.h"

namespace tarvex::pd {

namespace {

/// An allocator may answer null for no elements, which is not a lack of memory.
std::size_t at_least_1(std::size_t count) { return count > 0 ? count : 1; }

/// Zeroed elements from the system allocator, given back at the end of the call.
template <class Element>
class zeroed_block {
 public:
  explicit zeroed_block(std::size_t count)
      : elements_(static_cast<Element *>(bf_sys_calloc(at_least_1(count), sizeof(Element))))
  {
  }
  zeroed_block(const zeroed_block &) = delete;
  zeroed_block &operator=(const zeroed_block &) = delete;
  ~zeroed_block()
  {
    if (elements_ != nullptr) bf_sys_free(elements_);
  }
  Element *get() const { return elements_; }
  Element &operator[](std::size_t i) const { return elements_[i]; }

 private:
  Element *elements_;
};

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

/// Rows of slots of one query, a block for each.
class row_blocks {
 public:
  explicit row_blocks(const shape &room) : rows_(room.rows), count_(room.rows)
  {
    if (rows_.get() == nullptr) return;
    for (std::size_t i = 0; i < count_; ++i) {
      rows_[i] = static_cast<drv_stful_spec_t *>(bf_sys_calloc(at_least_1(room.values), sizeof(drv_stful_spec_t)));
      if (rows_[i] == nullptr) return;
    }
    complete_ = true;
  }
  row_blocks(const row_blocks &) = delete;
  row_blocks &operator=(const row_blocks &) = delete;
  ~row_blocks()
  {
    if (lost_) return;
    for (std::size_t i = 0; rows_.get() != nullptr && i < count_ && rows_[i] != nullptr; ++i) bf_sys_free(rows_[i]);
  }
  bool complete() const { return complete_; }
  drv_stful_spec_t **get() const { return rows_.get(); }

  /// A number that tells the pointers from any others. The driver has them in its hands during a query.
  std::uintptr_t fingerprint() const
  {
    std::uintptr_t print = 0;
    for (std::size_t i = 0; i < count_; ++i) print = (print ^ reinterpret_cast<std::uintptr_t>(rows_[i])) * multiplier;
    return print;
  }
  /// Whether they are still what they were. Pointers that a driver has overwritten are not followed, to free them
  /// neither: the blocks are lost.
  bool unchanged_since(std::uintptr_t print)
  {
    lost_ = fingerprint() != print;
    return !lost_;
  }

 private:
  static constexpr std::uintptr_t multiplier = 0x9e3779b97f4a7c15;
  zeroed_block<drv_stful_spec_t *> rows_;
  std::size_t count_;
  bool complete_ = false;
  bool lost_ = false;
};

}  // namespace

pd_status_t read_register_cell(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t reg_hdl, std::uint32_t index,
                               std::uint32_t from_hardware, std::uint8_t *values, std::uint32_t *value_count)
{
  shape room;
  pd_status_t status = ask_for_shape(sess_hdl, dev_tgt, reg_hdl, room);
  if (status != BF_SUCCESS) return status;
  row_blocks rows(room);
  if (!rows.complete()) return PD_STATUS_NO_MEMORY;
  const std::uintptr_t before = rows.fingerprint();

  drv_stful_query_t query{};
  query.rows = rows.get();
  status = pipe_stful_ent_query(sess_hdl, whole_target(dev_tgt), reg_hdl, index, &query, from_hardware);
  if (!rows.unchanged_since(before)) return status != BF_SUCCESS ? status : pd_status_t{PD_STATUS_UNEXPECTED_REPLY};
  if (status == BF_SUCCESS)
    *value_count = pack_values(
        query, room, [&](auto i) { return rows.get()[i]; }, values);
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
  const zeroed_block<drv_stful_query_t> queries(wanted);
  const zeroed_block<drv_stful_spec_t *> rows(row_total);
  const zeroed_block<drv_stful_spec_t> slots(slot_total);
  if (queries.get() == nullptr || rows.get() == nullptr || slots.get() == nullptr) return PD_STATUS_NO_MEMORY;
  for (std::size_t k = 0; k < wanted; ++k) {
    queries[k].row_count = static_cast<std::int32_t>(room.rows);
    queries[k].values_per_row = static_cast<std::int32_t>(room.values);
    for (std::size_t i = 0; i < room.rows; ++i)
      rows[k * room.rows + i] = slots.get() + (k * room.rows + i) * room.values;
    queries[k].rows = rows.get() + k * room.rows;
  }

  status = pipe_stful_ent_query_range(sess_hdl, whole_target(dev_tgt), reg_hdl, first_index,
                                      static_cast<std::uint32_t>(count), queries.get(), count_read, from_hardware);
  if (status != BF_SUCCESS) return status;
  std::uint32_t written = 0;
  for (std::size_t k = 0; k < wanted && k < *count_read; ++k) {
    const auto row = [&](std::size_t i) { return slots.get() + (k * room.rows + i) * room.values; };
    written += pack_values(queries[k], room, row, values + written);
  }
  *value_count = written;
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
