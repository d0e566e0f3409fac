// Output on two descriptors: data on one, remarks and errors on the other.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "output.h"

namespace tarvex::shell {

/// What is written is kept back until there is a good deal of it; flush() sends the rest. Throws file_error where it
/// cannot be written.
class stream_output : public output {
 public:
  stream_output(int data, int remarks, bool data_colour, bool remark_colour);
  ~stream_output() override;

  void heading(std::string_view text) override;
  void line(std::string_view text) override;
  void note(std::string_view text) override;
  void error(std::string_view text) override;
  void progress(std::string_view label, std::uint64_t done, std::uint64_t total) override;
  void flush() override;

 private:
  void write(int descriptor, std::string_view text);
  void remark(std::string_view text, std::string_view colour);
  void wipe_progress();

  int data_;
  int remarks_;
  bool data_colour_;
  bool remark_colour_;
  bool bar_;  // a person watches
  std::uint64_t shown_percent_ = 0;
  std::size_t bar_columns_ = 0;  // of the bar that is shown; 0 where none is
  std::string kept_;
};

}  // namespace tarvex::shell
