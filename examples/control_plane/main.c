/*
 * control_plane: programs some routes and keeps one of them moving between two next hops, as routing does, until its
 * input ends or SIGINT or SIGTERM comes. Meanwhile the agent serves a socket, so that a person looks into the switch
 * of this very process:
 *
 *   control_plane /run/user/1000/switch &
 *   tvsh --attach /run/user/1000/switch dump ipv4Host
 *   tvsh --attach /run/user/1000/switch trace calls.txt
 *
 * The last one has the program's driver calls written down: it is linked with the trace ahead of library and driver.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#define _GNU_SOURCE /* sigset_t and signalfd */
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "tarvex_agent/tv_agent.h"
#include "tarvex_pd/tarvex_pd.h"
#include "tarvex_pd/version.h"
#include "tarvex_standin/standin.h"

enum { device = 0, session = 1, host_routes = 4, moved_every = 200 /* milliseconds */ };
enum { all_well = 0, wrong_use = 1, refused_by_driver = 2, file_failed = 4 };

static const char usage[] =
    "usage: control_plane SOCKET | --help | --version\n"
    "Programs routes, and lives until its input ends or a signal comes. 'tvsh --attach SOCKET' looks into its switch.\n"
    "\n"
    "Exit status:\n"
    "  0  done, and as expected\n"
    "  1  wrong use\n"
    "  2  the driver refused\n"
    "  4  a file, a socket or the output failed\n";

static int well(pd_status_t status, const char *what)
{
  if (status != BF_SUCCESS) {
    const char *const name = standin_status_name(status);
    fprintf(stderr, "control_plane: %s: status %u (%s)\n", what, (unsigned)status, name != NULL ? name : "unknown");
  }
  return status == BF_SUCCESS;
}

static p4_pd_tarvex_switch_ipv4Host_match_spec_t key_of(unsigned host)
{
  const p4_pd_tarvex_switch_ipv4Host_match_spec_t key = {.l3Info_vrfId = 1, .ingIpv4_dip = 0x0a000001u + host};
  return key;
}

static int program_routes(void)
{
  const pd_dev_tgt_t everywhere = pd_dev_tgt(device, PD_ALL_PIPES);
  for (unsigned host = 0; host < host_routes; ++host) {
    const p4_pd_tarvex_switch_ipv4Host_match_spec_t key = key_of(host);
    const p4_pd_tarvex_switch_setNextHop_action_spec_t action = {.action_nextHop = (uint16_t)(100 + host)};
    pd_entry_hdl_t entry = 0;
    if (!well(p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(session, everywhere, &key, &action, 0, &entry),
              "adding a route")) {
      return 0;
    }
  }
  return 1;
}

/* A person may have deleted the route by now: that is no reason to end. */
static void move_route(unsigned times)
{
  const p4_pd_tarvex_switch_ipv4Host_match_spec_t key = key_of(0);
  const p4_pd_tarvex_switch_setNextHop_action_spec_t action = {.action_nextHop = (uint16_t)(100 + times % 2)};
  p4_pd_tarvex_switch_ipv4Host_table_modify_with_setNextHop_by_match_spec(session, pd_dev_tgt(device, PD_ALL_PIPES),
                                                                          &key, &action);
}

/* What comes on the input is dropped; its end counts. */
static int input_ended(void)
{
  char dropped[256];
  return read(STDIN_FILENO, dropped, sizeof dropped) <= 0;
}

static void live(int signals)
{
  struct pollfd waited[2] = {{.fd = STDIN_FILENO, .events = POLLIN}, {.fd = signals, .events = POLLIN}};
  for (unsigned times = 0;; ++times) {
    const int ready = poll(waited, 2, moved_every);
    if (waited[1].revents != 0 || (waited[0].revents != 0 && input_ended())) return;
    if (ready == 0) move_route(times);
  }
}

static int output_written(void)
{
  if (fflush(stdout) == 0) return 1;
  perror("control_plane: standard output cannot be written");
  return 0;
}

static int run(const char *path)
{
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGINT);
  sigaddset(&ends, SIGTERM);
  sigprocmask(SIG_BLOCK, &ends, NULL);
  const int signals = signalfd(-1, &ends, SFD_CLOEXEC);

  if (!program_routes()) return refused_by_driver;
  if (tv_agent_start(path) != TV_AGENT_OK) {
    fprintf(stderr, "control_plane: %s\n", tv_agent_error());
    return file_failed;
  }
  printf("%d routes; attach with: tvsh --attach %s\n", host_routes, path);
  const int written = output_written();
  if (written) live(signals);
  tv_agent_stop();
  close(signals);
  return written ? all_well : file_failed;
}

int main(int argc, char **argv)
{
  if (argc == 2 && (strcmp(argv[1], "--help") == 0 || strcmp(argv[1], "--version") == 0)) {
    fputs(strcmp(argv[1], "--help") == 0 ? usage : "control_plane (tarvex_pd) " TARVEX_VERSION "\n", stdout);
    return output_written() ? all_well : file_failed;
  }
  const char *const path = argc == 2 ? argv[1] : argc == 3 && strcmp(argv[1], "--") == 0 ? argv[2] : NULL;
  if (path == NULL || (argc == 2 && path[0] == '-')) {
    if (path != NULL) fprintf(stderr, "control_plane: there is no option '%s'\n", path);
    fputs(usage, stderr);
    return wrong_use;
  }
  if (!well(standin_device_add(device), "adding the device") ||
      !well(p4_pd_tarvex_switch_init(), "starting the library")) {
    return refused_by_driver;
  }
  const int status = run(path);
  p4_pd_tarvex_switch_cleanup();
  standin_device_remove(device);
  return status;
}
