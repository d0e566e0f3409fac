// The way to the indirect resources of a device and their cells.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "device.h"

namespace tarvex::standin {

/// A driver function on an indirect resource: body(device, resource).
template <class Body>
pd_status_t serve_resource(const char *function, std::uint32_t dev_id, std::uint32_t handle, resource_kind kind,
                           Body body)
{
  return serve(function, dev_id, handle, [&](device &dev) {
    indirect_resource *const found = dev.resource(handle, kind);
    return found == nullptr ? pd_status_t{STANDIN_NO_OBJECT} : body(dev, *found);
  });
}

/// A driver function on a cell of one: body(resource), the index being good.
template <class Body>
pd_status_t serve_cell(const char *function, std::uint32_t dev_id, std::uint32_t handle, resource_kind kind,
                       std::uint32_t index, Body body)
{
  return serve_resource(function, dev_id, handle, kind, [&](device &, indirect_resource &resource) {
    return index < resource.limit ? body(resource) : pd_status_t{STANDIN_BAD_INDEX};
  });
}

/// Reads a cell of one: what was never written reads as zeros.
template <class Cells, class Value>
pd_status_t read_cell(const Cells &cells, std::uint32_t index, Value *to)
{
  if (to == nullptr) return STANDIN_BAD_ARGUMENT;
  const auto found = cells.find(index);
  *to = found == cells.end() ? Value{} : found->second;
  return success;
}

/// Writes one.
template <class Cells, class Value>
pd_status_t write_cell(Cells &cells, std::uint32_t index, const Value *from)
{
  if (from == nullptr) return STANDIN_BAD_ARGUMENT;
  cells[index] = *from;
  return success;
}

}  // namespace tarvex::standin
