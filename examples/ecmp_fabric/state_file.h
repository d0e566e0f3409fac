// The member-selector state of a device as a JSON document in a file.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

namespace tarvex::examples {

/// A file at a path that was given, or a temporary one that goes with the object. Errors are file_error.
class state_file {
 public:
  explicit state_file(const std::optional<std::string> &path);
  state_file(const state_file &) = delete;
  state_file &operator=(const state_file &) = delete;
  ~state_file();

  const std::string &path() const { return path_; }

  void write(const std::string &document) const;
  std::string read() const;

 private:
  std::string path_;
  bool temporary_ = false;
};

/// Has the library log what it knows of the device: a document in JSON.
std::string log_device();

/// Has the library restore what it knows of the device. `origin` tells where the document comes from; one that is not
/// JSON is a file_error.
void restore_device(const std::string &document, const std::string &origin);

}  // namespace tarvex::examples
