// SPDX-License-Identifier: Apache-2.0
#include "json_output.h"

#include "json_text.h"

namespace tarvex::shell {

namespace {

/// Appends "error":{...}.
void append_error(json_objects &to, exit_code code, std::string_view message,
                  const std::optional<std::uint32_t> &status, const std::optional<script_place> &at)
{
  to.open("error");
  to.text("message", message);
  to.number("exit_code", static_cast<std::uint64_t>(code));
  if (status) to.number("status", *status);
  if (at) {
    to.text("file", at->file);
    to.number("line", at->line);
  }
  to.close();
}

}  // namespace

void json_output::line(std::string_view text)
{
  answered_ = true;
  if (text.starts_with(']')) {
    open_ = false;
  } else if (text.ends_with('[') && text.starts_with("{\"schema_version\"")) {
    open_ = true;
  }
  to_.line(text);
}

void json_output::note(std::string_view text)
{
  if (text.starts_with('{')) {  // a call that is traced as JSON
    to_.note(text);
    return;
  }
  std::string document;
  json_objects json(document);
  json.open();
  json.text("note", text);
  json.close();
  to_.note(document);
}

void json_output::error(std::string_view text)
{
  if (!message_.empty()) message_ += '\n';
  message_ += text;
}

void json_output::finish(exit_code code)
{
  if (answered_ && !open_ && message_.empty()) return;
  std::string document;
  json_objects json(document);
  if (open_) {
    document = "]";
    json.reopen();
  } else {
    json.open();
    json.number("schema_version", schema_version);
  }
  if (!message_.empty()) {
    append_error(json, code, message_, status_, {});
  } else if (!open_) {
    json.boolean("done", true);
  }
  json.close();
  line(document);
}

std::string error_document(exit_code code, std::string_view message, const std::optional<script_place> &at)
{
  std::string document;
  json_objects json(document);
  json.open();
  json.number("schema_version", schema_version);
  append_error(json, code, message, {}, at);
  json.close();
  return document;
}

}  // namespace tarvex::shell
