// SPDX-License-Identifier: Apache-2.0
#include "traced_call.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "call_trace.h"
#include "call_values.h"

namespace tarvex::trace {

namespace {

using namespace std::chrono;

constexpr int schema_version = 1;

/// What a thread's calls, one in the other, went in with.
struct thread_calls {
  std::vector<std::string> inputs;
  unsigned depth = 0;
  int thread = gettid();
};

thread_calls &of_this_thread()
{
  static thread_local thread_calls calls;
  return calls;
}

/// The driver's functions leave errno to the caller, and so does their trace.
class errno_keeper {
 public:
  errno_keeper() = default;
  errno_keeper(const errno_keeper &) = delete;
  errno_keeper &operator=(const errno_keeper &) = delete;
  ~errno_keeper() { errno = kept_; }

 private:
  int kept_ = errno;
};

void append_duration(std::string &to, nanoseconds taken)
{
  std::array<char, 40> text;
  const auto count = static_cast<double>(taken.count());
  const int length = count < 1e6 ? std::snprintf(text.data(), text.size(), "<%.1fus>\n", count / 1e3)
                                 : std::snprintf(text.data(), text.size(), "<%.3fms>\n", count / 1e6);
  to.append(text.data(), static_cast<std::size_t>(length));
}

bool succeeded(const call_row &row, word result)
{
  return row.result == result_kind::status && static_cast<std::uint32_t>(result) == 0;
}

std::string text_end(const call_row &row, bool anything_ahead, std::span<const word> arguments, word result,
                     nanoseconds taken)
{
  std::string text;
  value_writer to(text, false);
  if (succeeded(row, result)) {
    std::string outputs;
    value_writer outputs_to(outputs, false);
    write_outputs(outputs_to, row, arguments);
    if (!outputs.empty()) (text += anything_ahead ? ", " : "") += outputs;
  }
  text += ')';
  if (row.result != result_kind::nothing) {
    text += " = ";
    write_result(to, row, result);
  }
  if (row.result == result_kind::status) {
    if (const std::string_view name = status_name(static_cast<std::uint32_t>(result)); !name.empty()) {
      (text += ' ') += name;
    }
  }
  text += ' ';
  append_duration(text, taken);
  return text;
}

std::string json_line(const call_row &row, const call_entry &entry, std::string_view inputs,
                      std::span<const word> arguments, word result, nanoseconds taken)
{
  std::string text;
  value_writer to(text, true);
  to.open().member("schema_version").number(schema_version);
  std::string time;
  append_time(time, entry.time);
  to.member("time").quoted(time).member("thread").signed_number(entry.thread).member("depth").number(entry.depth);
  to.member("call").quoted(row.name).member("arguments");
  text += inputs;
  if (succeeded(row, result)) {
    to.member("results").open();
    write_outputs(to, row, arguments);
    to.close();
  }
  if (row.result != result_kind::nothing) {
    write_result(to.member(row.result == result_kind::status ? "status" : "result"), row, result);
  }
  if (row.result == result_kind::status) {
    if (const std::string_view name = status_name(static_cast<std::uint32_t>(result)); !name.empty()) {
      to.member("status_name").quoted(name);
    }
  }
  to.member("nanoseconds").number(static_cast<std::uint64_t>(taken.count())).close();
  text += '\n';
  return text;
}

}  // namespace

traced_call::traced_call(const call_row &row, std::span<const word> arguments)
    : row_(row), arguments_(arguments), trace_(the_trace().running())
{
  thread_calls &here = of_this_thread();
  const unsigned depth = here.depth++;
  if (trace_ == 0) return;
  const errno_keeper keeper;
  if (here.inputs.size() <= depth) here.inputs.resize(depth + 1);
  std::string &inputs = here.inputs[depth];
  inputs.clear();
  const bool json = the_trace().json();
  value_writer to(inputs, json);
  entered_ = system_clock::now();
  if (json) {
    to.open();
    write_inputs(to, row, arguments);
    to.close();
  } else {
    (inputs += row.name) += '(';
    write_inputs(to, row, arguments);
    number_ = the_trace().entered(trace_, {entered_, here.thread, depth}, inputs);
  }
  started_ = steady_clock::now();
}

void traced_call::left(word result)
{
  if (trace_ == 0) return;
  const nanoseconds taken = steady_clock::now() - started_;
  const errno_keeper keeper;
  const thread_calls &here = of_this_thread();
  const call_entry entry{entered_, here.thread, here.depth - 1};
  if (number_ != 0) {
    const bool anything_ahead = here.inputs[entry.depth].back() != '(';
    the_trace().left(trace_, number_, entry, row_.name, text_end(row_, anything_ahead, arguments_, result, taken));
  } else if (the_trace().json()) {
    the_trace().line(trace_, json_line(row_, entry, here.inputs[entry.depth], arguments_, result, taken));
  }
}

traced_call::~traced_call() { --of_this_thread().depth; }

}  // namespace tarvex::trace
