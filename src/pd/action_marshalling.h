// Builds the driver's action record from a caller's parameter structure, and the structure from data read back.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes.h"
#include "rows.h"
#include "tarvex_pd/driver_records.h"

namespace tarvex::pd {

/// Action record with its data, on the stack of one call. `data` is never null for the driver, so an action without
/// parameters has a byte to point at.
template <const action_row &A>
struct action_record {
  drv_action_spec_t spec;
  std::uint8_t data[A.data_bytes > 0 ? A.data_bytes : 1];
};

template <const action_row &A, std::size_t I>
[[gnu::always_inline]] inline void build_param(std::uint8_t *data, const void *action_spec)
{
  constexpr param_row p = A.params[I];
  if constexpr (p.resource_index)
    std::memset(data + p.data_at, 0, p.data_size);
  else
    put_big_endian<p.data_size>(data + p.data_at, load_member<p.member_size>(action_spec, p.member));
}

/// Clears the record and fills the action data.
template <const action_row &A>
[[gnu::always_inline]] inline void build_action(action_record<A> &action, const void *action_spec,
                                                std::uint8_t act_kinds)
{
  std::memset(&action.spec, 0, sizeof action.spec);
  action.spec.act_kinds = act_kinds;
  action.spec.act_data.data_bits = A.data_bits;
  action.spec.act_data.data_bytes = A.data_bytes;
  action.spec.act_data.data = action.data;
  [&]<std::size_t... I>(std::index_sequence<I...>) __attribute__((always_inline))
  {
    (build_param<A, I>(action.data, action_spec), ...);
  }
  (param_indices<A>{});
}

/// The value of the action's resource index parameter.
template <const action_row &A>
[[gnu::always_inline]] inline std::uint32_t resource_index(const void *action_spec)
{
  constexpr std::size_t index = [] {
    std::size_t i = 0;
    while (!A.params[i].resource_index) ++i;
    return i;
  }();
  return load_member<A.params[index].member_size>(action_spec, A.params[index].member);
}

/// An index parameter read back: 0xffffffff without any resource, else the index of its own resource (the last that
/// is found, in the order of the action's resources), or 0 if the list holds only others.
template <const action_row &A>
inline std::uint32_t index_from(const pd_res_spec_t *list, std::uint32_t count)
{
  if (count == 0) return 0xffff'ffffu;
  std::uint32_t index = 0;
  for (std::size_t r = 0; r < A.index_resource_count; ++r)
    for (std::uint32_t i = 0; i < count; ++i)
      if (list[i].res_hdl == A.index_resources[r]) index = list[i].res_index;
  return index;
}

template <const action_row &A, std::size_t I>
[[gnu::always_inline]] inline void unbuild_param(const std::uint8_t *data, const pd_res_spec_t *list,
                                                 std::uint32_t count, void *action_spec)
{
  constexpr param_row p = A.params[I];
  if constexpr (p.resource_index)
    store_member<p.member_size>(action_spec, p.member, index_from<A>(list, count));
  else
    store_member<p.member_size>(action_spec, p.member, get_big_endian<p.data_size>(data + p.data_at));
}

/// Clears the caller's parameter structure, room included, and fills its members.
template <const action_row &A>
[[gnu::always_inline]] inline void fill_action(const drv_act_data_t *act_data, const pd_res_spec_t *list,
                                               std::uint32_t count, void *action_spec)
{
  const std::uint8_t *const data = act_data->data;
  std::memset(action_spec, 0, A.record_size);
  [&]<std::size_t... I>(std::index_sequence<I...>) __attribute__((always_inline))
  {
    (unbuild_param<A, I>(data, list, count, action_spec), ...);
  }
  (param_indices<A>{});
}

/// The same as one instance for all but the reads that have to be fast.
template <const action_row &A>
[[gnu::noinline]] void unbuild_action(const drv_act_data_t *act_data, const pd_res_spec_t *list, std::uint32_t count,
                                      void *action_spec)
{
  fill_action<A>(act_data, list, count, action_spec);
}

}  // namespace tarvex::pd
