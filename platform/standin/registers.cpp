// Driver functions of the registers. A cell holds a value for each of its rows and positions; software and hardware are
// one here, so that a read from hardware and a synchronisation find nothing new.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "resource_cells.h"

namespace tarvex::standin {
namespace {

/// A driver function on a register: body(register).
template <class Body>
pd_status_t serve_register(const char *function, std::uint32_t dev_id, std::uint32_t reg_hdl, Body body)
{
  return serve_resource(function, dev_id, reg_hdl, resource_kind::register_,
                        [&](device &, indirect_resource &reg) { return body(reg); });
}

std::size_t values_of(const indirect_resource &reg) { return std::size_t{reg.rows} * reg.values_per_row; }

/// The cell as it stands, made where it is not there yet.
register_cell &cell_of(indirect_resource &reg, std::uint32_t index)
{
  return reg.registers.try_emplace(index, values_of(reg), reg.register_rest).first->second;
}

/// Fills a caller's query, whose rows are big enough.
pd_status_t fill(const indirect_resource &reg, std::uint32_t index, drv_stful_query_t *query)
{
  if (query == nullptr || query->rows == nullptr) return STANDIN_BAD_ARGUMENT;
  query->row_count = static_cast<std::int32_t>(reg.rows);
  query->values_per_row = static_cast<std::int32_t>(reg.values_per_row);
  const auto cell = reg.registers.find(index);
  for (std::uint32_t row = 0; row < reg.rows; ++row) {
    if (query->rows[row] == nullptr) return STANDIN_BAD_ARGUMENT;
    for (std::uint32_t at = 0; at < reg.values_per_row; ++at) {
      const std::size_t place = std::size_t{row} * reg.values_per_row + at;
      const std::uint8_t value = cell == reg.registers.end() ? reg.register_rest : cell->second[place];
      query->rows[row][at] = {{value}};
    }
  }
  return success;
}

/// Value that a reset gives: the one given, or 0 without one.
std::uint8_t reset_value(const drv_stful_spec_t *spec) { return spec == nullptr ? std::uint8_t{0} : spec->bytes[0]; }

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_stful_query_get_sizes(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, int32_t *row_count,
                                       int32_t *values_per_row)
{
  return serve_register(__func__, device_of(dev_tgt), reg_hdl, [&](const indirect_resource &reg) -> pd_status_t {
    if (row_count == nullptr || values_per_row == nullptr) return STANDIN_BAD_ARGUMENT;
    *row_count = static_cast<std::int32_t>(reg.rows);
    *values_per_row = static_cast<std::int32_t>(reg.values_per_row);
    return success;
  });
}

pd_status_t pipe_stful_ent_query(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t index,
                                 drv_stful_query_t *query, uint32_t)
{
  return serve_cell(__func__, device_of(dev_tgt), reg_hdl, resource_kind::register_, index,
                    [&](const indirect_resource &reg) { return fill(reg, index, query); });
}

pd_status_t pipe_stful_ent_query_range(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t first_index,
                                       uint32_t count, drv_stful_query_t *queries, uint32_t *count_read, uint32_t)
{
  return serve_cell(__func__, device_of(dev_tgt), reg_hdl, resource_kind::register_, first_index,
                    [&](const indirect_resource &reg) -> pd_status_t {
                      if (queries == nullptr || count_read == nullptr) return STANDIN_BAD_ARGUMENT;
                      const std::uint32_t readable = std::min(count, reg.limit - first_index);
                      for (std::uint32_t i = 0; i < readable; ++i)
                        if (const pd_status_t status = fill(reg, first_index + i, queries + i)) return status;
                      *count_read = readable;
                      return success;
                    });
}

pd_status_t pipe_stful_ent_set(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t index,
                               drv_stful_spec_t *spec, uint32_t)
{
  return serve_cell(__func__, device_of(dev_tgt), reg_hdl, resource_kind::register_, index,
                    [&](indirect_resource &reg) -> pd_status_t {
                      if (spec == nullptr) return STANDIN_BAD_ARGUMENT;
                      cell_of(reg, index).assign(values_of(reg), spec->bytes[0]);
                      return success;
                    });
}

pd_status_t pipe_stful_database_sync(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, pd_callback_t cb,
                                     void *cookie)
{
  return serve_resource(__func__, device_of(dev_tgt), reg_hdl, resource_kind::register_,
                        [&](device &dev, const indirect_resource &) {
                          dev.notify<standin_done_cb_t>({cb, cookie}, dev.id, reg_hdl);
                          return success;
                        });
}

pd_status_t pipe_stful_table_reset(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, drv_stful_spec_t *spec)
{
  return serve_register(__func__, device_of(dev_tgt), reg_hdl, [&](indirect_resource &reg) {
    reg.registers.clear();
    reg.register_rest = reset_value(spec);
    return success;
  });
}

pd_status_t pipe_stful_table_reset_range(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t first_index,
                                         uint32_t count, drv_stful_spec_t *spec)
{
  return serve_register(__func__, device_of(dev_tgt), reg_hdl, [&](indirect_resource &reg) -> pd_status_t {
    if (std::uint64_t{first_index} + count > reg.limit) return STANDIN_BAD_INDEX;
    const std::uint8_t value = reset_value(spec);
    if (value == reg.register_rest) {
      std::erase_if(reg.registers, [&](const auto &cell) { return cell.first - first_index < count; });
      return success;
    }
    for (std::uint32_t i = 0; i < count; ++i) cell_of(reg, first_index + i).assign(values_of(reg), value);
    return success;
  });
}

pd_status_t pipe_stful_direct_ent_query(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                        drv_stful_query_t *query, uint32_t)
{
  return serve_entry(__func__, dev_id, tbl_hdl, entry_hdl,
                     [&](device &, match_table &table, entry_view entry) -> pd_status_t {
                       if (table.layout().direct(resource_kind::register_) == nullptr) return STANDIN_BAD_RESOURCE;
                       if (query == nullptr || query->rows == nullptr || query->rows[0] == nullptr)
                         return STANDIN_BAD_ARGUMENT;
                       query->row_count = 1;
                       query->values_per_row = 1;
                       query->rows[0][0] = {{static_cast<std::uint8_t>(entry.register_value())}};
                       return success;
                     });
}

pd_status_t pipe_stful_direct_database_sync(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, pd_callback_t cb,
                                            void *cookie)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (table.layout().direct(resource_kind::register_) == nullptr) return STANDIN_BAD_RESOURCE;
    dev.notify<standin_done_cb_t>({cb, cookie}, dev.id, tbl_hdl);
    return success;
  });
}

