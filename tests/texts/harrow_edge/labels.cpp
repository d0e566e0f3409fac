// The counter labels as lists of their pieces.
//
// SPDX-License-Identifier: Apache-2.0
#include "reference.h"

namespace tarvex::test {

namespace {

using piece = label_piece;

bool is_reserved(std::uint32_t v) { return v == 7; }
bool is_other(std::uint32_t v) { return v != 0 && v != 7; }

[[maybe_unused]] const bool told = (told_labels() = {{"edgeFilter",
                                                      {{"In 0x%x ", "port_in", 0x7f, piece::always},
                                                       {"source 0x%x ", "eth_srcOui", 0xffffff, piece::always},
                                                       {"tagged ", "vlan_0__valid", 1, piece::flag},
                                                       {"reserved ", "mpls_label", 0xfffff, piece::some, is_reserved},
                                                       {"label 0x%x ", "mpls_label", 0xfffff, piece::some, is_other},
                                                       {"code %2d ", "meta_code", 7, piece::always},
                                                       {"address ", "ipv6_src", 0, piece::address},
                                                       {"urgent ", "meta_flags", 0x4000000, piece::flag}}},
                                                     {"classifier",
                                                      {{"Kind 0x%x ", "meta_kind", 0x1ffff, piece::always},
                                                       {"lane %4d ", "meta_lane", 0xff, piece::always}}}},
                                    true);

}  // namespace

}  // namespace tarvex::test
