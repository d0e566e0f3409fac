// Every command: its words, its help and what it does.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>

#include "catalogue.h"
#include "command.h"
#include "commands.h"
#include "nearest.h"
#include "text_wrap.h"

namespace tarvex::shell {

namespace {

using enum command_group;
using w = word_kind;

constexpr std::string_view member_choices[] = {"add", "modify", "delete"};
constexpr std::string_view group_choices[] = {"create", "delete", "add", "remove", "enable", "disable", "fallback"};
constexpr std::string_view entry_choices[] = {"add", "modify", "set-default"};
constexpr std::string_view hash_choices[] = {"seed", "fields"};
constexpr std::string_view value_set_choices[] = {"show", "add", "modify", "delete"};
constexpr std::string_view digest_choices[] = {"show", "on", "off", "timeout"};
constexpr std::string_view idle_choices[] = {"show", "enable", "disable", "update", "ttl"};
constexpr std::string_view snapshot_choices[] = {"fields", "arm", "show", "delete"};
constexpr std::string_view trace_choices[] = {"on", "off", "follow", "replay"};
constexpr std::string_view sim_choices[] = {"device", "count",  "age",     "learn", "capture",
                                            "refuse", "lookup", "corrupt", "lose"};

constexpr std::string_view load_choices[] = {"replace"};
constexpr std::string_view route_choices[] = {"--replace", "--strict"};
constexpr std::string_view diff_choices[] = {"counts"};
constexpr std::string_view let_choices[] = {"member", "group"};

constexpr std::string_view audit_choices[] = {"on", "off"};
constexpr std::string_view restart_choices[] = {"log", "replay"};

constexpr command all_commands[] = {
    {"tables",
     reading,
     "[PATTERN]",
     "lists the match tables",
     "PATTERN is a regular expression that a table's name holds, in either case of letters.",
     {"tables", "tables ipv4"},
     {w::table, w::nothing, w::nothing},
     {},
     show_tables},
    {"schema",
     reading,
     "TABLE",
     "shows the key fields and actions of a table",
     "Of each field: how it matches, its bits, and which of them the pipeline looks at. Of each action: whether it "
     "can\n"
     "be the default, and its parameters with their bits.",
     {"schema ipv4Host", "schema lagGroup -j"},
     {w::table, w::nothing, w::nothing},
     {},
     show_schema},
    {"dump",
     reading,
     "TABLE",
     "shows all entries of a table",
     "",
     {"dump ipv4Host", "dump ipv4Host | include 10\\.0\\."},
     {w::table, w::nothing, w::nothing},
     {},
     dump_entries},
    {"show",
     reading,
     "TABLE FIELD=VALUE... [priority=N] | TABLE handle=N",
     "shows one entry",
     "",
     {"show ipv4Host vrfId=1 dip=10.0.0.1", "show ipv4Host vrfId=1 dip=10.0.0.1 --raw"},
     {w::keyed_table, w::field, w::field},
     {},
     show_entry},
    {"count",
     reading,
     "[TABLE]",
     "counts the entries of a table, or of all that have any",
     "",
     {"count ipv4Host", "count"},
     {w::table, w::nothing, w::nothing},
     {},
     count_entries},
    {"default",
     reading,
     "TABLE",
     "shows the default entry of a table",
     "",
     {"default ipv4Host", "default nextHop -j"},
     {w::table, w::nothing, w::nothing},
     {},
     show_default},
    {"members",
     reading,
     "PROFILE",
     "shows the members of an action profile",
     "",
     {"members ecmpMemberActionProfile", "members lagPortActionProfile -j"},
     {w::profile, w::nothing, w::nothing},
     {},
     show_members},
    {"groups",
     reading,
     "PROFILE",
     "shows the groups of an action profile with their members",
     "",
     {"groups ecmpMemberActionProfile", "groups lagPortActionProfile -j"},
     {w::profile, w::nothing, w::nothing},
     {},
     show_groups},
    {"counters",
     reading,
     "[COUNTER [INDEX[-INDEX]]]",
     "shows counters, with the library's label of each entry",
     "Without a name it lists the counters. One that hangs on a table's entries is shown for all of them, with the key "
     "of\n"
     "each beside its label.",
     {"counters l2DmacClassifyCount", "counters pdpClassCount 0-3"},
     {w::counter, w::nothing, w::nothing},
     {},
     show_counters},
    {"meters",
     reading,
     "[METER [INDEX[-INDEX]]]",
     "shows meters, or cells of the WRED block",
     "",
     {"meters pdpMeter 0-3", "meters stormControlMeter"},
     {w::meter, w::nothing, w::nothing},
     {},
     show_meters},
    {"registers",
     reading,
     "[REGISTER INDEX[-INDEX]]",
     "shows cells of a register",
     "",
     {"registers ingVlanCheckData 0-7", "registers"},
     {w::register_, w::nothing, w::nothing},
     {},
     show_registers},
    {"idle",
     reading,
     "[TABLE [show | enable [mode=poll|notify] [interval=N] [max-ttl=N] | disable | update |\n"
     "            ttl FIELD=VALUE...|handle=N ttl=N]]",
     "shows and sets the idle time of a table's entries",
     "Times are in milliseconds. A hit shows behind an update.",
     {"idle ipv4Host enable mode=notify", "idle ipv4Host ttl vrfId=1 dip=10.0.0.1 ttl=5000"},
     {w::idle_table, w::choice, w::choice_field},
     idle_choices,
     idle_time},
    {"digests",
     reading,
     "[show | on | off | timeout TIME]",
     "shows the addresses that the switch reported",
     "TIME is in a unit of the driver. The shell keeps the latest 1000 while it listens ('on'). Whoever of the program "
     "listened before gets the "
     "reports\n"
     "all the same, and acknowledges them.",
     {"digests on", "digests timeout 100"},
     {w::choice, w::nothing, w::nothing},
     digest_choices,
     digests},
    {"snapshot",
     reading,
     "fields ingress|egress [PATTERN] | arm ingress|egress FIELD=VALUE... | show [SNAPSHOT] | delete SNAPSHOT",
     "catches what a packet holds when it meets a trigger",
     "arm takes first-stage=N and last-stage=N too.",
     {"snapshot fields ingress vlan", "snapshot show"},
     {w::choice, w::snapshot, w::snapshot},
     snapshot_choices,
     snapshot},

    {"add",
     writing,
     "TABLE FIELD=VALUE... [priority=N] ACTION [PARAMETER=VALUE...] [ttl=N]",
     "adds an entry",
     "Values are numbers, MAC, IPv4 or IPv6 addresses. A field matched by prefix takes VALUE/LENGTH, one matched by "
     "mask\n"
     "VALUE/MASK or '*' for anything, which is also what leaving it out means. Entries of tables with masks have a\n"
     "priority, the smaller going first. ttl is in milliseconds.\n"
     "A key must say what the switch makes of it. Bits that the switch ignores (schema shows the live ones), bits\n"
     "beyond a prefix and bits outside a mask are refused in every command that writes; --force writes them all the\n"
     "same. What save wrote is loaded as it is, and the commands of diff have --force where they need it.",
     {"add ipv4Host vrfId=1 dip=10.0.0.7 setNextHop nextHop=5 ttl=0",
      "add l2SmacCheck smac=00:1c:73:00:00:00/24 priority=10 setIllegalSmac"},
     {w::keyed_table, w::entry, w::entry},
     {},
     add_entry},
    {"modify",
     writing,
     "TABLE FIELD=VALUE...|handle=N [priority=N] ACTION [PARAMETER=VALUE...]",
     "gives an entry another action",
     "",
     {"modify ipv4Host vrfId=1 dip=10.0.0.1 setEcmp ecmpGroup=9", "modify ipv4Host handle=1 onMiss --dry-run"},
     {w::keyed_table, w::entry, w::entry},
     {},
     modify_entry},
    {"delete",
     writing,
     "TABLE FIELD=VALUE... [priority=N] | TABLE handle=N",
     "deletes an entry",
     "",
     {"delete ipv4Host vrfId=1 dip=10.0.0.1", "delete ipv4Host vrfId=1 dip=10.0.0.1 --dry-run"},
     {w::keyed_table, w::field, w::field},
     {},
     delete_entry},
    {"set-default",
     writing,
     "TABLE ACTION [PARAMETER=VALUE...]",
     "sets the default entry of a table",
     "",
     {"set-default ipv4Host onMiss", "set-default ingVlanCheck ingVlanAction"},
     {w::table, w::default_entry, w::default_entry},
     {},
     set_default},
    {"reset-default",
     writing,
     "TABLE",
     "takes the default entry of a table back",
     "",
     {"reset-default ipv4Host", "reset-default ipv4Host --dry-run"},
     {w::table, w::nothing, w::nothing},
     {},
     reset_default},
    {"member",
     writing,
     "PROFILE add ACTION [PARAMETER=VALUE...] [as=NAME] | modify MEMBER ACTION ... | delete MEMBER",
     "writes members of an action profile",
     "",
     {"member ecmpMemberActionProfile add setEcmpNextHop nextHop=7", "member lagPortActionProfile add setPhysicalPort"},
     {w::profile, w::choice, w::member},
     member_choices,
     write_member},
    {"group",
     writing,
     "PROFILE create SIZE [as=NAME] | delete GROUP | add|remove|enable|disable GROUP MEMBER | fallback MEMBER|none",
     "writes groups of an action profile",
     "",
     {"group ecmpMemberActionProfile create 16", "group ecmpMemberActionProfile fallback none"},
     {w::profile, w::choice, w::nothing},
     group_choices,
     write_group},
    {"entry",
     writing,
     "TABLE add FIELD=VALUE... member=N|group=N | modify FIELD=VALUE...|handle=N member=N|group=N |\n"
     "             set-default member=N|group=N",
     "writes entries of an indirect table",
     "",
     {"entry ecmpGroup add ecmpGroup=9 member=1", "entry ecmpGroup set-default member=1"},
     {w::indirect_table, w::choice, w::choice_field},
     entry_choices,
     write_indirect_entry},
    {"counter",
     writing,
     "COUNTER INDEX|FIELD=VALUE...|handle=N|default packets=N bytes=N",
     "writes a counter",
     "By index, or by the entry that it hangs on.",
     {"counter pdpClassCount 3 packets=0 bytes=0", "counter egressPortQueueCount 1 packets=10 bytes=640"},
     {w::counter, w::nothing, w::nothing},
     {},
     write_counter},
    {"meter",
     writing,
     "METER INDEX|FIELD=VALUE...|handle=N|default cir=N cburst=N pir=N pburst=N [type=unaware|aware]",
     "sets a meter",
     "Rates (cir, pir) and bursts count bytes; by what time and in which scale is the driver's. A pir below cir is\n"
     "refused without --force.",
     {"meter pdpMeter 3 cir=1000 cburst=100 pir=2000 pburst=200",
      "meter ingressMirrorMeter 0 cir=1 cburst=1 pir=1 pburst=1 --dry-run"},
     {w::meter, w::nothing, w::nothing},
     {},
     write_meter},
    {"wred",
     writing,
     "BLOCK INDEX time=T min=N max=N probability=P",
     "sets a cell of the WRED block",
     "T is a time constant and N a fill of the queue, both in units of the driver; P is from 0 to 1.",
     {"wred wredBlock 2 time=0.5 min=100 max=200 probability=0.25",
      "wred wredBlock 0 time=1 min=0 max=0 probability=1"},
     {w::wred, w::nothing, w::nothing},
     {},
     write_wred},
    {"register",
     writing,
     "REGISTER INDEX|all 0|1|reset",
     "writes a register",
     "",
     {"register ingVlanCheckData 3 1", "register ingVlanCheckData all reset"},
     {w::register_, w::nothing, w::nothing},
     {},
     write_register},
    {"value-set",
     writing,
     "[show | add value=N [mask=N] [scope=N] [index=N] [sub=N] | modify HANDLE value=N [mask=N] |\n"
     "                 delete HANDLE|value=N [mask=N] [scope=N] [index=N] [sub=N]]",
     "shows and writes the parser value set",
     "The switch does not tell what is in it: shown is what this shell wrote.",
     {"value-set add value=0x8100 mask=0xffff", "value-set show"},
     {w::choice, w::nothing, w::nothing},
     value_set_choices,
     value_set},
    {"hash",
     writing,
     "[CALCULATION [seed N | fields all|FIELD...]]",
     "shows and sets the hash calculations",
     "Input fields have the numbers from 0 on.",
     {"hash hashOuterIpv4Hdr", "hash hashOuterIpv4Hdr fields 0 2"},
     {w::hash, w::choice, w::nothing},
     hash_choices,
     hash_calculation},
    {"load-routes",
     writing,
     "FILE [--replace] [--strict]",
     "loads a routing table: lines of prefix and origin AS, may be compressed",
     "The routes fall on the ten tables of the forwarding information base, in VRF 1. Routes that the switch has\n"
     "already are left alone; one with another next hop is refused, and with --replace it gets that of the file.\n"
     "Lines that are no routes are passed over, with exit code 6 at the end; with --strict nothing is written then,\n"
     "and the exit code is 5.",
     {"load-routes data/routes_small.txt.gz", "load-routes data/routes_small.txt.gz --dry-run"},
     {w::file, w::choice, w::choice},
     route_choices,
     load_routes},

    {"save",
     operating,
     "FILE [cells=N]",
     "saves the state of the switch to a file",
     "Entries, defaults, members, groups, counters, meters, registers and settings, as JSON. What the switch does not\n"
     "tell (value-set entries, fallback members, sizes of groups, idle-time settings, the learning timeout) is what\n"
     "this shell wrote. Of counters, meters and registers by index the first N cells are read (4096), and\n"
     "beyond them those that this shell wrote. A cell that the driver refuses to read fails the save; of another\n"
     "driver than the stand-in, --end-of-cells-status says which status means that there is no such cell. The file\n"
     "is written whole or not at all. A new one is the user's alone; an existing one keeps its mode, and a link\n"
     "goes on pointing at it.",
     {"save /tmp/tvsh-state.json", "save /tmp/tvsh-state.json cells=16"},
     {w::file, w::nothing, w::nothing},
     {},
     save_state},
    {"load",
     operating,
     "FILE [replace] [cells=N]",
     "writes a saved state to the switch",
     "The whole file is checked first. A switch that holds entries, members or groups is refused, but with 'replace'\n"
     "all of it, counters and settings too, is taken off ahead; without it nothing is touched that the file does not\n"
     "hold. Members and groups get new handles, and entries follow them.",
     {"load /tmp/tvsh-state.json replace", "load /tmp/tvsh-state.json replace --dry-run"},
     {w::file, w::choice, w::nothing},
     load_choices,
     load_state},
    {"diff",
     operating,
     "A B [counts] [cells=N]",
     "shows what turns one state into another: each a saved file, or 'live'",
     "The commands, as a script that -f runs on a switch after 'load A'. Without 'counts' counters and what is\n"
     "left of times to live are not compared, as traffic and time change them. Exit code 3 where there is any.",
     {"diff live live", "diff /tmp/tvsh-state.json /tmp/tvsh-state.json"},
     {w::state, w::state, w::choice},
     diff_choices,
     compare_states},
    {"apply",
     operating,
     "FILE [counts] [cells=N]",
     "makes the switch equal to a saved state, by the fewest changes",
     "What changes is modified in place. --dry-run shows the commands.",
     {"apply /tmp/tvsh-state.json --dry-run", "apply /tmp/tvsh-state.json"},
     {w::file, w::choice, w::nothing},
     diff_choices,
     apply_state},
    {"monitor",
     operating,
     "[TABLE|PROFILE...] [count=N] [seconds=N]",
     "shows updates of the switch as they come",
     "Of all tables and profiles where none is named, until N were shown, N seconds have passed or Ctrl-C. With -j "
     "each\n"
     "line is a JSON object. Update callbacks that the program itself has registered go on being called.",
     {"monitor ipv4Host seconds=0", "monitor seconds=0 -j"},
     {w::table, w::table, w::table},
     {},
     monitor_updates},
    {"audit",
     operating,
     "[on | off]",
     "holds what updates said was meant against what the hardware holds",
     "'on' begins to record updates; without a word what was recorded since is compared. Exit code 3 where the\n"
     "hardware holds something else, has lost something, or has something that nobody told of. Others may write\n"
     "meanwhile, and update callbacks that the program itself has registered go on being called.",
     {"audit on", "audit"},
     {w::choice, w::nothing, w::nothing},
     audit_choices,
     audit_hardware},
    {"restart",
     operating,
     "log | replay",
     "has the library forget members and groups and restore them, while the switch goes on",
     "By the document that the library logs, or by the replay of the driver. Nobody else should work on members and\n"
     "groups meanwhile. Exit code 3 where the library does not know afterwards what it knew before.",
     {"restart log", "restart replay"},
     {w::choice, w::nothing, w::nothing},
     restart_choices,
     restart_library},
    {"let",
     operating,
     "NAME member|group PROFILE POSITION",
     "names a member or group, so that $NAME stands for its handle",
     "The first one has position 1. 'member add' and 'group create' name what they make by as=NAME.",
     {"let first member ecmpMemberActionProfile 1", "let last member ecmpMemberActionProfile 1"},
     {w::nothing, w::choice, w::profile},
     let_choices,
     name_handle},

    {"trace",
     operating,
     "[on | off | follow | FILE [-j] | replay FILE]",
     "shows or writes down each driver call: what went in, what came out, the status and the time",
     "on shows the calls behind each command of this session, follow shows those of the whole program until Ctrl-C, "
     "and\n"
     "FILE gets all of them, as JSON lines with -j. replay makes the writes of such a file again; handles may differ\n"
     "from those of then. Any program that uses the library is traced without a shell by\n"
     "LD_PRELOAD=libtarvex_trace.so.0 TARVEX_TRACE=FILE PROGRAM, as JSON lines with TARVEX_TRACE_JSON=1. As text,\n"
     "FILE tells of each call ahead of the call: what a program died or hangs in stands at its end.",
     {"trace on", "trace off"},
     {w::choice, w::file, w::nothing},
     trace_choices,
     trace_calls},

    {"sim",
     simulating,
     "device add|remove DEVICE | count TABLE FIELD=VALUE...|handle=N [packets=N] [bytes=N] |\n"
     "           count COUNTER INDEX [packets=N] [bytes=N] | age MILLISECONDS | learn MAC [domain=N] [interface=N] |\n"
     "           capture SNAPSHOT FIELD=VALUE... | refuse N STATUS | lookup TABLE FIELD=VALUE... |\n"
     "           corrupt TABLE FIELD=VALUE...|handle=N [bit=N] | lose TABLE FIELD=VALUE...|handle=N",
     "does to the stand-in switch what packets, time and faults do",
     "refuse has the driver answer its N-th call from now with STATUS, whatever the call is; a command makes several\n"
     "calls, which 'trace on' shows. 'refuse 0 0' takes it back. age is how many milliseconds go by. corrupt turns a "
     "bit of an entry's action data over and lose drops an entry, "
     "and\n"
     "nobody is told; see audit.",
     {"sim lookup ipv4Host vrfId=1 dip=10.0.0.1", "sim age 1000"},
     {w::choice, w::table, w::field},
     sim_choices,
     simulate},

    {"help",
     shell,
     "[COMMAND [TABLE|PROFILE]]",
     "shows the commands, or how one is used",
     "With a table or profile, what a command on it can name, too. COMMAND ? and COMMAND TABLE ? are the same.",
     {"help add", "add ipv4Host ?"},
     {w::command, w::table, w::nothing},
     {},
     help},
    {"exit",
     shell,
     "",
     "ends the session",
     "",
     {"exit", "exit # the end"},
     {w::nothing, w::nothing, w::nothing},
     {},
     leave},
    {"quit",
     shell,
     "",
     "ends the session, as exit does",
     "",
     {"quit", "quit # the end"},
     {w::nothing, w::nothing, w::nothing},
     {},
     leave},
};

}  // namespace

std::span<const command> commands() { return all_commands; }

const command &command_named(std::string_view name)
{
  const auto found = std::ranges::find(commands(), name, &command::name);
  if (found == commands().end()) {
    const std::string wrong = no_such("command", name, names_of(commands()));
    throw usage_error(wrong + (wrong.ends_with('?') ? "" : ";") + " 'help' lists them");
  }
  return *found;
}

std::string usage_of(const command &what)
{
  const std::string head = "usage: " + std::string(what.name);
  std::string arguments;  // their own line ends have indents, for which there is another here
  for (const char letter : what.arguments) {
    if (letter == '\n') arguments += ' ';
    if (letter != '\n' && (letter != ' ' || !arguments.ends_with(' '))) arguments += letter;
  }
  return wrapped(arguments.empty() ? head : head + ' ' + arguments, head.size() + 1);
}

}  // namespace tarvex::shell
