// Reading routing tables: what a line may be, what is said of one that is none, and what a file may be.
//
// SPDX-License-Identifier: Apache-2.0
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "next_hop.h"
#include "route_lists.h"

namespace tarvex::route_load {
namespace {

TEST(route_line, good_lines)
{
  const struct {
    const char *line, *destination;
    std::uint32_t origin_as;
  } cases[] = {{"1.0.0.0/24\t15169", "1.0.0.0/24", 15169},
               {"  10.0.0.0/8 \t 4294967295 \r", "10.0.0.0/8", 4294967295},
               {"0.0.0.0/0 0", "0.0.0.0/0", 0},
               {"2001:DB8:0::/48 7 ; comment", "2001:db8::/48", 7},
               {"::/0 1#comment", "::/0", 1},
               {"::ffff:1.2.3.4/128 2", "::ffff:1.2.3.4/128", 2}};
  for (const auto &c : cases) {
    const auto parsed = parse_line(c.line);
    ASSERT_TRUE(std::holds_alternative<route>(parsed)) << c.line;
    EXPECT_EQ(to_string(std::get<route>(parsed).destination), c.destination);
    EXPECT_EQ(std::get<route>(parsed).origin_as, c.origin_as);
  }
  for (const char *line : {"", " \t\r", "; comment", "  # 1.0.0.0/8 1"}) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(parse_line(line))) << line;
  }
}

TEST(route_line, bad_lines_and_their_reasons)
{
  const struct {
    std::string_view line, reason;
  } cases[] = {
      {"1.2.3.4 5", "no prefix length in '1.2.3.4'"},
      {"1.2.3/8 5", "'1.2.3' is no IPv4 address"},
      {"1.2.3.256/8 5", "no IPv4 address"},
      {"2001:db8::1::/64 5", "no IPv6 address"},
      {std::string_view("1.2.3.4\0/8 5", 12), "'1.2.3.4?' is no IPv4 address"},
      {"1.2.3.4/ 5", "'' is no prefix length"},
      {"1.2.3.4/-1 5", "'-1' is no prefix length"},
      {"1.2.3.4/08 5", "'08' is no prefix length"},
      {"1.2.3.4/33 5", "prefix length 33 is beyond the 32 bits of an IPv4 address"},
      {"::/129 5", "129 is beyond the 128 bits"},
      {"::/99999999999999999999999 5", "beyond the 128 bits"},
      {"10.0.0.1/24 5", "host bits set below its prefix length; the network is 10.0.0.0/24"},
      {"2001:db8::1/127 5", "the network is 2001:db8::/127"},
      {"10.0.0.0/8", "no AS number behind '10.0.0.0/8'"},
      {"10.0.0.0/8 AS5", "'AS5' is no AS number"},
      {"10.0.0.0/8 5 6", "'5 6' is no AS number"},
      {"10.0.0.0/8 4294967296", "beyond 32 bits"},
  };
  for (const auto &[line, reason] : cases) {
    const auto parsed = parse_line(line);
    ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << line;
    EXPECT_NE(std::get<std::string>(parsed).find(reason), std::string::npos) << std::get<std::string>(parsed);
  }
}

class route_file : public testing::Test {
 public:
  route_file()
  {
    char name[] = "/tmp/route_file_XXXXXX";
    path_ = mkdtemp(name);
    file_ = path_ + "/routes";
  }
  ~route_file() override { std::filesystem::remove_all(path_); }

 protected:
  void write(const std::string &text) { std::ofstream(file_, std::ios::binary) << text; }
  void write_gzip(const std::string &text)
  {
    gzFile to = gzopen(file_.c_str(), "wb");
    gzwrite(to, text.data(), static_cast<unsigned>(text.size()));
    gzclose(to);
  }

  std::string path_, file_;
};

