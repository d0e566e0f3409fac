// Reads and checks a catalogue folder.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

#include "diagnostics.h"
#include "model.h"

namespace catalogue {

/// Reads all *.toml files of `folder`, checks every rule, and works out what follows from the rows. The model is
/// complete only if no error was reported.
model read_catalogue(const std::filesystem::path &folder, diagnostics &diag);

}  // namespace catalogue
