// What must be there: the top folder's papers, each source in a build file, each header opened by
// a comment, each failure in the documents.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

#include "tests/project/tree.h"

namespace orvane::project {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const std::vector<std::string> kCode = {"src", "tests", "bench", "fuzz"};

// Every source that a build file names, as a path.
std::set<fs::path> ListedSources() {
  static const std::regex kSource(R"re([^\s()"']+\.cpp\b)re");
  std::vector<fs::path> files =
      Files({"src", "tests", "bench", "fuzz", "cmake"}, {"CMakeLists.txt", ".cmake"});
  std::set<fs::path> listed;
  for (const auto& file : files) {
    const std::string sText = Content(file);
    for (std::sregex_iterator it(sText.begin(), sText.end(), kSource), end; it != end; ++it) {
      std::string sSource = it->str();
      for (const char* const sHere :
           {"${CMAKE_CURRENT_SOURCE_DIR}/", "${CMAKE_CURRENT_LIST_DIR}/"}) {
        if (sSource.starts_with(sHere)) sSource.erase(0, std::string_view(sHere).size());
      }
      const std::string sTop = "${CMAKE_SOURCE_DIR}/";
      const fs::path path = sSource.starts_with(sTop) ? Root() / sSource.substr(sTop.size())
                                                      : file.parent_path() / sSource;
      listed.insert(path.lexically_normal());
    }
  }
  return listed;
}

TEST(FilesTest, the_top_folder_has_its_papers) {
  for (const char* const sName : {"README.md", "CHANGELOG.md", "LICENSE", "run", "test"}) {
    EXPECT_GT(Content(Root() / sName).size(), 100U) << sName;
  }
  EXPECT_THAT(Content(Root() / "LICENSE"), HasSubstr("GNU GENERAL PUBLIC LICENSE"));
  EXPECT_THAT(Content(Root() / "LICENSE"), HasSubstr("Version 3, 29 June 2007"));
  EXPECT_THAT(Content(Root() / "README.md"), HasSubstr("./run"));
  EXPECT_THAT(Content(Root() / "README.md"), HasSubstr("./test"));
}

TEST(FilesTest, every_source_is_listed_in_a_build_file) {
  const auto listed = ListedSources();
  for (const auto& file : Files(kCode, {".cpp"})) {
    EXPECT_TRUE(listed.count(file.lexically_normal())) << Said(file) << " is built by nobody";
  }
}

TEST(FilesTest, a_build_file_names_what_it_contains) {
  for (const auto& file :
       Files({"src", "tests", "bench", "fuzz", "cmake"}, {"CMakeLists.txt", ".cmake"})) {
    for (const char* const sGuess : {"GLOB", "if(EXISTS", "if(NOT EXISTS", "if(TARGET"}) {
      EXPECT_EQ(Content(file).find(sGuess), std::string::npos) << Said(file) << ": " << sGuess;
    }
  }
}

TEST(FilesTest, every_header_opens_with_a_short_comment_and_guards_itself) {
  for (const auto& file : Files(kCode, {".h"})) {
    const auto sLines = Lines(file);
    const auto nComment = std::find_if(sLines.begin(), sLines.end(),
                                       [](const auto& sLine) { return !sLine.starts_with("//"); }) -
                          sLines.begin();
    // What is for the tests alone may be told in one line.
    const int nLeast = Said(file).starts_with("src/") ? 2 : 1;
    EXPECT_GE(nComment, nLeast) << Said(file) << " does not say what it is for";
    EXPECT_LE(nComment, 10) << Said(file) << " opens with a long story";
    EXPECT_TRUE(std::find(sLines.begin(), sLines.end(), "#pragma once") != sLines.end())
        << Said(file);
  }
}

TEST(FilesTest, a_room_is_a_namespace) {
  for (const auto& file : Files({"src"}, {".h"})) {
    const std::string sRoom = fs::relative(file, Root() / "src").begin()->string();
    EXPECT_THAT(Content(file), HasSubstr("namespace orvane::" + sRoom)) << Said(file);
  }
}

TEST(FilesTest, every_failure_has_a_heading_in_the_documents) {
  static const std::regex kNumber(R"re(^constexpr Long (k\w+) = (\d+);.*)re");
  static const std::regex kHeading(R"re(^## (\d+): .+)re");
  std::map<std::string, std::string> failures;
  for (const char* const sFile : {"src/platform/failure.h", "src/platform/ado/logon_failures.h"}) {
    for (const auto& sLine : Lines(Root() / sFile)) {
      std::smatch match;
      if (std::regex_match(sLine, match, kNumber)) failures[match[2]] = match[1];
    }
  }
  ASSERT_GE(failures.size(), 20U);
  std::set<std::string> headings;
  for (const auto& sLine : Lines(Root() / "docs/errors.md")) {
    std::smatch match;
    if (std::regex_match(sLine, match, kHeading)) headings.insert(match[1]);
  }
  for (const auto& [sNumber, sName] : failures) {
    EXPECT_TRUE(headings.count(sNumber)) << sName << " (" << sNumber << ")";
  }
  for (const auto& sNumber : headings) {
    EXPECT_TRUE(failures.count(sNumber)) << sNumber << " is no failure of the program";
  }
}

TEST(FilesTest, every_document_is_reached_from_the_readme) {
  const std::string sReadme = Content(Root() / "README.md");
  for (const auto& file : Files({"docs"}, {".md"})) {
    EXPECT_THAT(sReadme, HasSubstr("docs/" + file.filename().string()));
  }
}

TEST(FilesTest, the_architecture_names_what_is_there) {
  std::string sTree;
  for (const auto& file : Files({"src", "tests", "fuzz", "bench", "cmake", "scripts"})) {
    sTree += Said(file) + '\n' + Content(file);
  }
  for (const auto& file : TopFiles()) sTree += Said(file) + '\n' + Content(file);
  static const std::regex kName("`([^`\n]+)`");
  const std::string sText = Content(Root() / "docs/architecture.md");
  int nNames = 0;
  for (std::sregex_iterator it(sText.begin(), sText.end(), kName), end; it != end; ++it, ++nNames) {
    std::string sName = (*it)[1];
    if (const auto nScope = sName.rfind("::"); nScope != std::string::npos)
      sName.erase(0, nScope + 2);
    sName.erase(std::min(sName.find('('), sName.size()));
    if (sName.ends_with('*')) sName.pop_back();
    EXPECT_NE(sTree.find(sName), std::string::npos) << it->str() << " is not in the tree";
  }
  EXPECT_GT(nNames, 100);
}

}  // namespace
}  // namespace orvane::project
