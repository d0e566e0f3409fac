// What the compiler makes of a good catalogue, and the errors of whole files and folders.
//
// SPDX-License-Identifier: Apache-2.0
#include <sstream>

#include "catalogue_folder.h"
#include "schema_texts.h"

namespace catalogue {
namespace {

using testing::TempDir;

class good_catalogue : public testing::Test {
 protected:
  good_catalogue() : made(read_catalogue(folder.path(), diag)) {}
  void SetUp() override { ASSERT_EQ(diag.lines(), std::vector<std::string>()); }

  catalogue_folder folder;
  diagnostics diag;
  model made;
};

TEST_F(good_catalogue, structures_are_laid_out_with_their_room)
{
  const struct {
    const char *table;
    std::vector<std::size_t> members;
    std::vector<std::pair<unsigned, unsigned>> offsets;  // in key order: member, mask or prefix length
    unsigned size;
  } keys[] = {
      {"host", {0}, {{0, 0}}, 2},
      {"acl", {2, 1, 0}, {{20, 22}, {12, 16}, {0, 0}}, 32},
      {"route", {0, 1}, {{0, 0}, {2, 18}}, 20},
      {"stp", {}, {}, 0},
  };
  for (const auto &k : keys) {
    SCOPED_TRACE(k.table);
    const table &t = *made.find_table(k.table);
    EXPECT_EQ(t.members, k.members);
    EXPECT_EQ(t.record_size, k.size);
    ASSERT_EQ(t.fields.size(), k.offsets.size());
    for (std::size_t i = 0; i < k.offsets.size(); ++i) {
      EXPECT_EQ(std::pair(t.fields[i].offset, t.fields[i].companion_offset), k.offsets[i]) << t.fields[i].name;
    }
  }
  const action &forward = *made.find_action("forward");
  EXPECT_EQ(forward.params[0].offset, 4u);
  EXPECT_EQ(forward.params[1].offset, 8u);
  EXPECT_EQ(forward.record_size, 12u);
  EXPECT_EQ(std::pair(forward.data_bits, forward.data_bytes), std::pair(24u, 3u));
  EXPECT_EQ(made.find_action("member")->record_size, 6u);
}

TEST_F(good_catalogue, key_bytes_and_live_masks_are_read)
{
  const table &route = *made.find_table("route");
  EXPECT_TRUE(route.fields[0].key.partition);
  EXPECT_EQ(std::pair(route.fields[0].key.first, route.fields[0].key.count), std::pair(0u, 2u));
  EXPECT_EQ(std::pair(route.fields[1].key.first, route.fields[1].key.count), std::pair(2u, 16u));
  std::array<std::uint8_t, 16> low_half{};
  std::fill(low_half.begin() + 8, low_half.end(), std::uint8_t{0xff});
  EXPECT_EQ(route.fields[1].live, low_half);
  EXPECT_FALSE(route.fields[1].live_all);
  const field &port = made.find_table("acl")->fields[0];
  EXPECT_TRUE(port.live_all);
  EXPECT_EQ(std::pair(port.live[14], port.live[15]), std::pair(std::uint8_t{1}, std::uint8_t{0xff}));
}

TEST_F(good_catalogue, actions_stand_in_the_order_of_first_use)
{
  std::vector<std::string> names;
  for (const action &a : made.actions) names.push_back(a.name);
  EXPECT_EQ(names, (std::vector<std::string>{"forward", "drop", "member", "meter_it", "check"}));
  EXPECT_EQ(made.find_table("police")->actions[1].action, 1u);
  EXPECT_EQ(made.profiles[0].actions[0].action, 2u);

  const action &meter_it = made.actions[3];
  EXPECT_EQ(meter_it.index_resources, std::vector<std::uint32_t>{0x5000002});
  EXPECT_TRUE(meter_it.params[0].resource_index);
  EXPECT_FALSE(meter_it.params[1].resource_index);
  EXPECT_TRUE(made.actions[1].index_resources.empty());
}

// What callers make room for follows the rows: the table 'route' has the longest key, 'meter_it' the longest action.
TEST_F(good_catalogue, room_for_texts_grows_with_the_rows)
{
  const std::string wide = "0x" + std::string(32, 'F');
  const std::string key = "( 0x1234," + wide + ",0x0080,),", action = "('meter_it',(0x12345678,0x1,)),";
  const std::string entry = "((" + key + "('forward',(0x1234,0x12,)),),(0,True))";
  const std::string schema =
      "( ('acl','mat',(False,)),(( 'port','md_port',9,0x1ff,'port',None,None),( "
      "'portMask','md_port_mask',9,0x1ff,None,None,None),( 'oui','md_oui',24,0xffffff,'mac',None,None),( "
      "'ouiMask','md_oui_mask',24,0xffffff,None,None,None),( 'ethValid','eth_valid',1,0x1,None,None,None),),(( "
      "('drop'),()),))";
  const text_sizes before = longest_texts(made);
  EXPECT_EQ(before.key, key.size() + 1);
  EXPECT_EQ(before.action, action.size() + 1);
  EXPECT_EQ(before.entry, entry.size() + 1);
  EXPECT_EQ(before.schema, schema.size() + 1);

  field &address = made.tables[2].fields[1];
  made.tables[1].fields[0].short_name += "12";  // in two rows of the schema
  address.match = match_kind::exact;            // no prefix length
  made.actions[0].params[0].bits = 32;          // of 'forward'
  made.actions[3].params[1].bits = 5;
  const text_sizes after = longest_texts(made);
  EXPECT_EQ(after.schema, before.schema + 4);
  EXPECT_EQ(after.key, before.key - 7);
  EXPECT_EQ(after.entry, before.entry - 7 + 4);
  EXPECT_EQ(after.action, before.action + 1);
}

TEST_F(good_catalogue, groups_go_by_their_first_table)
{
  folder.write("a_later.toml", R"(title = "Later"
[[table]]
name = "later"
handle = 0x1000007
kind = "keyless"
actions = [
  { name = "last", enum = 5, handle = 0x20000009, default = true, data_bits = 0, data_bytes = 0 }]
[[action]]
name = "last"
)");
  folder.write("totals.toml", "");
  const model more = read_catalogue(folder.path(), diag);
  EXPECT_EQ(diag.lines(), std::vector<std::string>{folder.path().string() +
                                                   ": error: no file states the totals; add a [totals] table"});
  ASSERT_EQ(more.groups.size(), 2u);
  EXPECT_EQ(more.groups[0].file, "pipeline");
  EXPECT_EQ(more.groups[1].title, "Later");
  EXPECT_EQ(more.find_table("later")->group, 1u);
  EXPECT_EQ(more.find_action("last")->group, 1u);
  EXPECT_EQ(more.find_action("drop")->group, 0u);
}

TEST(catalogue_files, errors_of_all_files_are_told_in_their_order)
{
  catalogue_folder folder;
  folder.write("b.toml", "[[counter]]\nname = \"c\"\nhandle = 0x4000009\nkind = \"indirect\"\ncolour = 1\nshade = 2\n");
  folder.write("a.toml", "title = \"A\"\nrows = 1\n");
  folder.write("z.toml", "x = ]\n");
  std::filesystem::create_directory(folder.path() / "d.toml");
  const auto errors = folder.errors();
  ASSERT_EQ(errors.size(), 5u);
  EXPECT_EQ(errors[0].find("catalogue/a.toml:2:1: error: unknown key 'rows'; known here: 'title', "), 0u);
  EXPECT_EQ(errors[1],
            "catalogue/b.toml:5:1: error: counter 'c': unknown key 'colour'; known here: 'name', 'handle', "
            "'kind' or 'table'");
  EXPECT_EQ(errors[2].find("catalogue/b.toml:6:1: error: counter 'c': unknown key 'shade'; "), 0u);
  EXPECT_EQ(errors[3], "catalogue/d.toml: error: cannot be read; check that it is a file and its permissions");
  EXPECT_EQ(errors[4].find("catalogue/z.toml:1:5: error: "), 0u);
}

TEST(catalogue_files, every_total_is_counted)
{
  catalogue_folder folder;
  std::vector<std::string> lines;
  std::ifstream in(folder.path() / "totals.toml");
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_EQ(lines.size(), 26u);
  for (std::size_t wrong = 2; wrong < lines.size(); ++wrong) {
    const std::string key = lines[wrong].substr(0, lines[wrong].find(' '));
    const std::string count = lines[wrong].substr(key.size() + 3);
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) text += lines[i] + (i == wrong ? "0\n" : "\n");
    folder.write("totals.toml", text);
    EXPECT_EQ(folder.errors(), std::vector<std::string>{"catalogue/totals.toml:" + std::to_string(wrong + 1) + ":" +
                                                        std::to_string(key.size() + 4) + ": error: totals: '" + key +
                                                        "' is " + count + "0, but the rows make " + count});
  }
}

// Lost rows show in the totals; a pipeline without snapshots is one all the same.
TEST(catalogue_files, snapshots_may_have_no_fields)
{
  catalogue_folder folder;
  std::ostringstream rows;
  rows << std::ifstream(folder.path() / "resources.toml").rdbuf();
  folder.write("resources.toml", rows.str().substr(0, rows.str().find("[[snapshot_layout]]")));
  const auto errors = folder.errors();
  ASSERT_EQ(errors.size(), 2u);
  EXPECT_NE(errors[0].find("'snapshot_ingress_fields' is 3, but the rows make 0"), std::string::npos);
  EXPECT_NE(errors[1].find("'snapshot_egress_fields' is 1, but the rows make 0"), std::string::npos);
}

TEST(catalogue_files, a_folder_needs_rows)
{
  const struct {
    std::string folder, error;
  } cases[] = {
      {TempDir() + "no_such_folder", "the catalogue folder cannot be read: No such file or directory"},
      {std::string(TEST_FOLDER), "no .toml file in the catalogue folder"},
  };
  for (const auto &c : cases) {
    diagnostics diag;
    read_catalogue(c.folder, diag);
    EXPECT_EQ(diag.lines(), std::vector<std::string>{c.folder + ": error: " + c.error});
  }
}

}  // namespace
}  // namespace catalogue
