/*
 * Tracing of what a program asks of its switch driver. libtarvex_trace.so.0 stands between the library and the driver:
 * it defines the functions of tarvex_platform/driver.h, hands each call on to the next definition behind it in the
 * order of the program's libraries, and reports it. It works with any driver, and switched off it costs a load and a
 * jump.
 *
 * A program is traced without being changed or linked anew:
 *
 *   LD_PRELOAD=libtarvex_trace.so.0 TARVEX_TRACE=calls.txt program
 *
 * TARVEX_TRACE        the file; it is made with mode 0600, and emptied where it was there
 * TARVEX_TRACE_JSON   not empty: one JSON object a line, which 'tvsh -c "trace replay FILE"' takes
 *
 * Nothing waits to be written. As text, the file tells of each call ahead of the call, so that what a program died or
 * hangs in stands at its end; in JSON it tells of a call as soon as the call has ended. Where a trace could not be
 * written to its end, the program says so on its standard error when it ends.
 *
 * A line of text is
 *
 *   12:00:01.123456 [4711] pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=ipv4Host, match={vrfId=1 dip=10.0.0.1},
 *       act=setNextHop, action={nextHop=5}, ttl=0, entry=1) = 0 OK <1.2us>
 *
 * with the time of the entry, the thread, what went in, what came out where the call succeeded, the status and the time
 * that the call took. Where another call begins before one has ended, in another thread or from a callback, the one is
 * told in two lines, "... <unfinished ...>" and "<... NAME resumed> ...". JSON has a line a call, in the order in which
 * they ended, with the raw bytes beside what they mean.
 *
 * Link it ahead of the driver, and of the library: its definitions must be found first.
 *
 * All functions may be called from any thread. One trace runs at a time, for the whole process.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_TRACE_TARVEX_TRACE_H
#define TARVEX_TRACE_TARVEX_TRACE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

struct ms_state;

/** How a trace is told. */
enum {
  TARVEX_TRACE_AS_JSON = 1 /**< JSON lines instead of text */
};

/**
 * Takes a line of a trace, without its end. Lines come one at a time, from any thread that makes calls, outside of the
 * driver. It must not call the driver, nor the functions here.
 */
typedef void (*tarvex_trace_line_fn)(const char *line, size_t length, void *cookie);

/**
 * Begins a trace into a file.
 *
 * @param path   made with mode 0600 or emptied; a device that is no terminal, such as /dev/null, will do, too
 * @param flags  of the above, or 0
 * @return 0; EBUSY while a trace runs; ENXIO for a pipe, a socket or a terminal, whose reader the program would have to
 *         wait for; otherwise why the file could not be opened, as an errno
 */
int tarvex_trace_to_file(const char *path, uint32_t flags);

/**
 * Begins a trace into a function.
 *
 * @param line    kept until the trace ends
 * @param cookie  handed to it
 * @param flags   of the above, or 0
 * @return 0, or EBUSY while a trace runs
 */
int tarvex_trace_to_function(tarvex_trace_line_fn line, void *cookie, uint32_t flags);

/**
 * Ends the trace that runs, if any. Calls that are under way are not told any more, and the line function is not called
 * once this has returned.
 *
 * @return 0, or the errno of the first write that failed: the file ends there
 */
int tarvex_trace_stop(void);

/**
 * The file that the trace goes to, as it was named.
 *
 * @param name  takes the name, cut to the room that there is, and a 0; may be null where `size` is 0
 * @param size  room in bytes
 * @return the length of the whole name; 0 where no trace goes to a file
 */
size_t tarvex_trace_file(char *name, size_t size);

/** Whether a trace runs. */
int tarvex_trace_runs(void);

/** Calls that traces of this process have told. */
uint64_t tarvex_trace_calls(void);

/** The definition of a driver function behind this library; null where there is none. */
void *tarvex_trace_next(const char *driver_function);

/** State of the n-th action profile, 0 to 4, as the library had it made last; null before that. */
struct ms_state *tarvex_trace_state(uint32_t profile);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
