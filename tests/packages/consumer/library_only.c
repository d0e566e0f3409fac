/*
 * A user's program that calls the library and nothing of its driver, which the linker must keep all the same.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <tarvex_pd/tarvex_pd.h>

int main(void) { return p4_pd_tarvex_switch_init() != BF_SUCCESS || p4_pd_tarvex_switch_cleanup() != BF_SUCCESS; }
