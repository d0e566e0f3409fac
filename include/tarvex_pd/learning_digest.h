/*
 * Learning digest: source addresses that the data plane reports to the control plane.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_LEARNING_DIGEST_H
#define TARVEX_PD_LEARNING_DIGEST_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/** Bytes of one entry of the digest "macLearningDigest", its fields back to back. */
#define P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE 14

/** By what the driver names the digest. */
#define P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_HANDLE 0x21000084u

/**
 * Has the driver deliver the digest. The driver calls `cb` itself; every message that it delivers goes back through
 * p4_pd_tarvex_switch_macLearningDigest_notify_ack.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param cb  function that the driver keeps and calls; its signature is the driver's
 * @param cookie  handed to the callback; the caller's
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_macLearningDigest_register(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_callback_t cb,
                                                           void *cookie);

/**
 * Ends the delivery of the digest.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_macLearningDigest_deregister(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id);

/**
 * Gives a message back to the driver.
 *
 * @param sess_hdl  session with the driver
 * @param digest_msg  the message that the driver handed to the callback; the driver's
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_macLearningDigest_notify_ack(pd_sess_hdl_t sess_hdl, void *digest_msg);

/**
 * Sets the learning timeout of a device, whatever the digest.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param timeout  in the driver's unit
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_set_learning_timeout(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t timeout);

/**
 * Bytes of one entry of a digest.
 *
 * @param digest_name  name of the digest, exactly; may be null
 * @return 14 for "macLearningDigest", 0 for any other name
 */
uint32_t p4_pd_tarvex_switch_get_digest_entry_size(const char *digest_name);

/**
 * Where a field stands in an entry of a digest, and how long it is there. The bytes are not touched; their order within
 * a field is the driver's. Some fields stand at odd places: copy them out.
 *
 * @param entry  an entry, P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE bytes
 * @param digest_name  "macLearningDigest"
 * @param field_name  "ingMd_smacStation", "ingMd_ingL2Domain", "ingMd_ingL2Aintf" or "ingMd_smacOui"
 * @param size  receives the field's bytes
 * @return the field within the entry; null, with a size of 0, for an unknown digest or field
 */
void *p4_pd_tarvex_switch_get_digest_entry_field(void *entry, const char *digest_name, const char *field_name,
                                                 uint32_t *size);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