pd_status_t standin_register_shape(uint32_t dev_id, uint32_t reg_hdl, uint32_t rows, uint32_t values_per_row)
{
  return on_device(dev_id, [&](device &dev) -> pd_status_t {
    indirect_resource *const reg = dev.resource(reg_hdl, resource_kind::register_);
    if (reg == nullptr) return STANDIN_NO_OBJECT;
    if (rows == 0 || values_per_row == 0 || rows > 0xffff || values_per_row > 0xffff) return STANDIN_BAD_ARGUMENT;
    reg->rows = rows;
    reg->values_per_row = values_per_row;
    reg->registers.clear();
    reg->register_rest = 0;
    return success;
  });
}

pd_status_t standin_register_value(uint32_t dev_id, uint32_t reg_hdl, uint32_t index, uint32_t row, uint32_t position,
                                   uint8_t value)
{
  return on_device(dev_id, [&](device &dev) -> pd_status_t {
    indirect_resource *const reg = dev.resource(reg_hdl, resource_kind::register_);
    if (reg == nullptr) return STANDIN_NO_OBJECT;
    if (index >= reg->limit || row >= reg->rows || position >= reg->values_per_row) return STANDIN_BAD_INDEX;
    cell_of(*reg, index)[std::size_t{row} * reg->values_per_row + position] = value;
    return success;
  });
}
