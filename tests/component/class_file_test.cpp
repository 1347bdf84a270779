#include "component/class_file.h"

#include <gmock/gmock.h>

#include <set>

#include "platform/failure.h"

namespace orvane::component {
namespace {

using platform::Failure;
using platform::Text;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kFile = "/registry/a.b.json";

RegisteredClass Whole() {
  RegisteredClass registered;
  registered.description = {"A.B", "{1}", "Control", "A \"grid\"", "two\nlines ä", "1.0", "Makers"};
  registered.library = "/lib/with blank/libA.so";
  return registered;
}

Text FailureOf(const Text& sContent) {
  try {
    ReadClassFile(sContent, kFile);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kComponent);
    return failure.Description();
  }
  ADD_FAILURE() << "nothing failed for " << sContent;
  return {};
}

TEST(ClassFileTest, what_is_written_is_read_again) {
  const auto written = Whole();
  const auto read = ReadClassFile(WriteClassFile(written), kFile);
  EXPECT_EQ(read.description.sProgId, written.description.sProgId);
  EXPECT_EQ(read.description.sGuid, written.description.sGuid);
  EXPECT_EQ(read.description.sKind, written.description.sKind);
  EXPECT_EQ(read.description.sDisplayName, written.description.sDisplayName);
  EXPECT_EQ(read.description.sDescription, written.description.sDescription);
  EXPECT_EQ(read.description.sVersion, written.description.sVersion);
  EXPECT_EQ(read.description.sProvider, written.description.sProvider);
  EXPECT_EQ(read.library, written.library);
}

TEST(ClassFileTest, a_relative_library_starts_at_the_folder_of_the_file) {
  const auto read =
      ReadClassFile(R"({"format": 1, "progid": "A.B", "library": "../lib/libA.so"})", kFile);
  EXPECT_EQ(read.library, "/lib/libA.so");
}

TEST(ClassFileTest, only_progid_and_library_are_needed) {
  const auto read = ReadClassFile(R"({"format": 1, "progid": "a.b", "library": "/a"})", kFile);
  EXPECT_EQ(read.description.sProgId, "a.b");
  EXPECT_EQ(read.description.sKind, "");
}

TEST(ClassFileTest, a_damaged_file_is_named_in_a_sentence) {
  const Text sDamaged =
      "The registration file \"/registry/a.b.json\" is damaged; register its component again with "
      "orvane-regsvr.";
  for (const Text& sContent :
       {Text(), Text("{"), Text("[]"), Text("null"), Text("\xFF\xFE"), Text("{}"),
        Text(R"({"format": "1", "progid": "A.B", "library": "/a"})"),
        Text(R"({"format": 1, "library": "/a"})"), Text(R"({"format": 1, "progid": "A.B"})"),
        Text(R"({"format": 1, "progid": "A.B", "library": ""})"),
        Text(R"({"format": 1, "progid": "A.B", "library": "/a\u0000b"})")}) {
    EXPECT_EQ(FailureOf(sContent), sDamaged) << sContent;
  }
  EXPECT_THAT(FailureOf(R"({"format": 1, "progid": 7, "library": "/a"})"),
              HasSubstr("is damaged at \"progid\""));
}

TEST(ClassFileTest, every_cut_of_a_file_is_a_sentence) {
  const Text sWhole = WriteClassFile(Whole());
  // The last byte is the line's end, without which nothing is missing.
  for (std::size_t n = 0; n + 2 <= sWhole.size(); ++n) {
    EXPECT_THAT(FailureOf(sWhole.substr(0, n)), HasSubstr("is damaged")) << n;
  }
}

TEST(ClassFileTest, every_flipped_byte_is_a_class_or_a_sentence) {
  const Text sWhole = WriteClassFile(Whole());
  for (std::size_t n = 0; n < sWhole.size(); ++n) {
    for (const int nFlip : {0x01, 0x80, 0xFF}) {
      Text sFlipped = sWhole;
      sFlipped[n] = static_cast<char>(sFlipped[n] ^ nFlip);
      try {
        const auto read = ReadClassFile(sFlipped, kFile);
        EXPECT_EQ(ClassFileName(read.description.sProgId), "a.b.json");
      } catch (const Failure& failure) {
        EXPECT_THAT(failure.Description(), StartsWith("The registration file"));
      }
    }
  }
}

TEST(ClassFileTest, a_file_of_a_newer_program_is_refused) {
  EXPECT_THAT(FailureOf(R"({"format": 2, "progid": "A.B", "library": "/a"})"),
              HasSubstr("was written by another version of the program"));
}

TEST(ClassFileTest, a_file_under_the_name_of_another_class_is_refused) {
  EXPECT_THAT(FailureOf(R"({"format": 1, "progid": "A.C", "library": "/a"})"),
              HasSubstr("does not belong to the class \"A.C\" that it names"));
}

TEST(ClassFileTest, a_class_without_a_name_is_not_written) {
  RegisteredClass registered = Whole();
  registered.description.sProgId.clear();
  EXPECT_THROW(WriteClassFile(registered), Failure);
}

TEST(ClassFileTest, a_text_that_is_not_utf8_is_not_written) {
  RegisteredClass registered = Whole();
  registered.description.sDescription = "caf\xE9";
  EXPECT_THROW(WriteClassFile(registered), Failure);
}

TEST(ClassFileTest, a_plain_progid_is_its_own_file_name) {
  EXPECT_EQ(ClassFileName("ORVOLEDBCtls.TableEditor"), "orvoledbctls.tableeditor.json");
  EXPECT_EQ(ClassFileName("a-b_9"), "a-b_9.json");
}

TEST(ClassFileTest, a_file_name_is_safe_for_any_progid) {
  EXPECT_EQ(ClassFileName("../../etc/passwd"), "%2E.%2F..%2Fetc%2Fpasswd.json");
  EXPECT_EQ(ClassFileName("."), "%2E.json");
  EXPECT_EQ(ClassFileName("a b%\n"), "a%20b%25%0A.json");
  EXPECT_EQ(ClassFileName(Text("a\0b", 3)), "a%00b.json");
  EXPECT_EQ(ClassFileName(""), ".json");
}

TEST(ClassFileTest, names_that_differ_in_case_only_are_one_file) {
  EXPECT_EQ(ClassFileName("Größe"), ClassFileName("GRÖSSE"));
  EXPECT_NE(ClassFileName("Größe"), ClassFileName("Grosse"));
}

TEST(ClassFileTest, a_long_progid_has_a_short_file_name_of_its_own) {
  const Text sLong(5000, 'x');
  std::set<Text> sNames;
  for (const char c : {'a', 'b', 'c'}) {
    const Text sName = ClassFileName(sLong + c);
    EXPECT_LT(sName.size(), 240U);
    EXPECT_THAT(sName, EndsWith(".json"));
    EXPECT_THAT(sName, Not(HasSubstr("/")));
    sNames.insert(sName);
  }
  EXPECT_EQ(sNames.size(), 3U);
}

}  // namespace
}  // namespace orvane::component
