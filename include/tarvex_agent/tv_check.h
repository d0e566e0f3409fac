/*
 * For development: finds a value that a structure holds and its field cannot. The library itself refuses no value; what
 * does not fit is cut off, and the status is 0.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_AGENT_TV_CHECK_H
#define TARVEX_AGENT_TV_CHECK_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/** What the check found. */
typedef enum tv_check_result {
  TV_CHECK_FITS = 0,
  TV_CHECK_TOO_WIDE,      /**< a member has bits that its field does not have */
  TV_CHECK_UNKNOWN_HANDLE /**< no table and no action has this handle */
} tv_check_result_t;

/** Bytes that are enough for the text of any finding, with its NUL. */
#define TV_CHECK_TEXT_SIZE 128

/**
 * Looks for the first member of a structure with bits beyond its field: a number that is too wide, a mask or a prefix
 * length beyond the width, a partition index beyond the bits that the table looks at. Bits of other fields that the
 * table does not look at are no finding, as the structure may well hold a whole address. Calls no driver, and may be
 * called from any thread.
 *
 * @param handle     of a table, or of an action of a table or profile
 * @param structure  the table's match_spec, or the action's action_spec; may be null where it has none
 * @param text       receives the finding in words, "" if there is none; room for TV_CHECK_TEXT_SIZE bytes, or null
 * @return what was found
 */
tv_check_result_t tv_check_structure(uint32_t handle, const void *structure, char *text);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
