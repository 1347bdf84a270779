#include "console/log/log_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "console/dialogs/message_boxes.h"

namespace orvane::console {
namespace {

using platform::Failure;
using platform::Text;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

Text TextOf(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

class log_file : public testing::Test {
 protected:
  std::filesystem::path Path(const char* sName = "state/orvane/console.log") {
    return m_folder.filePath(sName).toStdString();
  }
  QTemporaryDir m_folder;
};

TEST_F(log_file, has_number_source_and_native_error_and_makes_its_folder) {
  LogFile(Path()).Note(Failure(3810, "The document x cannot be saved.", "DocumentFile", 28));
  EXPECT_THAT(TextOf(Path()),
              MatchesRegex("[0-9-]+T[0-9:.]+Z .[0-9]+. error number 3810 source \"DocumentFile\" "
                           "native error 28\n"));
}

TEST_F(log_file, is_its_users_alone_whatever_the_umask) {
  for (const mode_t mask : {0U, 077U}) {
    const mode_t before = umask(mask);
    LogFile(Path()).Note(Failure(1, ""));
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(Path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(stat(Path().parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    std::filesystem::remove_all(Path("state"));
  }
}

TEST_F(log_file, has_one_line_for_a_failure_whatever_raised_it) {
  LogFile(Path()).Note(Failure(1, "", "a\nb\x1B[2J"));
  EXPECT_THAT(TextOf(Path()), HasSubstr("source \"a\\nb\\x1B[2J\""));
}

TEST_F(log_file, quotes_no_sentence_and_no_statement) {
  LogFile(Path()).Note(
      Failure(5, "The item \"Password = geheim\" is no item.", "ado", 0, "SELECT 'geheim'"));
  EXPECT_THAT(TextOf(Path()), HasSubstr("number 5 "));
  EXPECT_THAT(TextOf(Path()), Not(HasSubstr("geheim")));
}

TEST_F(log_file, a_cancel_is_no_error) {
  LogFile(Path()).Note(Failure(platform::failure::kCancelled, "The logon was cancelled."));
  EXPECT_THAT(TextOf(Path()), HasSubstr(" info number 3712 "));
}

TEST_F(log_file, is_appended_to_and_laid_aside_when_it_is_full) {
  LogFile log(Path());
  log.Note(Failure(1, ""));
  log.Note(Failure(2, ""));
  EXPECT_THAT(TextOf(Path()), HasSubstr("number 1 "));
  EXPECT_THAT(TextOf(Path()), HasSubstr("number 2 "));
  std::ofstream(Path(), std::ios::app) << Text(LogFile::kMaximumBytes, 'x');
  log.Note(Failure(3, ""));
  EXPECT_THAT(TextOf(Path()), HasSubstr("number 3 "));
  EXPECT_THAT(TextOf(Path()), Not(HasSubstr("number 1 ")));
  EXPECT_THAT(TextOf(Path("state/orvane/console.1.log")), HasSubstr("number 1 "));
  std::ofstream(Path(), std::ios::app) << Text(LogFile::kMaximumBytes, 'x');
  log.Note(Failure(4, ""));
  EXPECT_THAT(TextOf(Path("state/orvane/console.1.log")), HasSubstr("number 3 "));
  EXPECT_FALSE(std::filesystem::exists(Path("state/orvane/console.2.log")));
}

TEST_F(log_file, one_that_cannot_be_written_keeps_nobody_from_working) {
  std::ofstream(Path("file")) << "x";
  LogFile log(Path("file/orvane/console.log"));
  log.Note(Failure(1, ""));
  EXPECT_EQ(TextOf(Path("file")), "x");
}

TEST_F(log_file, lies_in_the_users_state_folder) {
  const char* sBefore = std::getenv("XDG_STATE_HOME");
  const Text sKept = sBefore ? sBefore : "";
  setenv("XDG_STATE_HOME", "/tmp/state", 1);
  EXPECT_EQ(LogFile::StandardPath(), "/tmp/state/orvane/console.log");
  setenv("XDG_STATE_HOME", "relative", 1);
  EXPECT_EQ(LogFile::StandardPath(),
            std::filesystem::path(std::getenv("HOME")) / ".local/state/orvane/console.log");
  unsetenv("XDG_STATE_HOME");
  EXPECT_EQ(LogFile::StandardPath(),
            std::filesystem::path(std::getenv("HOME")) / ".local/state/orvane/console.log");
  if (sBefore) setenv("XDG_STATE_HOME", sKept.c_str(), 1);
}

TEST_F(log_file, hears_of_failures_through_the_message_boxes_unless_they_are_kept_silent) {
  MessageBoxes boxes(std::make_shared<LogFile>(Path()));
  {
    const MessageBoxSuppression silence(boxes);
    boxes.Note(Failure(1, ""));
    EXPECT_FALSE(std::filesystem::exists(Path()));
  }
  boxes.Note(Failure(2, ""));
  EXPECT_THAT(TextOf(Path()), HasSubstr("number 2 "));
}

}  // namespace
}  // namespace orvane::console
