/*
 * Scalars, statuses and small constants that every function of the interface uses.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_TYPES_H
#define TARVEX_PD_TYPES_H

#include <stddef.h>
#include <stdint.h>

#include "tarvex_pd/text_sizes.h"

/** States a layout that the interface depends on, for the compiler to check. */
#ifdef __cplusplus
extern "C" {
#define TARVEX_PD_LAYOUT(condition) static_assert(condition, #condition)
#else
#define TARVEX_PD_LAYOUT(condition) _Static_assert(condition, #condition)
#endif

/** Session of the caller with the driver. The library never opens or closes one. */
typedef uint32_t pd_sess_hdl_t;

/**
 * Device target, by value: bits 0 to 31 device id, bits 32 to 47 pipe id. Bits 48 to 63 carry nothing and
 * never reach the driver. Make one with pd_dev_tgt().
 */
typedef uint64_t pd_dev_tgt_t;

/** Handle of a match entry; the driver makes it. */
typedef uint32_t pd_entry_hdl_t;
/** Handle of a member of an action profile; the driver makes it. */
typedef uint32_t pd_mbr_hdl_t;
/** Handle of a selector group; the driver makes it. */
typedef uint32_t pd_grp_hdl_t;

/** Result of an operation: 0 (BF_SUCCESS), a status of the driver, or one of the library's own below. */
typedef uint32_t pd_status_t;

/**
 * A device without a pipe, where the driver takes 8 bits: only the low 8 bits count, whatever stands above
 * them. (Functions that hand all 32 bits of a device id on say so.)
 */
typedef uint32_t pd_dev_id_t;

/** A flag of 8 bits handed to the driver: only the low 8 bits count. */
typedef uint32_t pd_flag8_t;

/** A callback that the driver keeps and calls; its signature is the driver's. Cast the function to this type. */
typedef void (*pd_callback_t)(void);

/** Statuses that the library itself gives. Every other non-zero status is the driver's, unchanged. */
enum {
  BF_SUCCESS = 0,
  PD_STATUS_NO_MEMORY = 2, /**< a working block could not be had from bf_sys_calloc */
  PD_STATUS_INVALID_ARG =
      3, /**< an argument that the operation cannot take; for hash calculations also a reply that is not theirs */
  PD_STATUS_UNEXPECTED_REPLY = 6 /**< the driver gave an entry of another kind than the table holds */
};
/** A member is modified by the function of another action than its own; the driver was not called. */
#define PD_STATUS_WRONG_MEMBER_ACTION 0xffffffffu

/** State of a member within a selector group. */
enum { P4_PD_GRP_MBR_STATE_ACTIVE = 0, P4_PD_GRP_MBR_STATE_INACTIVE = 1 };

/** All pipes of a device, as a pipe id. */
#define PD_ALL_PIPES 0xffffu

/** The target of pipe `pipe_id` of device `device_id`. */
static inline pd_dev_tgt_t pd_dev_tgt(uint32_t device_id, uint16_t pipe_id)
{
  return (pd_dev_tgt_t)device_id | ((pd_dev_tgt_t)pipe_id << 32);
}

#ifdef __cplusplus
}
#endif

#endif
