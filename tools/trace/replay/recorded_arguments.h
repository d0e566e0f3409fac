// The arguments of a recorded call, in memory again.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

#include "call_row.h"
#include "handle_map.h"
#include "pipeline_rows.h"
#include "trace_error.h"

namespace tarvex::trace {

class recorded_arguments {
 public:
  /// Throws trace_error, which names the argument that is wrong.
  recorded_arguments(const call_row &row, const nlohmann::json &recorded, const handle_map &handles);

  std::span<const word> words() const { return words_; }
  const handle_scope &scope() const { return scope_; }
  /// What came out at an argument that takes a number of 32 bits.
  std::uint32_t answer(std::size_t at) const { return *reinterpret_cast<const std::uint32_t *>(words_[at]); }

 private:
  void find_scope(const argument_row &argument, const nlohmann::json &value);
  word read(const call_row &row, const argument_row &argument, const nlohmann::json &value,
            const nlohmann::json &recorded);
  word key(const nlohmann::json &value);
  word action(const nlohmann::json &value);
  word all_resources(const nlohmann::json &list);
  void fill_resource(const nlohmann::json &value, drv_res_spec_t &resource);
  word members(value_kind kind, const nlohmann::json &value);
  /// Never null. Throws trace_error for more bytes or less.
  std::uint8_t *bytes(const nlohmann::json &value, std::size_t size);
  template <typename Record>
  Record *record(std::size_t count = 1)
  {
    return reinterpret_cast<Record *>(memory(count * sizeof(Record)));
  }
  std::uint8_t *memory(std::size_t size);

  const handle_map &handles_;
  handle_scope scope_;
  const rows::action_info *action_ = nullptr;  // of the call; null where the catalogue does not have it
  std::vector<std::unique_ptr<std::max_align_t[]>> memory_;
  std::vector<word> words_;
};

}  // namespace tarvex::trace
