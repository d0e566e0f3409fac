// By a library that compiles an expression to an automaton.
//
// SPDX-License-Identifier: Apache-2.0
#include "text_pattern.h"

#include <re2/re2.h>

#include "shell_error.h"

namespace tarvex::shell {

text_pattern::text_pattern(const std::string &text, letter_case letters)
{
  re2::RE2::Options options(re2::RE2::Latin1);  // any bytes
  options.set_log_errors(false);
  options.set_case_sensitive(letters == letter_case::counts);
  compiled_ = std::make_shared<const re2::RE2>(text, options);
  if (!compiled_->ok()) throw usage_error("'" + text + "' is no regular expression: " + compiled_->error());
}

bool text_pattern::found_in(std::string_view text) const
{
  return compiled_ == nullptr || re2::RE2::PartialMatch({text.data(), text.size()}, *compiled_);
}

}  // namespace tarvex::shell
