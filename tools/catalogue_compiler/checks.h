// The rules that rows must keep. Each check tells everything that breaks its rules and leaves rows alone that could not
// be read.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "diagnostics.h"
#include "model.h"

namespace catalogue {

/// Rows of one file stand in the order of their handles. For a model as it was read, before it is sorted.
void check_file_order(const model &m, diagnostics &diag);

/// Names are C identifiers, and differ where exported names derive from them.
void check_names(const model &m, diagnostics &diag);
/// Handles are of their kind, and each is used once.
void check_handles(const model &m, diagnostics &diag);
/// Kinds of tables and fields, widths, byte positions and sums of keys.
void check_keys(const model &m, diagnostics &diag);
/// Widths and byte positions of parameters.
void check_parameters(const model &m, diagnostics &diag);

/// Input handles of hash calculations stand behind one another, and each field has a common number of its own.
void check_hashes(const model &m, diagnostics &diag);
/// Fields of snapshots have sizes that there are, stand behind one another and fill the bytes that are stated.
void check_snapshot_fields(const model &m, diagnostics &diag);
/// Fields of a digest fill its entries; a pipeline has one digest and one value set at most.
void check_services(const model &m, diagnostics &diag);
/// Pieces of labels show fields that their table has, in bits that the fields have.
void check_labels(const model &m, diagnostics &diag);
/// Halves of a MAC address name each other's row.
void check_halves(const model &m, diagnostics &diag);

// These look across rows, so they need all of them.

/// Handles of actions rise along the tables.
void check_action_order(const model &m, diagnostics &diag);
/// Each use names an action, states its sums, and holds its place in the enumeration; each action is used.
void check_action_uses(const model &m, diagnostics &diag);
/// Resource lists name resources that fit, and each resource of a table is named.
void check_resources(const model &m, diagnostics &diag);
/// Profiles and indirect tables name each other.
void check_profiles(const model &m, diagnostics &diag);

}  // namespace catalogue
