// The member-selector state of a device as a JSON document in a file.
//
// SPDX-License-Identifier: Apache-2.0
#include "state_file.h"

#include <cjson/cJSON.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

#include "program.h"
#include "switch_device.h"

namespace tarvex::examples {
namespace {

struct json_deleter {
  void operator()(cJSON *item) const { cJSON_Delete(item); }
  void operator()(char *text) const { cJSON_free(text); }
};
using json_document = std::unique_ptr<cJSON, json_deleter>;
using json_text = std::unique_ptr<char, json_deleter>;

[[noreturn]] void fail(const std::string &path, const char *what)
{
  throw file_error(path + ": " + what + ": " + std::strerror(errno));
}

}  // namespace

state_file::state_file(const std::optional<std::string> &path)
{
  if (path) {
    path_ = *path;
    return;
  }
  const char *const folder = std::getenv("TMPDIR");
  path_ = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp") + "/ecmp_fabric.XXXXXX";
  const int file = mkstemp(path_.data());
  if (file < 0) fail(path_, "cannot be created");
  temporary_ = true;
  close(file);
}

state_file::~state_file()
{
  if (temporary_) unlink(path_.c_str());
}

void state_file::write(const std::string &document) const
{
  std::ofstream file(path_, std::ios::binary);
  if (!file) fail(path_, "cannot be opened for writing");
  file << document << std::flush;
  if (!file) fail(path_, "cannot be written");
}

std::string state_file::read() const
{
  std::ifstream file(path_, std::ios::binary);
  if (!file) fail(path_, "cannot be opened");
  std::string document{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (file.bad()) fail(path_, "cannot be read");
  return document;
}

std::string log_device()
{
  const json_document log(cJSON_CreateObject());
  must(log == nullptr ? pd_status_t{STANDIN_NO_MEMORY} : standin_device_log(device_id, log.get()),
       "logging the device");
  const json_text text(cJSON_PrintUnformatted(log.get()));
  must(text == nullptr ? pd_status_t{STANDIN_NO_MEMORY} : pd_status_t{BF_SUCCESS}, "printing the log of the device");
  return text.get();
}

void restore_device(const std::string &document, const std::string &origin)
{
  const char *end = nullptr;
  const json_document log(cJSON_ParseWithLengthOpts(document.data(), document.size(), &end, 0));
  if (log == nullptr)
    throw file_error(origin + ": not JSON from byte " + std::to_string(end - document.data()) + " on");
  must(standin_device_restore(device_id, log.get()), "restoring the device");
}

}  // namespace tarvex::examples
