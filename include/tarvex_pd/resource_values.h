/*
 * Values of counters, meters and the WRED block as a caller holds them, in host order.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_RESOURCE_VALUES_H
#define TARVEX_PD_RESOURCE_VALUES_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Counter cell: counts of packets and of bytes. */
typedef struct pd_counter_value {
  uint64_t packets; /**< packets counted */
  uint64_t bytes;   /**< bytes of those packets */
} pd_counter_value_t;

TARVEX_PD_LAYOUT(sizeof(pd_counter_value_t) == 16);
TARVEX_PD_LAYOUT(offsetof(pd_counter_value_t, packets) == 0);
TARVEX_PD_LAYOUT(offsetof(pd_counter_value_t, bytes) == 8);

/** Values of pd_meter_spec_t.meter_type. */
enum { PD_METER_TYPE_COLOR_AWARE = 0, PD_METER_TYPE_COLOR_UNAWARE = 1 };

/** Meter: two rates with their bursts, in the driver's unit and scale, and the kind of meter. */
typedef struct pd_meter_spec {
  uint32_t cir;        /**< committed rate */
  uint32_t cburst;     /**< committed burst */
  uint32_t pir;        /**< peak rate */
  uint32_t pburst;     /**< peak burst */
  uint32_t meter_type; /**< the pipeline's own meters take PD_METER_TYPE_COLOR_UNAWARE alone */
} pd_meter_spec_t;

TARVEX_PD_LAYOUT(sizeof(pd_meter_spec_t) == 20);
TARVEX_PD_LAYOUT(offsetof(pd_meter_spec_t, cir) == 0);
TARVEX_PD_LAYOUT(offsetof(pd_meter_spec_t, cburst) == 4);
TARVEX_PD_LAYOUT(offsetof(pd_meter_spec_t, pir) == 8);
TARVEX_PD_LAYOUT(offsetof(pd_meter_spec_t, pburst) == 12);
TARVEX_PD_LAYOUT(offsetof(pd_meter_spec_t, meter_type) == 16);

/** WRED cell, 16 bytes. */
typedef struct pd_wred_spec {
  float time_constant;    /**< of the average, in the driver's unit */
  uint32_t min_threshold; /**< the lower threshold */
  uint32_t max_threshold; /**< the upper threshold */
  float max_probability;  /**< of a drop at the upper threshold */
} pd_wred_spec_t;

TARVEX_PD_LAYOUT(sizeof(pd_wred_spec_t) == 16);
TARVEX_PD_LAYOUT(offsetof(pd_wred_spec_t, time_constant) == 0);
TARVEX_PD_LAYOUT(offsetof(pd_wred_spec_t, min_threshold) == 4);
TARVEX_PD_LAYOUT(offsetof(pd_wred_spec_t, max_threshold) == 8);
TARVEX_PD_LAYOUT(offsetof(pd_wred_spec_t, max_probability) == 12);

#ifdef __cplusplus
}
#endif

#endif
