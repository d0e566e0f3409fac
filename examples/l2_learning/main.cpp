// Learns, moves and ages the stations of a bridge on the stand-in switch, and checks that all of it came out as
// planned.
//
// SPDX-License-Identifier: Apache-2.0
#include <cinttypes>
#include <cstdio>
#include <future>
#include <string>

#include "bridge_tables.h"
#include "checks.h"
#include "data_plane.h"
#include "learner.h"
#include "options.h"
#include "oui_list.h"
#include "plan.h"
#include "program.h"
#include "switch_device.h"
#include "switch_events.h"

namespace {

using namespace tarvex::l2_learning;
using tarvex::examples::must;
using tarvex::examples::tally;

void let_time_pass()
{
  constexpr std::uint32_t tick = 50'000;
  for (std::uint32_t passed = 0; passed < clock_step; passed += tick) {
    must(standin_idle_advance(tick), "moving the clock");
  }
}

/// Ends a round for the control plane however the traffic ends.
class round_end {
 public:
  explicit round_end(switch_events &events) : events_(events) {}
  round_end(const round_end &) = delete;
  round_end &operator=(const round_end &) = delete;
  ~round_end() { events_.end_round(); }

 private:
  switch_events &events_;
};

/// Plays traffic in a thread of its own, which the callbacks come in; this one meanwhile is the control plane.
template <typename Traffic>
void play_round(switch_events &events, learner &control, Traffic traffic)
{
  events.begin_round();
  auto played = std::async(std::launch::async, [&] {
    const round_end end(events);
    traffic();
  });
  control.serve();
  played.get();
}

template <typename Figures, typename Names>
void print_figures(const Names &names, const Figures &figures)
{
  for (const auto &[name, figure] : names) std::printf("  %-22s %10" PRIu64 "\n", name, figures.*figure);
}

std::string run(tarvex::examples::program_arguments arguments, tally &compared)
{
  const options wanted = parse_options(arguments);
  const oui_list identifiers = find_ouis();
  const plan planned = make_plan(identifiers.ouis, wanted.addresses, wanted.seed);
  std::printf("%s, identifiers of %s\n", tarvex::examples::counted(wanted.addresses, "station").c_str(),
              identifiers.origin.c_str());

  const tarvex::examples::switch_device device;
  bridge_tables bridge;
  switch_events events;
  learner control(events);
  data_plane pipeline(bridge);
  play_round(events, control, [&] { pipeline.pass(planned.announcements); });
  bridge.throttle_broadcast();
  play_round(events, control, [&] {
    let_time_pass();
    pipeline.pass(planned.conversation);
  });
  play_round(events, control, let_time_pass);  // those that age have to be gone before they come back
  play_round(events, control, [&] { pipeline.pass(planned.aftermath); });

  check_figures(planned, control, pipeline, compared);
  check_stations(planned, control, compared);
  check_counters(planned, bridge, compared);
  bridge.check(compared);

  const learning_figures &did = control.figures();
  std::puts("control plane");
  print_figures(learning_figure_names, did);
  std::printf("  %-22s %10zu\n  %-22s %10" PRIu64 "\n", "still there", control.stations().size(),
              "messages acknowledged", control.acknowledged());
  std::puts("pipeline");
  print_figures(forwarding_figure_names, pipeline.figures());
  return std::to_string(did.learned) + " learned, " + std::to_string(did.refreshed) + " refreshed, " +
         std::to_string(did.moved) + " moved, " + std::to_string(did.aged) + " aged, " +
         std::to_string(control.stations().size()) + " still there, " + std::to_string(control.acknowledged()) +
         " messages acknowledged";
}

}  // namespace

int main(int argc, char **argv)
{
  return tarvex::examples::run_comparison({"l2_learning", usage_text, {}}, argc, argv, run);
}
