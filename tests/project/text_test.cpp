// What must not be there, in any file that people read or write.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "tests/project/tree.h"

namespace orvane::project {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string> kCodeFolders = {"src", "tests", "bench", "fuzz"};

// Finds the pattern anywhere in the files, and says where. A line of which something is found
// contains one of the hints: looking for those first is what makes this quick.
void ExpectAbsent(const std::vector<fs::path>& files, const std::vector<std::string>& sHints,
                  const std::string& sPattern) {
  const std::regex pattern(sPattern);
  for (const auto& file : files) {
    const auto isHinted = [&](const std::string& sText) {
      return std::any_of(sHints.begin(), sHints.end(),
                         [&](const auto& sHint) { return sText.find(sHint) != std::string::npos; });
    };
    if (!isHinted(Content(file))) continue;
    const auto sLines = Lines(file);
    for (std::size_t n = 0; n < sLines.size(); ++n) {
      if (!isHinted(sLines[n])) continue;
      EXPECT_FALSE(std::regex_search(sLines[n], pattern))
          << Said(file) << ":" << n + 1 << ": " << sLines[n];
    }
  }
}

// Every text that people read or write, whatever its name ends with. Pictures and what a fuzzer
// starts from are bytes; the licence is not ours.
std::vector<fs::path> Written() {
  std::vector<fs::path> files = TopFiles();
  for (const auto& file : Files({"src", "tests", "bench", "fuzz", "cmake", "docs", "scripts",
                                 "packaging", "samples", ".ci"})) {
    if (!Said(file).starts_with("fuzz/corpus/")) files.push_back(file);
  }
  std::erase_if(files, [](const fs::path& file) {
    return file.filename() == "LICENSE" || Content(file).find('\0') != std::string::npos;
  });
  return files;
}

TEST(TextTest, files_of_every_kind_are_read) {
  const auto files = Written();
  EXPECT_GT(files.size(), 500U);
  for (const char* const sFile :
       {"run", "test", "README.md", ".ci/run", ".clang-tidy", "scripts/build", "scripts/fuzz",
        "CMakeLists.txt", "CMakePresets.json", "cmake/doors.txt", "docs/errors.md",
        "samples/Localhost.orvc", "packaging/debian-packages.txt", "src/tools/CMakeLists.txt",
        "src/console/look/images/server.svg", "tests/leaks_of_others.txt", "bench/document.cpp"}) {
    EXPECT_TRUE(std::find(files.begin(), files.end(), Root() / sFile) != files.end()) << sFile;
  }
}

// The patterns are put together here, so that this file does not contain what it looks for.
TEST(TextTest, nothing_refers_to_papers_that_a_reader_does_not_have) {
  ExpectAbsent(Written(),
               {"Par"
                "t"},
               "\\bPar"
               "ts? [0-9]+\\.[0-9x]");
  ExpectAbsent(Written(),
               {"ssu"
                "e"},
               "\\b[Ii]ssu"
               "e #?[0-9]");
}

// Other people's papers may be named in full, such as the one on base directories.
TEST(TextTest, nothing_speaks_of_papers_that_it_was_made_from) {
  ExpectAbsent(Written(),
               {"pe"
                "c",
                "PE"
                "C"},
               "\\b[Ss]pe"
               "cs?\\b|\\bSPE"
               "CS?\\b|\\b([Tt]he|[Tt]his|[Oo]ur|[Pp]er|[Ss]ee|[Aa]) [Ss]pe"
               "cifications?\\b");
}

TEST(TextTest, nothing_names_a_path_of_one_machine) {
  ExpectAbsent(Written(),
               {"/wor"
                "k/",
                "/hom"
                "e/",
                "/roo"
                "t/"},
               "(^|[^A-Za-z0-9_.}])/(wor"
               "k|hom"
               "e/[a-z]+|roo"
               "t)/");
}

// Elsewhere each has a function of its own to ask.
TEST(TextTest, one_place_reads_where_the_users_folders_are) {
  auto files = Files({"src"}, {".cpp", ".h"});
  std::erase_if(files, [](const fs::path& file) { return file.filename() == "user_folders.cpp"; });
  ExpectAbsent(files, {"\"HOME\"", "\"XDG_"}, "\"(HOME|XDG_[A-Z_]+)\"");
}

// The files of catalogs are databases, which the historian makes.
TEST(TextTest, one_place_puts_a_file_into_the_place_of_another) {
  auto files = Files({"src"}, {".cpp", ".h"});
  std::erase_if(files, [](const fs::path& file) {
    const std::string sFile = Said(file);
    return sFile == "src/files/successor.cpp" || sFile.starts_with("src/provider/historian/");
  });
  ExpectAbsent(files, {"rename", "linkat"}, "(^|[^A-Za-z_:.])(rename|renameat2?|linkat)\\(");
}

TEST(TextTest, nothing_is_left_for_later) {
  ExpectAbsent(Files(kCodeFolders),
               {"TO"
                "DO",
                "FIX"
                "ME",
                "XX"
                "X",
                "HA"
                "CK"},
               "\\b(TO"
               "DO|FIX"
               "ME|XX"
               "X|HA"
               "CK)\\b");
}

// Rights and disks are the machine's; whoever lacks them is told what was not tried.
TEST(TextTest, no_test_is_skipped_but_for_want_of_rights_or_of_a_file_system) {
  ExpectAbsent(Files({"tests"}, {".cpp", ".h"}),
               {"GTEST_SK"
                "IP",
                "QSK"
                "IP",
                "DISAB"
                "LED_"},
               "GTEST_SK"
               "IP(?!\\(\\) << \"(only an administrator|this file system|this process) )|QSK"
               "IP|DISAB"
               "LED_");
}

// The toolkit remembers what it is told of a type, also when the library that told it has gone.
TEST(TextTest, a_component_tells_the_toolkit_of_no_type_of_its_own) {
  ExpectAbsent(Files({"src/controls", "src/trend"}), {"fromValue", "METATYPE", "MetaType"},
               "QVariant::fromValue|Q_DECLARE_METATYPE|qRegisterMetaType");
}

TEST(TextTest, a_test_is_named_by_a_sentence_of_behaviour) {
  ExpectAbsent(Files({"tests"}, {".cpp"}), {"TEST"},
               "^TEST(_F|_P)?\\([A-Za-z0-9_]+, ([^a-z0-9]|[A-Za-z0-9]+[A-Z])");
}

TEST(TextTest, a_silenced_lint_names_its_check_and_its_reason) {
  // Without brackets, or with nothing behind them.
  const std::string sMark =
      "NO"
      "LINT";
  ExpectAbsent(Files(kCodeFolders), {sMark}, sMark + "(NEXTLINE|BEGIN)?([^A-Z(]|$)");
  ExpectAbsent(Files(kCodeFolders), {sMark}, sMark + "(NEXTLINE|BEGIN)?\\([^)]*\\)\\W*$");
}

TEST(TextTest, no_file_of_code_holds_more_than_one_thought) {
  constexpr std::size_t kMostLines = 400;
  for (const auto& file : Files(kCodeFolders, {".h", ".cpp"})) {
    EXPECT_LE(Lines(file).size(), kMostLines) << Said(file) << " becomes several files";
  }
}

TEST(TextTest, lines_end_without_blanks_and_without_carriage_returns) {
  for (const auto& file : Files(kCodeFolders, {".h", ".cpp", ".cmake", ".txt"})) {
    const std::string sContent = Content(file);
    for (const char* const sEnd : {" \n", "\t\n", "\r"}) {
      EXPECT_EQ(sContent.find(sEnd), std::string::npos) << Said(file);
    }
  }
}

}  // namespace
}  // namespace orvane::project
