// Every rule has a file in bad/ that breaks it. A comment "#! COLUMN: MESSAGE" behind a line is the error which that
// line must give; the file must give these errors and no other.
//
// SPDX-License-Identifier: Apache-2.0
#include "catalogue_folder.h"

namespace catalogue {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> expected_errors(const fs::path &file)
{
  std::vector<std::string> expected;
  std::ifstream in(file);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    for (auto at = line.find("#! "); at != std::string::npos;) {
      const auto next = line.find(" #! ", at);
      std::string error = line.substr(at + 3, next == std::string::npos ? next : next - at - 3);
      error.insert(error.find(':') + 1, " error:");
      expected.push_back("catalogue/" + file.filename().string() + ":" + std::to_string(number) + ":" + error);
      at = next == std::string::npos ? next : next + 1;
    }
  }
  return expected;
}

class bad_file : public testing::TestWithParam<fs::path> {};

TEST_P(bad_file, gives_its_errors)
{
  const fs::path name = GetParam().filename();
  catalogue_folder folder;
  fs::copy(GetParam(), folder.path() / name);
  std::vector<std::string> found = folder.errors();
  // The good catalogue's totals know nothing of added rows.
  std::erase_if(found, [](const std::string &error) {
    return error.starts_with("catalogue/totals.toml:") && error.find("but the rows make") != std::string::npos;
  });
  const auto expected = expected_errors(GetParam());
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(found, expected);
}

std::vector<fs::path> bad_files()
{
  std::vector<fs::path> files{fs::directory_iterator(fs::path(TEST_FOLDER) / "bad"), fs::directory_iterator()};
  std::sort(files.begin(), files.end());
  return files;
}

INSTANTIATE_TEST_SUITE_P(rules, bad_file, testing::ValuesIn(bad_files()),
                         [](const auto &file) { return file.param.stem().string(); });

}  // namespace
}  // namespace catalogue
