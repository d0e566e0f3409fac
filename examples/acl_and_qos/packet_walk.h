// A few packets, and the tables that each one meets on its way through the switch.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "acl_tables.h"
#include "halo_tables.h"
#include "qos_tables.h"

namespace tarvex::examples {

/// What the parser and the tables that are not programmed here found out of a packet.
struct packet {
  const char *name;
  std::uint16_t port = 1;
  std::uint32_t dmac_oui = 0x00aabb;
  std::uint32_t dmac_station = 0x000001;
  std::uint16_t ether_type = 0x0800;
  std::uint32_t source = 0;
  std::uint32_t destination = 0;
  std::uint8_t protocol = 6;
  std::uint16_t source_port = 40000;
  std::uint16_t destination_port = 443;
  std::uint8_t ttl = 64;
  std::uint8_t dscp = 0;
  bool tagged = false;
  std::uint8_t priority = 0;
  std::uint8_t access_list = 1;
  std::uint16_t interface = 1;
};

/// Takes the packets of this example through all tables and prints what they hit, unless `quiet`. Returns their number.
std::size_t walk_packets(acl_tables &acl, halo_tables &halo, qos_tables &qos, bool quiet, tally &compared);

}  // namespace tarvex::examples
