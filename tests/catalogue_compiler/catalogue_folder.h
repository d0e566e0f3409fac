// A catalogue folder for one test: a copy of the good one, to which the test adds files.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "read.h"

namespace catalogue {

class catalogue_folder {
 public:
  catalogue_folder() : home_(testing::TempDir() + "catalogue_" + std::to_string(getpid()))
  {
    std::filesystem::create_directories(home_);
    std::filesystem::copy(std::filesystem::path(TEST_FOLDER) / "base", path());
  }
  ~catalogue_folder() { std::filesystem::remove_all(home_); }
  catalogue_folder(const catalogue_folder &) = delete;
  catalogue_folder &operator=(const catalogue_folder &) = delete;

  std::filesystem::path path() const { return home_ / "catalogue"; }

  void write(const std::string &name, const std::string &text) { std::ofstream(path() / name) << text; }

  /// The errors, without the place of the folder.
  std::vector<std::string> errors() const
  {
    diagnostics diag;
    read_catalogue(path(), diag);
    std::vector<std::string> lines;
    const std::string place = home_.string() + "/";
    for (std::string line : diag.lines()) {
      for (auto at = line.find(place); at != std::string::npos; at = line.find(place)) line.erase(at, place.size());
      lines.push_back(line);
    }
    return lines;
  }

 private:
  std::filesystem::path home_;
};

}  // namespace catalogue
