// Rows of functions: what follows from them, and the error that each mistake gives.
//
// SPDX-License-Identifier: Apache-2.0
#include "driver_rows.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <map>

#include "call_row.h"

namespace driver_rows {
namespace {

constexpr const char *kinds = R"(
kinds = [
  { arguments = ["n", "index"] },
  { carries = "entry_handle", arguments = ["hdls"], type = "pd_entry_hdl_t" },
  { carries = "meter", arguments = ["meter"], name = "spec", type = "drv_meter_spec_t *" },
  { note = "8 bits", arguments = ["dev_id"] },
]
[all]
)";
constexpr int lines_of_kinds = 8;
constexpr const char *other = "f.doc = \"F.\"\nf.reads = \"n index hdls meter dev_id\"\n";

class driver_file : public testing::Test {
 protected:
  driver_file() : path_(testing::TempDir() + "driver_" + std::to_string(getpid()) + ".toml") {}
  ~driver_file() override { std::filesystem::remove(path_); }

  std::vector<group> read(const std::string &rows, const std::string &frame = "@all@\n")
  {
    std::ofstream(path_) << kinds << rows;
    std::ofstream(path_ + ".h") << frame;
    std::vector<group> groups = driver_rows::read(path_, diag_);
    header_ = header(groups, path_ + ".h", diag_).text();
    std::filesystem::remove(path_ + ".h");
    return groups;
  }

  std::string path_;
  catalogue::diagnostics diag_;
  std::string header_;
};

TEST_F(driver_file, declarations_rows_and_definitions_follow)
{
  const auto groups = read(
      "b.doc = \"Reads.\"\n"
      "b.reads = \"dev_id index n hdls:inout[index<=n] meter:out\"\n"
      "a_fn_t.doc = \"Called.\"\na_fn_t.callback = \"\"\na_fn_t.gives = \"nothing\"\n");
  EXPECT_EQ(diag_.lines(), std::vector<std::string>{});
  EXPECT_EQ(header_,
            "/** Reads. */\n"
            "pd_status_t b(uint32_t dev_id /* 8 bits */, uint32_t index, uint32_t n, pd_entry_hdl_t *hdls, "
            "drv_meter_spec_t *spec);\n"
            "/** Called. */\n"
            "typedef void (*a_fn_t)(void);\n");
  const std::string rows = row_definitions(groups).text();
  for (const char *part :
       {"row_of<&b> = {", "call_effect::reads, 5,",
        "{\"hdls\", value_kind::entry_handle, direction::inout, sizeof(pd_entry_hdl_t), 2, 1}",
        "{\"spec\", value_kind::meter, direction::out, sizeof(drv_meter_spec_t *)}", "function_list<&b>"}) {
    EXPECT_NE(rows.find(part), rows.npos) << part << "\n" << rows;
  }
  EXPECT_EQ(rows.find("a_fn_t"), rows.npos);
  EXPECT_NE(function_definitions(groups, false).text().find("return driver_call<&b>(dev_id, index, n, hdls, spec);"),
            std::string::npos);
}

TEST_F(driver_file, mistakes_are_reported_where_they_are)
{
  const std::map<std::string, std::string> mistakes = {
      {"g.reads = \"n\"", "1:1: error: 'g': key 'doc' is missing"},
      {"g.doc = \"G.\"",
       "1:9: error: 'g': its arguments must stand once, as 'reads', 'writes', 'neither' or 'callback'"},
      {"g = { doc = \"G.\", reads = \"\", writes = \"\" }",
       "1:13: error: 'g': its arguments must stand once, as 'reads', 'writes', 'neither' or 'callback'"},
      {"g = { doc = \"G.\", reads = \"m\" }", "1:27: error: 'g': 'm' is no argument; 'kinds' lists them"},
      {"g = { doc = \"G.\", reads = \"n:up\" }", "1:27: error: 'g': 'n' goes 'up'; it must be 'in', 'out' or 'inout'"},
      {"g = { doc = \"G.\", reads = \"hdls:out[n]\" }",
       "1:27: error: 'g': 'n', which says a length, is no argument of the function"},
      {"g = { doc = \"G.\", reads = \"n n\" }", "1:27: error: 'g': two arguments are called 'n'"},
      {"g = { doc = \"G.\", reads = \"\", gives = \"up\" }",
       "1:39: error: 'g': 'gives' is 'up'; it must be 'status', 'state', 'block' or 'nothing'"},
      {"g = 1", "1:5: error: group 'all': 'g' must be a table"},
  };
  for (const auto &[rows, error] : mistakes) {
    diag_ = {};
    read(other + rows);
    const auto colon = error.find(':');
    EXPECT_EQ(diag_.lines(),
              std::vector<std::string>{path_ + ":" + std::to_string(lines_of_kinds + 3) + error.substr(colon)})
        << rows;
  }
}

TEST_F(driver_file, arguments_and_groups_without_a_use_are_mistakes)
{
  read("f.doc = \"F.\"\nf.reads = \"n index hdls dev_id\"\n", "@one@\n");
  EXPECT_EQ(diag_.lines(),
            (std::vector<std::string>{path_ + ":5:36: error: argument 'meter': no function has it",
                                      path_ + ":8:1: error: group 'all': " + path_ + ".h must have one line @all@",
                                      path_ + ".h:1:1: error: the rows have no group '@one@'"}));
}

/// What the driver's own rows say against what C++ knows of the functions.
template <auto Function, typename Result, typename... Arguments>
void expect_row_fits(std::type_identity<Result (*)(Arguments...)>)
{
  using namespace tarvex::trace;
  const call_row &row = row_of<Function>;
  ASSERT_EQ(row.count, sizeof...(Arguments)) << row.name;
  std::size_t at = 0;
  [[maybe_unused]] const auto expect_argument = [&]<typename T>(std::type_identity<T>) {
    const argument_row &argument = row.rows[at++];
    using value = std::remove_pointer_t<T>;
    constexpr bool is_number = std::is_arithmetic_v<value> && !std::is_same_v<value, const char>;
    EXPECT_EQ(argument.kind <= value_kind::snapshot_handle, is_number) << row.name << argument.name;
    if constexpr (is_number) {
      EXPECT_EQ(argument.way != direction::in, std::is_pointer_v<T>) << row.name << argument.name;
      EXPECT_EQ(argument.size, sizeof(value)) << row.name << argument.name;
    }
    if (std::is_const_v<value>) {
      EXPECT_EQ(argument.way, direction::in) << row.name << argument.name;
    }
  };
  (expect_argument(std::type_identity<Arguments>{}), ...);
  EXPECT_EQ(row.result == result_kind::status, (std::is_same_v<Result, pd_status_t>)) << row.name;
}

template <auto... Functions>
void expect_rows_fit(tarvex::driver::function_list<Functions...>)
{
  EXPECT_EQ(sizeof...(Functions), 111u);
  (expect_row_fits<Functions>(std::type_identity<decltype(Functions)>{}), ...);
}

TEST(driver_rows, fit_the_functions) { expect_rows_fit(tarvex::driver::driver_functions{}); }

}  // namespace
}  // namespace driver_rows
