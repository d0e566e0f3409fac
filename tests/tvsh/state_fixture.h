// A switch with every kind of state, and files of this test's own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "catalogue.h"
#include "shell_fixture.h"
#include "switch_state.h"

namespace tarvex::shell {

inline constexpr std::string_view every_kind_of_state[] = {
    "member ecmpMemberActionProfile add setEcmpNextHop nextHop=99",
    "member ecmpMemberActionProfile add setEcmpNextHop nextHop=7",
    "member ecmpMemberActionProfile add setEcmpNextHop nextHop=8",
    "member ecmpMemberActionProfile delete 1",  // so that a handle is not its place
    "group ecmpMemberActionProfile create 2",
    "group ecmpMemberActionProfile add 1 2",
    "group ecmpMemberActionProfile add 1 3",
    "group ecmpMemberActionProfile disable 1 3",
    "group ecmpMemberActionProfile fallback 2",
    "entry ecmpGroup add ecmpGroup=5 group=1",
    "entry ecmpGroup add ecmpGroup=6 member=2",
    "entry ecmpGroup set-default member=3",
    "member lagPortActionProfile add setPhysicalPort",
    "entry lagGroup add priority=4 member=1",
    "idle ipv4Host enable mode=notify interval=10 max-ttl=9000",
    "add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5 ttl=500",
    "add ipv4Host vrfId=2 dip=10.0.0.2 setEcmp ecmpGroup=7",
    "set-default ipv4Host onMiss",
    "add l2SmacCheck smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 priority=10 setIllegalSmac",
    "add l2SmacCheck smac=* priority=11 setIllegalSmac",
    "add ipv6ShortMaskLpm vrfId=1 dip=2001:c00::/22 setEcmp ecmpGroup=1",
    "add ipv4FinalResolve fibPartitionIndex=7 dip=10.1.0.0/16 setNextHop nextHop=3 --force",
    "add l2LookupMiss priority=1 l2LookupBcastHit cir=10 cburst=20 pir=30 pburst=40",
    "add ingL2DomainCount decapType=1 ingL3Aintf=9 onMiss",
    "counter ingL2DomainCounters decapType=1 ingL3Aintf=9 packets=2 bytes=128",
    "counter pdpClassCount 3 packets=7 bytes=18446744073709551615",
    "counter pdpClassCount 300000 packets=1 bytes=2",  // beyond the cells that are looked at
    "meter pdpMeter 1 cir=1 cburst=2 pir=3 pburst=4",
    "wred wredBlock 2 time=0.1 min=1 max=2 probability=0.25",
    "register ingVlanCheckData all 1",
    "register ingVlanCheckData 5 0",
    "register egrStpCheckData 9 1",
    "hash hashOuterIpv4Hdr seed 0xfeedface12345678",
    "hash hashOuterIpv4Hdr fields 0 2",
    "value-set add value=0x8100 mask=0xff00 scope=1",
    "digests timeout 100",
};

/// Another session, which writes while a command is under way: at the n-th driver call on what is built above.
class other_session {
 public:
  other_session(const session &beside, unsigned at_call, std::vector<std::string_view> lines)
      : shell_(beside.where, beside.shared_memory()), left_(at_call), lines_(std::move(lines))
  {
    standin_set_listener(
        [](const char *, std::uint32_t handle, void *self) { static_cast<other_session *>(self)->hear(handle); }, this);
  }
  other_session(const other_session &) = delete;
  other_session &operator=(const other_session &) = delete;
  ~other_session() { standin_set_listener(nullptr, nullptr); }

  bool done() const { return left_ == 0; }

 private:
  void hear(std::uint32_t handle)
  {
    if (left_ == 0 || !handles_.contains(handle) || --left_ != 0) return;
    caught_output out;
    for (const std::string_view line : lines_) shell_.run(line, out);
  }

  static std::set<std::uint32_t> handles()
  {
    const profile_info &profile = profile_named("ecmpMemberActionProfile");
    return {table_named("ipv4Host").handle, direct_counter(table_named("ingL2DomainCount"))->handle,
            table_named("ecmpGroup").handle, profile.action_data_table, profile.selector_table};
  }

  session shell_;
  unsigned left_;
  std::vector<std::string_view> lines_;
  const std::set<std::uint32_t> handles_ = handles();
};

class state_test : public shell_test {
 protected:
  state_test() { shell.folder = std::filesystem::temp_directory_path() / ("tvsh_state." + std::to_string(getpid())); }
  void SetUp() override { std::filesystem::create_directories(shell.folder); }
  void TearDown() override { std::filesystem::remove_all(shell.folder); }

  void build()
  {
    for (const std::string_view line : every_kind_of_state) lines_of(line);
  }
  /// A new device, of which the shell remembers nothing.
  void start_anew()
  {
    lines_of("sim device remove 0");
    lines_of("sim device add 0");
  }
  std::string text_of(const std::string &file) const
  {
    std::ifstream in(shell.folder / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void write(const std::string &file, std::string_view text) const
  {
    std::ofstream(shell.folder / file, std::ios::binary) << text;
  }
};

}  // namespace tarvex::shell
