// Compares what a run has come to with what the plan says.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge_tables.h"
#include "data_plane.h"
#include "learner.h"
#include "plan.h"
#include "tally.h"

namespace tarvex::l2_learning {

/// The figures of both sides, and that they add up.
void check_figures(const plan &planned, const learner &control, const data_plane &pipeline, examples::tally &compared);

/// Every entry of l2LearningLookup and l2Lookup, read back: its key, its action, what is left of its ttl, whether it
/// was ever hit.
void check_stations(const plan &planned, const learner &control, examples::tally &compared);

/// The counters, direct by domain and indirect by interface.
void check_counters(const plan &planned, const bridge_tables &bridge, examples::tally &compared);

}  // namespace tarvex::l2_learning