TEST_F(route_file, plain_and_gzip_give_the_same_sorted_routes)
{
  const std::string text =
      "; head\n10.0.0.0/9 3\n\n10.0.0.0/8 2\nbad\n::/0 9\n10.0.0.0/9 4\n1.0.0.0/24 1";  // no line end
  for (const bool gzip : {false, true}) {
    gzip ? write_gzip(text) : write(text);
    const auto list = read_route_file(file_);
    std::string got;
    for (const route &r : list.routes) {
      got += to_string(r.destination) + ' ' + std::to_string(r.origin_as) + " line " + std::to_string(r.line) + '\n';
    }
    EXPECT_EQ(got, "1.0.0.0/24 1 line 8\n10.0.0.0/8 2 line 4\n10.0.0.0/9 4 line 7\n::/0 9 line 6\n");
    EXPECT_EQ(list.lines, 8U);
    EXPECT_EQ(list.duplicates, 1U);
    ASSERT_EQ(list.bad_lines.count(), 1U);
    EXPECT_EQ(list.bad_lines.kept()[0].line, 5U);
  }
}

TEST_F(route_file, many_and_overlong_bad_lines)
{
  std::string text(line_reader::longest_line + 10, '1');
  text += "\n1.0.0.0/8 5\n";
  for (int i = 0; i < 50; ++i) text += "bad\n";
  text += std::string(3 * line_reader::longest_line, '2');  // and no line end
  write(text);
  const auto list = read_route_file(file_);
  EXPECT_EQ(list.routes.size(), 1U);
  EXPECT_EQ(list.bad_lines.count(), 52U);
  EXPECT_EQ(list.bad_lines.kept().size(), 20U);
  EXPECT_EQ(list.bad_lines.kept()[0].line, 1U);
  EXPECT_EQ(list.lines, 53U);
}

TEST_F(route_file, files_that_cannot_be_read_to_their_end)
{
  EXPECT_THROW(read_route_file(file_), file_error);
  EXPECT_THROW(read_route_file(path_), file_error);
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "10." + std::to_string(i / 256) + '.' + std::to_string(i % 256) + ".0/24 7\n";
  write_gzip(text);
  const auto size = std::filesystem::file_size(file_);
  {
    std::fstream damage(file_, std::ios::in | std::ios::out | std::ios::binary);
    damage.seekp(static_cast<std::streamoff>(size) - 6);  // in the checksum
    damage.put('x').put('y');
  }
  EXPECT_THROW(read_route_file(file_), file_error);
  std::filesystem::resize_file(file_, size / 2);
  EXPECT_THROW(read_route_file(file_), file_error);
  write_gzip("10.0.0.0/8 1\n");
  std::ofstream(file_, std::ios::app | std::ios::binary) << "<html>";
  EXPECT_THROW(read_route_file(file_), file_error);
}

TEST_F(route_file, compressed_parts_one_after_the_other_and_a_byte_order_mark)
{
  write_gzip(
      "\xef\xbb\xbf"
      "10.0.0.0/8 1\n10.1.0.0/16");
  std::ostringstream first;
  first << std::ifstream(file_, std::ios::binary).rdbuf();
  write_gzip(
      " 2\n\xef\xbb\xbf"
      "10.2.0.0/16 3\n");
  std::ostringstream both;
  both << first.str() << std::ifstream(file_, std::ios::binary).rdbuf();
  write(both.str());
  const auto list = read_route_file(file_);
  EXPECT_EQ(list.routes.size(), 2U);
  EXPECT_EQ(list.bad_lines.count(), 1U) << "the mark begins a file, not a line";
}

TEST(next_hop, comes_from_the_as_number_by_the_rule)
{
  EXPECT_EQ(hop_of(0x00010008), (hop{hop_kind::next_hop, 9}));
  EXPECT_EQ(hop_of(13), (hop{hop_kind::next_hop2, 13}));
  EXPECT_EQ(hop_of(0xffff000e), (hop{hop_kind::next_hop3, 0xfff1}));
  EXPECT_EQ(hop_of(15), (hop{hop_kind::ecmp, 15}));
  for (const std::uint32_t folds_to_nothing : {0U, 0x00050005U}) EXPECT_NE(hop_of(folds_to_nothing).value, 0);
}

}  // namespace
}  // namespace tarvex::route_load
