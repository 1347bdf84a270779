#include "exports/export_file.h"

#include <sys/resource.h>

#include "platform/failure.h"
#include "tests/files/temporary_folder.h"

namespace orvane::exports {
namespace {

class ExportFileTest : public files::FolderTest {};

TEST_F(ExportFileTest, is_there_when_it_is_finished) {
  ExportFile file(Path());
  file.Write("a\r\n");
  file.Write("b\r\n");
  EXPECT_FALSE(std::filesystem::exists(Path()));
  file.Finish();
  EXPECT_EQ(BytesOf(Path()), "a\r\nb\r\n");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ExportFileTest, leaves_nothing_when_it_is_not_finished) {
  {
    ExportFile file(Path());
    file.Write("a");
  }
  EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(ExportFileTest, keeps_what_stood_there_until_it_is_finished) {
  WriteBytes(Path(), "old");
  ASSERT_EQ(chmod(Path().c_str(), 0640), 0);
  {
    ExportFile file(Path());
    file.Write("new");
  }
  EXPECT_EQ(BytesOf(Path()), "old");
  ExportFile file(Path());
  file.Write("new");
  file.Finish();
  EXPECT_EQ(BytesOf(Path()), "new");
  EXPECT_EQ(FilesInFolder(), 1U);
  EXPECT_EQ(StatusOf(Path()).st_mode & 0777U, 0640U);
}

TEST_F(ExportFileTest, takes_a_mark_and_a_free_name) {
  for (const char* sName : {"rows (first 100 rows).csv", "rows (first 100 rows) (2).csv"}) {
    ExportFile file(Path("rows.csv"));
    file.Write("a");
    EXPECT_EQ(file.FinishMarked(" (first 100 rows)"), Path(sName));
    EXPECT_EQ(BytesOf(Path(sName)), "a");
  }
  EXPECT_FALSE(std::filesystem::exists(Path("rows.csv")));
}

TEST_F(ExportFileTest, says_where_it_cannot_be_written) {
  try {
    ExportFile file(Path("none/rows.csv"));
    FAIL();
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.Number(), platform::failure::kStorage);
    EXPECT_EQ(failed.Description(),
              "The file " + Path("none/rows.csv") +
                  " cannot be written; check that the folder exists and the disk has room.");
  }
}

TEST_F(ExportFileTest, says_that_the_disk_is_full_and_keeps_the_old_file) {
  WriteBytes(Path(), "old");
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{4096, before.rlim_max};
  {
    ExportFile file(Path());
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    try {
      file.Write(std::string(8192, 'x'));
      ADD_FAILURE();
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Description(),
                "The disk of the file " + Path() +
                    " has no room left, so nothing was written: make room and try again.");
    }
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  }
  EXPECT_EQ(BytesOf(Path()), "old");
  EXPECT_EQ(FilesInFolder(), 1U);
}

}  // namespace
}  // namespace orvane::exports
