// Handles of the pipeline that the tests of the stand-in run on. Behind the third table one handle is left out.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

enum : std::uint32_t {
  host_table = 0x1000001,    // exact, 9 bits and 8 bits; idle time; direct counter and register
  route_table = 0x1000002,   // lpm of 32 bits behind a partition; direct meter
  policy_table = 0x1000003,  // ternary of 16 bits; indirect counter and meter
  lag_table = 0x1000005,     // exact, indirect
  check_table = 0x1000006,   // keyless; register

  members_table = 0x2000005,
  groups_table = 0x3000001,

  host_counter = 0x4000001,
  policy_counter = 0x4000002,
  free_counter = 0x4000003,
  wred_block = 0x5000001,
  policy_meter = 0x5000002,
  route_meter = 0x5000003,
  check_register = 0x6000001,
  host_register = 0x6000002,

  forward = 0x20000001,
  miss = 0x20000002,
  route = 0x20000003,
  police = 0x20000004,
  pass = 0x20000005,
  port = 0x20000006,
  drop = 0x20000007,
  check = 0x20000008,
};
