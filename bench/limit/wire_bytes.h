/*
 * Scalars between host order and the big-endian bytes of keys and action data, for the functions written by hand.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_BENCH_WIRE_BYTES_H
#define TARVEX_BENCH_WIRE_BYTES_H

#include <stdint.h>
#include <string.h>

static inline void put_16(uint8_t *to, uint16_t v)
{
  v = __builtin_bswap16(v);
  memcpy(to, &v, sizeof v);
}

static inline void put_24(uint8_t *to, uint32_t v)
{
  to[0] = (uint8_t)(v >> 16);
  put_16(to + 1, (uint16_t)v);
}

static inline void put_32(uint8_t *to, uint32_t v)
{
  v = __builtin_bswap32(v);
  memcpy(to, &v, sizeof v);
}

static inline uint16_t get_16(const uint8_t *from)
{
  uint16_t v;
  memcpy(&v, from, sizeof v);
  return __builtin_bswap16(v);
}

static inline uint32_t get_24(const uint8_t *from) { return (uint32_t)from[0] << 16 | get_16(from + 1); }

static inline uint32_t get_32(const uint8_t *from)
{
  uint32_t v;
  memcpy(&v, from, sizeof v);
  return __builtin_bswap32(v);
}

#endif
