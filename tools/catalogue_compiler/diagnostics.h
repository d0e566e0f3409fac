// Errors of a catalogue, each with the place that it stands at.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

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

/// What an error is about: "table 'ipv4Host', field 'ingIpv4_dip'", and the row whose values it points at.
class subject {
 public:
  template <class Row>
  subject(diagnostics &diag, std::string_view kind, const Row &row) : subject(diag, row, described(kind, row))
  {
  }
  /// A row within another one.
  template <class Row>
  subject(const subject &outer, std::string_view kind, const Row &row)
      : subject(outer.diag_, row, outer.text_ + ", " + described(kind, row))
  {
  }

  /// An error at the value of `key`, or at the row where it has no such value.
  void error(std::string_view key, const std::string &message) const
  {
    diag_.error(row_.of(key), text_ + ": " + message);
  }

 private:
  subject(diagnostics &diag, const origin &row, std::string text) : diag_(diag), row_(row), text_(std::move(text)) {}

  template <class Row>
  static std::string described(std::string_view kind, const Row &row)
  {
    if constexpr (requires { row.name; }) {
      return std::string(kind) + " '" + row.name + "'";
    } else {
      return std::string(kind);
    }
  }

  diagnostics &diag_;
  const origin &row_;
  std::string text_;
};

}  // namespace catalogue
