// Idle time of the tables that keep one. Ageing itself is the driver's.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"
#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// The words are copied one by one, so that what stands in the gaps between them does not travel.
template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t idle_tmo_enable(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                          const pd_idle_params_t &params)
{
  pd_idle_params_t words{};
  words.word_0 = params.word_0;
  words.word_1 = params.word_1;
  words.word_2 = params.word_2;
  words.word_3 = params.word_3;
  words.word_4 = params.word_4;
  words.word_5 = params.word_5;
  return pipe_mgr_idle_tmo_enable(sess_hdl, low_byte(dev_id), T.handle, words);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t idle_tmo_disable(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id)
{
  return pipe_mgr_idle_tmo_disable(sess_hdl, low_byte(dev_id), T.handle);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t idle_register_tmo_cb(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                               pd_callback_t cb, void *cookie)
{
  return pipe_mgr_idle_register_tmo_cb(sess_hdl, low_byte(dev_id), T.handle, cb, cookie);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t update_hit_state(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                           std::uintptr_t first, std::uintptr_t second)
{
  return pipe_mgr_idle_time_update_hit_state(sess_hdl, low_byte(dev_id), T.handle, first, second);
}

/// The output is written whatever the status.
template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_hit_state(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                        pd_entry_hdl_t entry_hdl, std::uint32_t *hit_state)
{
  std::uint32_t found = 0;
  const pd_status_t status = pipe_mgr_idle_time_get_hit_state(sess_hdl, low_byte(dev_id), T.handle, entry_hdl, &found);
  *hit_state = found;
  return status;
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t set_ttl(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                                  std::uint32_t ttl)
{
  return pipe_mgr_mat_ent_set_idle_ttl(sess_hdl, low_byte(dev_id), T.handle, entry_hdl, ttl, 0);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_ttl(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                                  std::uint32_t *ttl)
{
  return pipe_mgr_mat_ent_get_idle_ttl(sess_hdl, low_byte(dev_id), T.handle, entry_hdl, ttl);
}

}  // namespace tarvex::pd
