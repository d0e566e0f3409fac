// Text of one generated file: built line by line, written only if it differs from what is there.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue {

class generated_file {
 public:
  /// Lines of the file, joined from pieces.
  template <class... Pieces>
  generated_file &line(const Pieces &...pieces)
  {
    ((text_ += pieces), ...);
    text_ += '\n';
    return *this;
  }

  /// Text as it stands, its line ends included.
  generated_file &add(std::string_view text)
  {
    text_ += text;
    return *this;
  }

  /// Words behind `first`, broken before column 120; further lines begin with `next`.
  generated_file &paragraph(std::string_view first, std::string_view next, std::string_view words);

  /// `head` and the items with commas, broken between items before column 120, then `tail`.
  generated_file &arguments(std::string head, const std::vector<std::string> &items, std::string_view tail);

  const std::string &text() const { return text_; }

  /// Leaves an unchanged file alone, so that nothing is built anew for it. Throws std::runtime_error with the path and
  /// the reason when the file cannot be written.
  void write(const std::filesystem::path &path) const;

 private:
  std::string text_;
};

/// The comment that every generated source begins with.
void begin_source(generated_file &to, std::string_view about);

/// "0x1000001"
std::string hex(std::uint32_t value);

}  // namespace catalogue
