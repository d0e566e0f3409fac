// Reads and checks a catalogue folder.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "model.h"

namespace catalogue {

/// Collects errors so that all of them are told before the compiler stops.
class diagnostics {
 public:
  void error(const position &at, std::string message);
  bool failed() const { return !lines_.empty(); }
  /// "catalogue/fib.toml:41:12: error: ...", in the order of files and lines.
  const std::vector<std::string> &lines() const { return lines_; }

 private:
  std::vector<position> places_;  // of lines_, which keep their order
  std::vector<std::string> lines_;
};

/// Reads all *.toml files of `folder`, checks every rule, and works out what follows from the rows. The model is
/// complete only if no error was reported.
model read_catalogue(const std::filesystem::path &folder, diagnostics &diag);

}  // namespace catalogue
