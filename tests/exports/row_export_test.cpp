#include "exports/row_export.h"

#include "ado/recordset_builder.h"
#include "tests/files/temporary_folder.h"

namespace orvane::exports {
namespace {

using platform::RecordsetPtr;

class RowExportTest : public files::FolderTest {
 protected:
  static RecordsetPtr Numbers(int nFrom, int nTo) {
    ado::RecordsetBuilder builder({{"n"}, {"text"}});
    for (int n = nFrom; n < nTo; ++n) builder.AppendRow({n, "row"});
    return builder.Finish();
  }
};

TEST_F(RowExportTest, writes_pieces_as_one_file) {
  RowExport rows({}, Path("Data.csv"));
  rows.Rows(*Numbers(0, 2));
  rows.Rows(*Numbers(2, 3));
  const Exported done = rows.Finish(false);
  EXPECT_EQ(done.rows, 3);
  EXPECT_FALSE(done.bCut);
  EXPECT_EQ(done.path, Path("Data.csv"));
  EXPECT_EQ(BytesOf(Path("Data.csv")), "n,text\r\n0,row\r\n1,row\r\n2,row\r\n");
}

TEST_F(RowExportTest, has_the_names_also_without_rows) {
  RowExport rows({}, Path());
  rows.Rows(*Numbers(0, 0));
  rows.Finish(false);
  EXPECT_EQ(BytesOf(Path()), "n,text\r\n");
}

TEST_F(RowExportTest, writes_more_than_it_holds_at_once) {
  RowExport rows({.bNames = false}, Path());
  constexpr int kRows = 100'000;
  rows.Rows(*Numbers(0, kRows));
  EXPECT_EQ(rows.Finish(false).rows, kRows);
  std::string sExpected;
  for (int n = 0; n < kRows; ++n) sExpected += std::to_string(n) + ",row\r\n";
  EXPECT_TRUE(BytesOf(Path()) == sExpected);
}

TEST_F(RowExportTest, names_the_file_of_rows_that_were_cut) {
  WriteBytes(Path("Data.csv"), "old");
  RowExport rows({}, Path("Data.csv"));
  rows.Rows(*Numbers(0, 1000));
  const Exported done = rows.Finish(true);
  EXPECT_TRUE(done.bCut);
  EXPECT_EQ(done.path, Path("Data (first 1,000 rows).csv"));
  EXPECT_TRUE(std::filesystem::exists(done.path));
  EXPECT_EQ(BytesOf(Path("Data.csv")), "old");
}

TEST_F(RowExportTest, leaves_nothing_when_it_is_given_up) {
  {
    RowExport rows({}, Path());
    rows.Rows(*Numbers(0, 100'000));
  }
  EXPECT_EQ(FilesInFolder(), 0U);
}

TEST(CutMark, counts_as_the_grids_do) {
  EXPECT_EQ(CutMark(1), "first 1 row");
  EXPECT_EQ(CutMark(100), "first 100 rows");
  EXPECT_EQ(CutMark(1'234'567), "first 1,234,567 rows");
}

}  // namespace
}  // namespace orvane::exports
