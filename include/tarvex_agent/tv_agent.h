/*
 * A shell into a living control plane: a program that links the library starts the agent with one call, and a person
 * attaches to it with `tvsh --attach PATH` to read and write the switch by name.
 *
 * The agent serves a Unix socket from threads of its own. The socket has mode 0600, and each client's user is looked
 * at: the program's own and root come in. The threads block all signals; the agent installs no signal handler, raises
 * no SIGPIPE, changes neither umask nor folder, and writes to no standard stream. It holds no lock while it calls the
 * library, and none that the program could want. What clients write goes to the switch beside the program's own writes,
 * in the driver's order; the program keeps its right to know, by the callbacks that the library has for it.
 *
 * The program starts the library (p4_pd_<pipeline>_init) and adds its devices itself, before the agent, and stops
 * the agent ahead of them. All functions here may be called from any thread but those of the agent, that is not from a
 * callback of the driver that a client's command gave rise to.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_AGENT_TV_AGENT_H
#define TARVEX_AGENT_TV_AGENT_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/** What the functions answer. */
typedef enum tv_agent_status {
  TV_AGENT_OK = 0,
  TV_AGENT_BAD_ARGUMENT, /**< no path, or a device above 255 */
  TV_AGENT_RUNNING,      /**< the agent was started already; there is one in a process */
  TV_AGENT_NOT_RUNNING,  /**< there is none to stop */
  TV_AGENT_SOCKET,       /**< the socket cannot be made; tv_agent_error tells why */
  TV_AGENT_NO_MEANS      /**< no memory, or no thread, is left for it */
} tv_agent_status_t;

/** No status of the driver is known to say so. */
#define TV_AGENT_STATUS_UNKNOWN (-1)

/** How the agent works. Fill it by tv_agent_default_settings, then change what differs. */
typedef struct tv_agent_settings {
  const char *path;   /**< of the socket, 1 to 107 bytes; a socket that nobody listens at any more is replaced */
  uint32_t sess_hdl;  /**< session with the driver for all that clients do; 1 */
  uint32_t dev_id;    /**< device that clients work on who name none, 0 to 255; 0 */
  int64_t end_status; /**< status of the driver behind the last entry of a walk; unknown (every one without a handle) */
  int64_t none_status; /**< status of the driver where a table has no default entry; unknown likewise */
} tv_agent_settings_t;

/** Sets all members to the values named above, and the path to null. */
void tv_agent_default_settings(tv_agent_settings_t *settings);

/**
 * Starts the agent with the default settings. Returns once clients can attach.
 *
 * @param path  of the socket; the agent keeps a copy
 * @return TV_AGENT_OK, or why it did not start
 */
tv_agent_status_t tv_agent_start(const char *path);

/**
 * Starts the agent.
 *
 * @param settings  not kept
 * @return TV_AGENT_OK, or why it did not start
 */
tv_agent_status_t tv_agent_start_with(const tv_agent_settings_t *settings);

/**
 * Says by which status the driver answers a read beyond the last cell of a counter, meter or register, for the agent
 * that is started next. Where it is unknown and the driver is not the stand-in switch, every refusal of such a read
 * ends the client's command: a cell is never taken for one that is not there. It is no member of the settings, whose
 * size programs have compiled in.
 *
 * @param status  of the driver, or TV_AGENT_STATUS_UNKNOWN, which is what it is at first
 */
void tv_agent_set_end_of_cells_status(int64_t status);

/**
 * Stops the agent: interrupts the commands of its clients, waits for them, and removes the socket. It forgets what
 * clients wrote that the library cannot read back. It may be started again.
 *
 * In a child that the program forked there is no agent: its threads stay with the parent. The child may start its own.
 *
 * @return TV_AGENT_OK or TV_AGENT_NOT_RUNNING
 */
tv_agent_status_t tv_agent_stop(void);

/** Whether the agent runs in this process: 1 or 0. */
int tv_agent_running(void);

/** Why the latest call of this thread failed, in words; "" where it did not. Good until the thread's next call. */
const char *tv_agent_error(void);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
