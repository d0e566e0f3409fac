/*
 * Start and stop of the library, the device events that the driver calls it for, and the names of actions.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_LIFECYCLE_H
#define TARVEX_PD_LIFECYCLE_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

struct cJSON;

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/** The library's client handle with the driver: 0 until p4_pd_tarvex_switch_init has run, kept by cleanup. */
extern uint32_t bf_drv_hdl;

/**
 * Starts the library: creates the member-selector states of the five action profiles, registers the client
 * "p4_pd_tarvex_switch_pd" with the driver and hands it the three device events below. Call it once, from one thread,
 * before anything that concerns members or groups. The states live to the end of the process.
 *
 * A driver that refuses the registration of the client stops the process at an assertion.
 *
 * @return the driver's status of the registration of the callbacks, 0 for success
 */
pd_status_t p4_pd_tarvex_switch_init(void);

/**
 * Takes the client off the driver, which no longer calls back. The member-selector states stay. Call it once, from one
 * thread, after all other use.
 *
 * @return the driver's status
 */
pd_status_t p4_pd_tarvex_switch_cleanup(void);

/** Does nothing: the library keeps no state of a device that would need it. */
void p4_pd_tarvex_switch_device_state_cleanup(void);

/**
 * Device event: forgets a device in the five member-selector states, then its transaction state. The driver calls it.
 *
 * @param dev_id  the device; all 32 bits are handed on
 * @return 0
 */
pd_status_t p4_pd_tarvex_switch_dev_remove(uint32_t dev_id);

/**
 * Device event: writes "name" and "act_profs" with the member-selector state of each profile into `log`. The driver
 * calls it. The results of cJSON are not looked at: when memory runs out, the document lacks items, an item that found
 * no place in it leaks, and the member-selector service may be handed a null object.
 *
 * @param dev_id  the device, its low 8 bits
 * @param log     a JSON object that stays the driver's; null does nothing
 * @return 0
 */
pd_status_t p4_pd_tarvex_switch_dev_log(uint32_t dev_id, struct cJSON *log);

/**
 * Device event: reads back what p4_pd_tarvex_switch_dev_log wrote. The elements of "act_profs" are matched by their
 * "name", whole and by case, in the order of the document; a name of no profile is passed over, and so is an element
 * whose "name" is missing or has no string value. A document without "act_profs", or with nothing in it, does nothing.
 * The kinds of the items are not checked.
 *
 * @param dev_id  the device, its low 8 bits
 * @param log     a JSON object that stays the driver's; null does nothing
 * @return 0
 */
pd_status_t p4_pd_tarvex_switch_dev_restore(uint32_t dev_id, struct cJSON *log);

/**
 * Has the driver restore the state of a virtual device after a warm restart, and rebuilds the member-selector states of
 * the five action profiles from what the driver reports of its tables on the way. The five arguments are the driver's:
 * they are handed on with all their bits.
 *
 * @param argument_1  the first of them
 * @param argument_2  the second
 * @param argument_3  the third
 * @param argument_4  the fourth
 * @param argument_5  the fifth
 * @return the driver's status
 */
pd_status_t p4_pd_tarvex_switch_restore_virtual_dev_state(uintptr_t argument_1, uintptr_t argument_2,
                                                          uintptr_t argument_3, uintptr_t argument_4,
                                                          uintptr_t argument_5);

/** Actions of the pipeline, and the value of the action enumeration that stands for none. */
#define P4_PD_TARVEX_SWITCH_ACTION_COUNT 231

/** Room for the name of any action, its NUL included. */
#define P4_PD_TARVEX_SWITCH_ACTION_NAME_SIZE 61

/** Names of the actions with the prefix "p4_pd_tarvex_switch_", indexed by enumeration value. */
extern const char *const p4_pd_tarvex_switch_action_name_strings[P4_PD_TARVEX_SWITCH_ACTION_COUNT];

/**
 * The name of an action, with its prefix.
 *
 * @param action  enumeration value
 * @return a constant string of the library, or null for a value above 230
 */
const char *p4_pd_tarvex_switch_action_enum_to_string(uint32_t action);

/**
 * The enumeration value of an action's name.
 *
 * @param name  the name, exactly, with its prefix; may be null
 * @return the value, or 231 for a name that is no action's and for null
 */
uint32_t p4_pd_tarvex_switch_action_string_to_enum(const char *name);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
