// Words for the library's own statuses; those of the stand-in switch are made from its names.
//
// SPDX-License-Identifier: Apache-2.0
#include "status_text.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "stand_in.h"

namespace tarvex::shell {

namespace {

const char *library_words(pd_status_t status)
{
  switch (status) {
    case BF_SUCCESS: return "success";
    case PD_STATUS_NO_MEMORY: return "no memory for a working block";
    case PD_STATUS_INVALID_ARG: return "an argument that the operation cannot take";
    case PD_STATUS_UNEXPECTED_REPLY: return "the driver gave an entry of another kind than the table holds";
    case PD_STATUS_WRONG_MEMBER_ACTION: return "the member has another action";
    default: return nullptr;
  }
}

}  // namespace

std::string status_text(pd_status_t status)
{
  const std::string number = "status " + std::to_string(status);
  if (const char *words = library_words(status)) return std::string(words) + " (" + number + ')';
  const stand_in_control *const control = stand_in();
  const char *const name = control != nullptr ? control->status_name(status) : nullptr;
  if (name == nullptr) return number + " of the driver";
  std::string words(name);
  words.erase(0, std::min(words.size(), std::string_view("STANDIN_").size()));
  for (char &letter : words) {
    letter = letter == '_' ? ' ' : static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return words + " (" + name + ", " + number + ')';
}

refused_error::refused_error(pd_status_t status, const std::string &what, const std::string &hint)
    : shell_error(exit_code::refused, what + ": the driver refused: " + status_text(status) + hint), status_(status)
{
}

void require_success(pd_status_t status, const std::string &what)
{
  if (status != BF_SUCCESS) throw refused_error(status, what);
}

}  // namespace tarvex::shell
