/*
 * Any meter or WRED block of the switch, by the caller's handle.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_METER_ACCESS_H
#define TARVEX_PD_METER_ACCESS_H

#include "tarvex_pd/resource_values.h"
#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/**
 * Sets an indirect meter that counts bytes.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param meter_hdl  the meter
 * @param index  index of the cell
 * @param meter_spec  rates and bursts in bytes, in the driver's scale; read during the call only
 * @param has_pre_color  not 0: the meter has a pre-colour input; low 8 bits
 * @return 0, the driver's status, or PD_STATUS_INVALID_ARG without a driver call for a meter_type that is neither
 *   PD_METER_TYPE_COLOR_UNAWARE nor, with has_pre_color, PD_METER_TYPE_COLOR_AWARE
 */
pd_status_t p4_pd_tarvex_switch_bytes_meter_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl,
                                                uint32_t index, const pd_meter_spec_t *meter_spec,
                                                pd_flag8_t has_pre_color);

/**
 * Reads an indirect meter that counts bytes.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param meter_hdl  the meter
 * @param index  index of the cell
 * @param meter_spec  receives rates and bursts, the low 32 bits of each; stays as it was after a failure
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_bytes_meter_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl,
                                                 uint32_t index, pd_meter_spec_t *meter_spec);

/**
 * Sets an indirect meter that counts packets.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param meter_hdl  the meter
 * @param index  index of the cell
 * @param meter_spec  rates and bursts in packets, in the driver's scale; read during the call only
 * @param has_pre_color  not 0: the meter has a pre-colour input; low 8 bits
 * @return 0, the driver's status, or PD_STATUS_INVALID_ARG without a driver call for a meter_type that is neither
 *   PD_METER_TYPE_COLOR_UNAWARE nor, with has_pre_color, PD_METER_TYPE_COLOR_AWARE
 */
pd_status_t p4_pd_tarvex_switch_packets_meter_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl,
                                                  uint32_t index, const pd_meter_spec_t *meter_spec,
                                                  pd_flag8_t has_pre_color);

/**
 * Reads an indirect meter that counts packets.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param meter_hdl  the meter
 * @param index  index of the cell
 * @param meter_spec  receives rates and bursts, the low 32 bits of each; stays as it was after a failure
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_packets_meter_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl,
                                                   uint32_t index, pd_meter_spec_t *meter_spec);

/**
 * Sets a cell of a WRED block.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param wred_hdl  the WRED block
 * @param index  index of the cell
 * @param wred_spec  value, handed on bit for bit; read during the call only
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_wred_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t wred_hdl,
                                         uint32_t index, const pd_wred_spec_t *wred_spec);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
