// The output of a command with -j: one JSON document, complete however the command ends.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "output.h"
#include "shell_error.h"

namespace tarvex::shell {

/// Version of the JSON that commands write.
inline constexpr int schema_version = 2;

/// Passes on lines that are JSON already, and turns everything else into JSON. A document either is one line, or has a
/// first line that ends in '[', a line for each row, and a last line that begins with ']'.
class json_output : public output {
 public:
  explicit json_output(output &to) : to_(to) {}

  void heading(std::string_view text) override { to_.heading(text); }
  void line(std::string_view text) override;
  void note(std::string_view text) override;
  /// Kept until the command ends: the error is a member of its document.
  void error(std::string_view text) override;
  void refused_with(std::uint32_t status) override { status_ = status; }
  void progress(std::string_view label, std::uint64_t done, std::uint64_t total) override
  {
    to_.progress(label, done, total);
  }
  void flush() override { to_.flush(); }

  /// Whether a document has begun and is not complete.
  bool open() const { return open_; }
  /// Completes the document, with the error where there was one.
  void finish(exit_code code);
  void finish_with(exit_code code, std::string_view message)
  {
    error(message);
    finish(code);
  }

 private:
  output &to_;
  bool open_ = false;
  bool answered_ = false;
  std::string message_;
  std::optional<std::uint32_t> status_;
};

/// A line of a script.
struct script_place {
  std::string_view file;
  std::uint64_t line;
};

/// A document that holds an error and nothing else.
std::string error_document(exit_code code, std::string_view message, const std::optional<script_place> &at = {});

}  // namespace tarvex::shell
