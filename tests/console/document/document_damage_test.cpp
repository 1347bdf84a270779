// What is no document, or a damaged one, and the sentences that say so.
#include "tests/console/document/document_format_fixture.h"

namespace orvane::console {
namespace {

TEST(document_damage, names_the_line_that_is_cut_off) {
  EXPECT_EQ(SentenceFor(Text(kHeader) + kSnapIn),
            "The document plant.orvc is damaged: line 3 is cut off; restore it from a copy.");
}

TEST(document_damage, refuses_bytes_behind_the_end) {
  for (const Text& sWhole : {kHeader + EndOf(kHeader), SealedOnce(kOldHeader) + "\n"}) {
    EXPECT_EQ(SealRead(sWhole), DocumentSeal::Whole);
    EXPECT_EQ(
        SentenceFor(sWhole + "x"),
        "The document plant.orvc is damaged: line 4 follows the end; restore it from a copy.");
  }
  EXPECT_EQ(SentenceFor(Text(kHeader) + kEnd + kSnapIn),
            "The document plant.orvc is damaged: line 3 follows the end; restore it from a copy.");
}

TEST(document_damage, says_that_a_merge_was_not_settled) {
  for (const char* const sMark :
       {"<<<<<<< ours", "=======", ">>>>>>> theirs", "||||||| base", "<<<<<<< ours\r"}) {
    EXPECT_EQ(SentenceForLine(sMark),
              "The document plant.orvc holds a merge that was not settled, at line 3; settle it in "
              "an editor, or restore it from a copy.");
  }
}

TEST(document_damage, refuses_what_is_no_document_at_all) {
  for (const Text& sBytes : {Text(), Text("\n"), Text("hello\n"), Text("{}\n"),
                             Text("{\"format\":\"other\",\"version\":1}\n"), Text(100, '\0')}) {
    EXPECT_EQ(SentenceFor(sBytes),
              "The file plant.orvc is no document of ORVANE Console; open another one.");
  }
}

TEST(document_damage, refuses_a_newer_version_with_a_sentence_of_its_own) {
  EXPECT_EQ(SentenceFor("{\"format\":\"orvane-console\",\"version\":4}\nwhatever follows"),
            "The document plant.orvc was written by a newer version of ORVANE Console (format 4, "
            "this one reads 3); open it with that version.");
  EXPECT_NE(SentenceFor("{\"format\":\"orvane-console\",\"version\":5,\"more\":[1]}\n")
                .find("newer version"),
            Text::npos);
}

TEST(document_damage, refuses_a_version_that_never_was) {
  for (const char* sVersion : {"0", "-1", "\"1\"", "1.0", "true"}) {
    EXPECT_NE(SentenceFor(Text("{\"format\":\"orvane-console\",\"version\":") + sVersion + "}\n")
                  .find("line 1"),
              Text::npos)
        << sVersion;
  }
}

struct BadLine {
  const char* sLine;
  const char* sProblem;
};

class BadLines : public testing::TestWithParam<BadLine> {};

TEST_P(BadLines, are_refused_by_number_and_reason) {
  EXPECT_EQ(SentenceForLine(GetParam().sLine), Text("The document plant.orvc is damaged: line 3 ") +
                                                   GetParam().sProblem +
                                                   "; restore it from a copy.");
}

INSTANTIATE_TEST_SUITE_P(
    document_damage, BadLines,
    testing::Values(
        BadLine{"{", "is no JSON object in UTF-8"}, BadLine{"1", "is no JSON object in UTF-8"},
        BadLine{"{\"name\":\"a\",\"integer\":1} x", "is no JSON object in UTF-8"},
        BadLine{"{\"name\":\"\xC3\x28\",\"integer\":1}", "is no JSON object in UTF-8"},
        BadLine{"{\"name\":\"\\ud800\",\"integer\":1}", "is no JSON object in UTF-8"},
        BadLine{"[1]", "holds a list"}, BadLine{"null", "holds a null"},
        BadLine{"{\"name\":\"a\",\"text\":null}", "holds a null"},
        BadLine{"{\"name\":\"a\",\"text\":{}}", "holds an object inside its object"},
        BadLine{"{\"name\":\"a\",\"name\":\"b\"}", "names a member twice"},
        BadLine{"{\"a\":1,\"b\":1,\"c\":1,\"d\":1,\"e\":1}", "has too many members"},
        BadLine{"{\"name\":\"a\",\"integer\":1.5}", "holds a number that is no integer"},
        BadLine{"{\"name\":\"a\",\"integer\":1e3}", "holds a number that is no integer"},
        BadLine{"{\"name\":\"a\",\"integer\":2147483648}",
                "holds for a an integer that is out of range"},
        BadLine{"{\"name\":\"a\",\"integer\":-2147483649}",
                "holds for a an integer that is out of range"},
        BadLine{"{\"name\":\"a\",\"integer\":18446744073709551615}",
                "holds an integer that is out of range"},
        BadLine{"{\"name\":\"a\"}", "holds for a no value of a known type"},
        BadLine{"{\"name\":\"a\",\"double\":1}", "holds for a no value of a known type"},
        BadLine{"{\"name\":\"a\",\"boolean\":1}", "holds for a no value of a known type"},
        BadLine{"{\"name\":\"a\",\"text\":true}", "holds for a no value of a known type"},
        BadLine{"{\"name\":\"a\",\"text\":\"x\",\"bytes\":\"\"}",
                "holds for a no value of a known type"},
        BadLine{"{\"name\":\"a\",\"object\":\"b\"}", "holds for a no value of a known type"},
        BadLine{"{\"name\":\"a\",\"bytes\":\"!!\"}", "holds bytes that are not in base64"},
        BadLine{"{\"integer\":1}", "is no property, section, part or seal"},
        BadLine{"{\"name\":1,\"integer\":1}", "is no property, section, part or seal"},
        BadLine{"{\"section\":\"other\"}", "begins an unknown section"},
        BadLine{"{\"section\":\"snap-in\"}", "begins an unknown section"},
        BadLine{"{\"class\":\"SnapIn\",\"section\":\"snap-in\"}",
                "begins the snap-in SnapIn again"},
        BadLine{"{\"seal\":1}", "is no property, section, part or seal"},
        BadLine{"{\"seal\":\"\",\"part\":\"\"}", "is no property, section, part or seal"},
        BadLine{"{\"part\":true}", "is no property, section, part or seal"},
        BadLine{"{\"blake2b\":\"\"}", "is no property, section, part or seal"}));

TEST(document_damage, refuses_a_property_that_is_there_twice) {
  EXPECT_EQ(SentenceForLine("{\"name\":\"a\",\"integer\":1}\n{\"name\":\"a\",\"integer\":1}"),
            "The document plant.orvc holds the property a twice, the second time at line 4; "
            "remove one of the two in an editor, or restore the document from a copy.");
}

TEST(document_damage, refuses_a_second_view) {
  EXPECT_NE(SentenceForLine("{\"section\":\"view\"}\n{\"section\":\"view\"}")
                .find("line 4 begins a second view"),
            Text::npos);
}

TEST(document_damage, refuses_a_property_outside_of_a_section) {
  EXPECT_NE(SentenceFor(Text(kHeader) + "{\"name\":\"a\",\"integer\":1}\n")
                .find("line 2 holds a property outside of a section"),
            Text::npos);
  EXPECT_NE(SentenceFor(Text(kHeader) + "{\"part\":\"a1_\"}\n")
                .find("line 2 holds a part outside of a section"),
            Text::npos);
}

// Each property has the name of its part in its own: a short file would be a lot of memory.
TEST(document_damage, refuses_properties_of_a_part_of_too_long_a_name) {
  const Text sProperty = "{\"name\":\"a\",\"integer\":1}";
  EXPECT_EQ(SentenceForLine("{\"part\":\"" + Text(256, 'x') + "_\"}\n" + sProperty),
            "The document plant.orvc is damaged: line 4 holds a property of a part of too long a "
            "name; restore it from a copy.");
  DocumentContent content;
  const Text sName = Text(255, 'x') + "_";
  ReadDocument(kHeader + (kSnapIn + ("{\"part\":\"" + sName + "\"}\n")) + sProperty + "\n" + kEnd,
               "plant.orvc", content);
  EXPECT_EQ(content.SnapIn("SnapIn").ReadProperty(sName + "a", {}), Value(Long{1}));
}

TEST(document_damage, repeats_names_from_a_hostile_file_on_one_line_and_cut_off) {
  const Text sLine = "{\"name\":\"a\\nb\\u001b" + Text(1000, 'x') + "\",\"integer\":1}";
  EXPECT_EQ(SentenceForLine(sLine + "\n" + sLine),
            "The document plant.orvc holds the property a\\nb\\x1B" + Text(96, 'x') +
                "... twice, the second time at line 4; remove one of the two in an editor, or "
                "restore the document from a copy.");
}

TEST(document_damage, refuses_snap_ins_without_end) {
  Text sBytes = kHeader;
  for (int i = 0; i <= 1000; ++i) {
    sBytes += "{\"class\":\"S" + std::to_string(i) + "\",\"section\":\"snap-in\"}\n";
  }
  EXPECT_NE(SentenceFor(sBytes).find("line 1002 begins one snap-in too many"), Text::npos);
}

TEST(document_damage, refuses_deep_nesting_at_once) {
  EXPECT_NE(SentenceForLine(Text(1000000, '[')).find("holds a list"), Text::npos);
  Text sNested;
  for (int i = 0; i < 100000; ++i) sNested += "{\"a\":";
  EXPECT_NE(SentenceForLine(sNested).find("holds an object inside its object"), Text::npos);
}

}  // namespace
}  // namespace orvane::console
