/*
 * Records that travel between the library and the switch driver. Their layout is binary interface: sizes and
 * offsets below are asserted at compile time.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_DRIVER_RECORDS_H
#define TARVEX_PD_DRIVER_RECORDS_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Match key of an entry, 40 bytes. */
typedef struct drv_match_spec {
  uint32_t partition_index; /**< partition of a partitioned lpm table, else 0 */
  uint16_t key_bits;        /**< sum of the field widths */
  uint16_t key_bytes;       /**< bytes at key_value and at key_mask */
  uint8_t *key_value;       /**< null on read-back: the entry has no key */
  uint8_t *key_mask;        /**< of the live bits: 1 where the key counts */
  uint16_t reserved[4];     /**< always 0 */
  uint32_t priority;        /**< smaller wins */
  uint32_t reserved_36;     /**< always 0 */
} drv_match_spec_t;

TARVEX_PD_LAYOUT(sizeof(drv_match_spec_t) == 40);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, partition_index) == 0);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, key_bits) == 4);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, key_bytes) == 6);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, key_value) == 8);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, key_mask) == 16);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, reserved) == 24);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, priority) == 32);
TARVEX_PD_LAYOUT(offsetof(drv_match_spec_t, reserved_36) == 36);

/** Action data, 16 bytes. */
typedef struct drv_act_data {
  uint16_t data_bits;  /**< sum of the parameter widths */
  uint16_t data_bytes; /**< bytes at data */
  uint8_t reserved[4]; /**< always 0 */
  uint8_t *data;       /**< parameters, the highest byte of each first */
} drv_act_data_t;

TARVEX_PD_LAYOUT(sizeof(drv_act_data_t) == 16);
TARVEX_PD_LAYOUT(offsetof(drv_act_data_t, data_bits) == 0);
TARVEX_PD_LAYOUT(offsetof(drv_act_data_t, data_bytes) == 2);
TARVEX_PD_LAYOUT(offsetof(drv_act_data_t, reserved) == 4);
TARVEX_PD_LAYOUT(offsetof(drv_act_data_t, data) == 8);

/** Values of drv_meter_spec_t's unit kinds. */
enum { DRV_METER_UNIT_BYTES = 0, DRV_METER_UNIT_PACKETS = 1 };

/** Meter value, 56 bytes. Rates and bursts are in the unit of unit_kind and the driver's scale. */
typedef struct drv_meter_spec {
  uint32_t color_mode;       /**< 0 colour aware, 1 colour unaware */
  uint32_t reserved_4;       /**< carries nothing */
  uint32_t first_unit_kind;  /**< DRV_METER_UNIT_BYTES or DRV_METER_UNIT_PACKETS */
  uint32_t reserved_12;      /**< carries nothing */
  uint64_t first_rate;       /**< committed rate */
  uint64_t first_burst;      /**< committed burst */
  uint32_t second_unit_kind; /**< same as the first */
  uint32_t reserved_36;      /**< carries nothing */
  uint64_t second_rate;      /**< peak rate */
  uint64_t second_burst;     /**< peak burst */
} drv_meter_spec_t;

TARVEX_PD_LAYOUT(sizeof(drv_meter_spec_t) == 56);
TARVEX_PD_LAYOUT(offsetof(drv_meter_spec_t, color_mode) == 0);
TARVEX_PD_LAYOUT(offsetof(drv_meter_spec_t, first_unit_kind) == 8);
TARVEX_PD_LAYOUT(offsetof(drv_meter_spec_t, first_rate) == 16);
TARVEX_PD_LAYOUT(offsetof(drv_meter_spec_t, first_burst) == 24);
TARVEX_PD_LAYOUT(offsetof(drv_meter_spec_t, second_unit_kind) == 32);
TARVEX_PD_LAYOUT(offsetof(drv_meter_spec_t, second_rate) == 40);
TARVEX_PD_LAYOUT(offsetof(drv_meter_spec_t, second_burst) == 48);

/** How a resource hangs on an entry: values of drv_res_spec_t.res_tag. */
enum {
  DRV_RES_NOT_TOLD = 0, /**< nothing is told, res_value is not valid */
  DRV_RES_ATTACHED = 1, /**< attached to the entry, with this value or index */
  DRV_RES_DETACHED = 2  /**< told as not attached */
};

/** One resource reference, 72 bytes. */
typedef struct drv_res_spec {
  uint32_t res_hdl;   /**< the resource */
  uint32_t res_index; /**< index into an indirect resource, 0 for a direct one */
  union {
    uint8_t bytes[56];
    drv_meter_spec_t meter;  /**< direct meter */
    uint64_t register_value; /**< direct register */
  } res_value;               /**< all zero for counters and indirect references */
  uint32_t res_tag;          /**< how it hangs on the entry */
  uint32_t reserved_68;      /**< always 0 */
} drv_res_spec_t;

