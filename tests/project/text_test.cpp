// What must not be there, in any file that people read or write.
#include <gtest/gtest.h>

#include <regex>

#include "tests/project/tree.h"

namespace orvane::project {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string> kCode = {"src", "tests", "bench", "fuzz"};

// Finds the pattern anywhere in the files, and says where.
void ExpectAbsent(const std::vector<fs::path>& files, const std::regex& pattern) {
  for (const auto& file : files) {
    const auto sLines = Lines(file);
    for (std::size_t n = 0; n < sLines.size(); ++n) {
      EXPECT_FALSE(std::regex_search(sLines[n], pattern))
          << Said(file) << ":" << n + 1 << ": " << sLines[n];
    }
  }
}

std::vector<fs::path> Written() {
  auto files = Files(
      {"src", "tests", "bench", "fuzz", "cmake", "docs", "scripts", "packaging", "samples", ".ci"},
      {".h", ".cpp", ".inc", ".in", ".txt", ".cmake", ".md", ".map", ".py", ".xml", ".desktop",
       ".orvc", "lint", "build", "install-packages", "run"});
  for (const auto& file : TopFiles()) {
    if (file.filename() != "LICENSE") files.push_back(file);
  }
  return files;
}

TEST(TextTest, there_are_files_to_read) {
  EXPECT_GT(Written().size(), 150U);
}

// The patterns are put together here, so that this file does not contain what it looks for.
TEST(TextTest, nothing_refers_to_papers_that_a_reader_does_not_have) {
  ExpectAbsent(Written(), std::regex("\\bPar"
                                     "ts? [0-9]+\\.[0-9x]"));
  ExpectAbsent(Written(), std::regex("\\b[Ii]ssu"
                                     "e [0-9]"));
}

TEST(TextTest, nothing_names_a_path_of_one_machine) {
  ExpectAbsent(Written(), std::regex("(^|[^A-Za-z0-9_.}])/(wor"
                                     "k|hom"
                                     "e/[a-z]+|roo"
                                     "t)/"));
}

TEST(TextTest, nothing_is_left_for_later) {
  ExpectAbsent(Files(kCode), std::regex("\\b(TO"
                                        "DO|FIX"
                                        "ME|XX"
                                        "X|HA"
                                        "CK)\\b"));
}

TEST(TextTest, no_test_is_skipped) {
  ExpectAbsent(Files({"tests"}, {".cpp", ".h"}), std::regex("GTEST_SK"
                                                            "IP|QSK"
                                                            "IP|DISAB"
                                                            "LED_"));
}

TEST(TextTest, a_test_is_named_by_a_sentence_of_behaviour) {
  ExpectAbsent(Files({"tests"}, {".cpp"}), std::regex("^TEST(_F|_P)?\\([A-Za-z0-9_]+, [^a-z0-9]"));
}

TEST(TextTest, a_silenced_lint_names_its_check_and_its_reason) {
  // NO-LINT without brackets, or with nothing behind them.
  const std::string sMark =
      "NO"
      "LINT(NEXTLINE|BEGIN)?";
  ExpectAbsent(Files(kCode), std::regex(sMark + "([^A-Z(]|$)"));
  ExpectAbsent(Files(kCode), std::regex(sMark + "\\([^)]*\\)\\W*$"));
}

TEST(TextTest, lines_end_without_blanks_and_without_carriage_returns) {
  ExpectAbsent(Files(kCode, {".h", ".cpp", ".cmake", ".txt"}), std::regex("[ \\t\\r]$"));
}

}  // namespace
}  // namespace orvane::project