TARVEX_PD_LAYOUT(sizeof(drv_res_spec_t) == 72);
TARVEX_PD_LAYOUT(offsetof(drv_res_spec_t, res_hdl) == 0);
TARVEX_PD_LAYOUT(offsetof(drv_res_spec_t, res_index) == 4);
TARVEX_PD_LAYOUT(offsetof(drv_res_spec_t, res_value) == 8);
TARVEX_PD_LAYOUT(offsetof(drv_res_spec_t, res_value.register_value) == 8);
TARVEX_PD_LAYOUT(sizeof(((drv_res_spec_t *)0)->res_value) == 56);
TARVEX_PD_LAYOUT(offsetof(drv_res_spec_t, res_tag) == 64);
TARVEX_PD_LAYOUT(offsetof(drv_res_spec_t, reserved_68) == 68);

/** What an action record carries: values of drv_action_spec_t.act_kinds. */
enum { DRV_ACT_DATA = 1, DRV_ACT_MEMBER = 2, DRV_ACT_GROUP = 4 };

/** Resource references that an action record has room for. */
#define DRV_ACTION_MAX_RES 4

/** Action of an entry, 328 bytes. */
typedef struct drv_action_spec {
  uint8_t act_kinds;                      /**< DRV_ACT_DATA, DRV_ACT_MEMBER or DRV_ACT_GROUP; 0 on member writes */
  uint8_t reserved[7];                    /**< always 0 */
  drv_act_data_t act_data;                /**< with DRV_ACT_DATA */
  pd_mbr_hdl_t mbr_hdl;                   /**< with DRV_ACT_MEMBER */
  pd_grp_hdl_t grp_hdl;                   /**< with DRV_ACT_GROUP */
  drv_res_spec_t res[DRV_ACTION_MAX_RES]; /**< resource references */
  uint32_t res_count;                     /**< used entries of res */
  uint32_t reserved_324;                  /**< always 0 */
} drv_action_spec_t;

TARVEX_PD_LAYOUT(sizeof(drv_action_spec_t) == 328);
TARVEX_PD_LAYOUT(offsetof(drv_action_spec_t, act_kinds) == 0);
TARVEX_PD_LAYOUT(offsetof(drv_action_spec_t, act_data) == 8);
TARVEX_PD_LAYOUT(offsetof(drv_action_spec_t, mbr_hdl) == 24);
TARVEX_PD_LAYOUT(offsetof(drv_action_spec_t, grp_hdl) == 28);
TARVEX_PD_LAYOUT(offsetof(drv_action_spec_t, res) == 32);
TARVEX_PD_LAYOUT(offsetof(drv_action_spec_t, res_count) == 320);
TARVEX_PD_LAYOUT(offsetof(drv_action_spec_t, reserved_324) == 324);

/** A resource of an entry read back: element of the list that the action unbuilders take. */
typedef struct pd_res_spec {
  uint32_t res_hdl;   /**< the resource */
  uint32_t res_index; /**< index into an indirect resource */
} pd_res_spec_t;

TARVEX_PD_LAYOUT(sizeof(pd_res_spec_t) == 8);
TARVEX_PD_LAYOUT(offsetof(pd_res_spec_t, res_hdl) == 0);
TARVEX_PD_LAYOUT(offsetof(pd_res_spec_t, res_index) == 4);

/** Parameters of an idle time, 40 bytes, by value. The library gives no meaning to the words. */
typedef struct pd_idle_params {
  uint32_t word_0;      /**< the driver's */
  uint32_t reserved_4;  /**< carries nothing */
  uint32_t word_1;      /**< the driver's */
  uint32_t word_2;      /**< the driver's */
  uint32_t word_3;      /**< the driver's */
  uint32_t reserved_20; /**< carries nothing */
  uintptr_t word_4;     /**< the driver's */
  uintptr_t word_5;     /**< the driver's */
} pd_idle_params_t;

TARVEX_PD_LAYOUT(sizeof(pd_idle_params_t) == 40);
TARVEX_PD_LAYOUT(offsetof(pd_idle_params_t, word_0) == 0);
TARVEX_PD_LAYOUT(offsetof(pd_idle_params_t, word_1) == 8);
TARVEX_PD_LAYOUT(offsetof(pd_idle_params_t, word_2) == 12);
TARVEX_PD_LAYOUT(offsetof(pd_idle_params_t, word_3) == 16);
TARVEX_PD_LAYOUT(offsetof(pd_idle_params_t, word_4) == 24);
TARVEX_PD_LAYOUT(offsetof(pd_idle_params_t, word_5) == 32);

/** Slot of one register value, 8 bytes: the value stands in the first. */
typedef struct drv_stful_spec {
  uint8_t bytes[8]; /**< the value in byte 0 */
} drv_stful_spec_t;

/** Answer to a register read, 16 bytes: `row_count` rows of `values_per_row` slots, in the caller's memory. */
typedef struct drv_stful_query {
  int32_t row_count;       /**< rows that `rows` points at */
  int32_t values_per_row;  /**< slots of each row */
  drv_stful_spec_t **rows; /**< the rows */
} drv_stful_query_t;

TARVEX_PD_LAYOUT(sizeof(drv_stful_spec_t) == 8);
TARVEX_PD_LAYOUT(sizeof(drv_stful_query_t) == 16);
TARVEX_PD_LAYOUT(offsetof(drv_stful_query_t, row_count) == 0);
TARVEX_PD_LAYOUT(offsetof(drv_stful_query_t, values_per_row) == 4);
TARVEX_PD_LAYOUT(offsetof(drv_stful_query_t, rows) == 8);

#ifdef __cplusplus
}
#endif

#endif
