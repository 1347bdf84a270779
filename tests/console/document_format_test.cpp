#include "console/document/document_format.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/console/fake_objects.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

constexpr const char* kOldHeader = "{\"format\":\"orvane-console\",\"version\":1}\n";
constexpr const char* kHeader = "{\"format\":\"orvane-console\",\"version\":2}\n";
constexpr const char* kSnapIn = "{\"class\":\"SnapIn\",\"section\":\"snap-in\"}\n";

/// The lines with the one seal that fits them, as the first version of the format has it.
Text SealedOnce(const Text& sLines) {
  return sLines + "{\"blake2b\":\"" + SealOf(sLines) + "\"}\n";
}

/// The part with the seal that fits it and its end.
Text Sealed(const Text& sPart, const Text& sName) {
  return sPart + "{\"seal\":\"" + SealOf(sPart) + "\"}\n{\"end\":\"" + sName + "\"}\n";
}

constexpr const char* kEnd = "{\"section\":\"end\"}\n";

/// The end of a document whose parts begin with these lines.
Text EndOf(const Text& sBegins) {
  return kEnd + ("{\"seal\":\"" + SealOf(sBegins + kEnd) + "\"}\n");
}

Text SentenceFor(const Text& sBytes) {
  DocumentContent content;
  return SentenceOf([&] { ReadDocument(sBytes, "plant.orvc", content); });
}

/// The sentence for a document with that line in a snap-in's section.
Text SentenceForLine(const Text& sLine) {
  return SentenceFor(Text(kHeader) + kSnapIn + sLine + "\n" + kEnd);
}

DocumentSeal SealRead(const Text& sBytes) {
  DocumentContent content;
  return ReadDocument(sBytes, "plant.orvc", content);
}

/// True when a change did not pass unseen.
bool IsNoticed(const Text& sBytes) {
  try {
    return SealRead(sBytes) == DocumentSeal::Broken;
  } catch (const platform::Failure&) {
    return true;
  }
}

void FillRealistically(DocumentContent& content) {
  DocumentBag& bag = content.SnapIn("ORVOLEDBSnapIn");
  bag.WriteProperty("ServersNode", true);
  bag.WriteProperty("ServersNode_MaxRows", Long{100});
  bag.WriteProperty("ServersNode_DefaultStartTime", "*-1h");
  bag.WriteProperty("ServersNode_ServerNodes_ServerNodeCount", Long{1});
  bag.WriteProperty("ServersNode_ServerNodes_ServerNode1_Server", "Anlage \"Süd\".2");
  bag.WriteProperty("ServersNode_ServerNodes_ServerNode1_ExtendedOptions",
                    "Log File = ;Log Level = 0;");
  bag.WriteProperty("ServersNode_ServerNodes_ServerNode1_CatalogNodes_CatalogNode1_Catalog",
                    "温度\nдавление");
  bag.WriteProperty("ServersNode_ServerNodes_ServerNode1_CatalogNodes_CatalogNode1_Query",
                    std::make_shared<FakeObject>("{\"table\":\"Data\"}"));
  content.View().WriteProperty("splitter", Long{260});
}

Text RealisticBytes() {
  DocumentContent content;
  FillRealistically(content);
  return WriteDocument(content);
}

TEST(document_format, a_document_reads_back_as_it_was_written) {
  DocumentContent read(CreateFakeObject);
  const Text sBytes = RealisticBytes();
  ReadDocument(sBytes, "plant.orvc", read);
  ASSERT_EQ(read.SnapIns().size(), 1U);
  const DocumentBag& bag = *read.FindSnapIn("ORVOLEDBSnapIn");
  EXPECT_EQ(bag.ReadProperty("ServersNode_MaxRows", {}), Value(Long{100}));
  EXPECT_EQ(StateOf(bag, "ServersNode_ServerNodes_ServerNode1_CatalogNodes_CatalogNode1_Query"),
            "{\"table\":\"Data\"}");
  EXPECT_EQ(read.View().ReadProperty("splitter", {}), Value(Long{260}));
  EXPECT_EQ(WriteDocument(read), sBytes);
}

TEST(document_format, is_text_of_one_json_object_a_line_in_sealed_parts) {
  DocumentContent content;
  DocumentBag& bag = content.SnapIn("SnapIn");
  bag.WriteProperty("a", "x\ny");
  bag.WriteProperty("Item1_b", false);
  bag.WriteProperty("Item2_c", Long{-1});
  bag.WriteProperty("Item1_Sub2_d", true);
  bag.WriteProperty("e", Long{7});
  content.View().WriteProperty("f", "");
  const Text sPart1 = "{\"part\":\"Item1_\"}\n";
  const Text sPart2 = "{\"part\":\"Item2_\"}\n";
  const Text sView = "{\"section\":\"view\"}\n";
  EXPECT_EQ(WriteDocument(content),
            kHeader +
                Sealed(Text(kSnapIn) + "{\"name\":\"a\",\"text\":\"x\\ny\"}\n"
                                       "{\"name\":\"e\",\"integer\":7}\n",
                       "SnapIn") +
                Sealed(sPart1 + "{\"name\":\"Item1_b\",\"boolean\":false}\n"
                                "{\"name\":\"Item1_Sub2_d\",\"boolean\":true}\n",
                       "Item1_") +
                Sealed(sPart2 + "{\"name\":\"Item2_c\",\"integer\":-1}\n", "Item2_") +
                Sealed(sView + "{\"name\":\"f\",\"text\":\"\"}\n", "view") +
                EndOf(Text(kHeader) + kSnapIn + sPart1 + sPart2 + sView));
}

TEST(document_format, a_part_is_what_belongs_to_one_numbered_item) {
  EXPECT_EQ(PartOf("ServersNode_MaxRows"), "");
  EXPECT_EQ(PartOf("ServersNode_ServerNodes_ServerNodeCount"), "");
  EXPECT_EQ(PartOf("ServersNode_ServerNodes_ServerNode12_CatalogNodes_CatalogNode1_Catalog"),
            "ServersNode_ServerNodes_ServerNode12_");
  EXPECT_EQ(PartOf("Item1"), "");
  EXPECT_EQ(PartOf("_a1_"), "_a1_");
  EXPECT_EQ(PartOf(""), "");
}

TEST(document_format, the_first_version_is_still_read) {
  const Text sBytes = SealedOnce(Text(kOldHeader) + kSnapIn +
                                 "{\"name\":\"Item1_a\",\"integer\":1}\n"
                                 "{\"section\":\"view\"}\n");
  DocumentContent read;
  EXPECT_EQ(ReadDocument(sBytes, "plant.orvc", read), DocumentSeal::Whole);
  EXPECT_EQ(read.FindSnapIn("SnapIn")->ReadProperty("Item1_a", {}), Value(Long{1}));
  Text sChanged = sBytes;
  sChanged[sChanged.find(":1}\n{\"section") + 1] = '2';
  EXPECT_EQ(SealRead(sChanged), DocumentSeal::Broken);
  EXPECT_EQ(SentenceFor(sBytes.substr(0, sBytes.find("{\"section\":\"view"))),
            "The document plant.orvc is damaged: line 4 is cut off; restore it from a copy.");
}

TEST(document_format, an_empty_document_reads_back_empty) {
  DocumentContent read;
  ReadDocument(WriteDocument(DocumentContent()), "plant.orvc", read);
  EXPECT_TRUE(read.SnapIns().empty());
  EXPECT_EQ(read.View().Count(), 0U);
}

TEST(document_format, keeps_the_bags_of_several_snap_ins_apart) {
  DocumentContent written;
  written.SnapIn("One").WriteProperty("name", "1");
  written.SnapIn("Two").WriteProperty("name", "2");
  DocumentContent read;
  ReadDocument(WriteDocument(written), "plant.orvc", read);
  EXPECT_EQ(read.FindSnapIn("One")->ReadProperty("name", {}), Value("1"));
  EXPECT_EQ(read.FindSnapIn("Two")->ReadProperty("name", {}), Value("2"));
}

TEST(document_format, names_and_texts_of_any_kind_survive_exactly) {
  const Text texts[] = {"",
                        "quote \" back \\ slash / 'single'",
                        "line\r\nbreak\ttab",
                        Text("nul \0 byte", 10),
                        "a.b.c = d; e",
                        "Größe Ελληνικά Кириллица עברית 日本語 😀",
                        "\xE2\x80\xA8 separators \xE2\x80\xA9 \x7F \xEF\xBB\xBF",
                        "\x01\x02\x1F"};
  DocumentContent written(CreateFakeObject);
  DocumentBag& bag = written.SnapIn("SnapIn");
  int i = 0;
  for (const Text& sText : texts) {
    bag.WriteProperty("name " + sText, sText);
    bag.WriteProperty("object " + std::to_string(i++), std::make_shared<FakeObject>(sText));
  }
  DocumentContent read(CreateFakeObject);
  ReadDocument(WriteDocument(written), "plant.orvc", read);
  i = 0;
  for (const Text& sText : texts) {
    EXPECT_EQ(read.FindSnapIn("SnapIn")->ReadProperty("name " + sText, {}), Value(sText));
    EXPECT_EQ(StateOf(*read.FindSnapIn("SnapIn"), "object " + std::to_string(i++)), sText);
  }
}

TEST(document_format, texts_that_are_not_utf8_survive_exactly) {
  const Text texts[] = {"\xFF\xFE", "\xC3", "\xED\xA0\x80", "\xC0\xAF", "ok \xF4\x90\x80\x80"};
  for (const Text& sText : texts) {
    DocumentContent written(CreateFakeObject);
    written.SnapIn("SnapIn").WriteProperty("text", sText);
    written.SnapIn("SnapIn").WriteProperty("object", std::make_shared<FakeObject>(sText));
    DocumentContent read(CreateFakeObject);
    ReadDocument(WriteDocument(written), "plant.orvc", read);
    EXPECT_EQ(read.FindSnapIn("SnapIn")->ReadProperty("text", {}), Value(sText));
    EXPECT_EQ(StateOf(*read.FindSnapIn("SnapIn"), "object"), sText);
  }
}

TEST(document_format, every_flipped_bit_is_noticed) {
  const Text sWhole = RealisticBytes();
  for (std::size_t n = 0; n < sWhole.size(); ++n) {
    for (int iBit = 0; iBit < 8; ++iBit) {
      Text sBytes = sWhole;
      sBytes[n] = static_cast<char>(sBytes[n] ^ (1 << iBit));
      EXPECT_TRUE(IsNoticed(sBytes)) << "byte " << n << " bit " << iBit;
    }
  }
}

TEST(document_format, every_byte_cut_out_is_noticed) {
  const Text sWhole = RealisticBytes();
  for (std::size_t n = 0; n + 1 < sWhole.size(); ++n) {
    EXPECT_TRUE(IsNoticed(Text(sWhole).erase(n, 1))) << "byte " << n;
  }
}

TEST(document_format, a_document_cut_off_anywhere_is_damaged) {
  const Text sWhole = RealisticBytes();
  for (std::size_t n = 0; n < sWhole.find(kEnd) + std::strlen(kEnd) - 2; ++n) {
    EXPECT_NE(SentenceFor(sWhole.substr(0, n)), "") << "after byte " << n;
  }
}

TEST(document_format, one_cut_off_within_its_last_seal_is_noticed) {
  const Text sWhole = RealisticBytes();
  for (std::size_t n = sWhole.find(kEnd); n + 1 < sWhole.size(); ++n) {
    EXPECT_TRUE(IsNoticed(sWhole.substr(0, n))) << "after byte " << n;
  }
}

TEST(document_format, a_line_taken_out_or_doubled_is_noticed) {
  const Text sWhole = RealisticBytes();
  for (std::size_t nStart = 0; nStart < sWhole.size();) {
    const std::size_t nLength = sWhole.find('\n', nStart) + 1 - nStart;
    EXPECT_TRUE(IsNoticed(Text(sWhole).erase(nStart, nLength))) << nStart;
    EXPECT_TRUE(IsNoticed(Text(sWhole).insert(nStart, sWhole.substr(nStart, nLength)))) << nStart;
    nStart += nLength;
  }
}

TEST(document_format, names_the_line_that_is_cut_off) {
  EXPECT_EQ(SentenceFor(Text(kHeader) + kSnapIn),
            "The document plant.orvc is damaged: line 3 is cut off; restore it from a copy.");
}

TEST(document_format, refuses_bytes_behind_the_end) {
  for (const Text& sWhole : {kHeader + EndOf(kHeader), SealedOnce(kOldHeader) + "\n"}) {
    EXPECT_EQ(SealRead(sWhole), DocumentSeal::Whole);
    EXPECT_EQ(
        SentenceFor(sWhole + "x"),
        "The document plant.orvc is damaged: line 4 follows the end; restore it from a copy.");
  }
  EXPECT_EQ(SentenceFor(Text(kHeader) + kEnd + kSnapIn),
            "The document plant.orvc is damaged: line 3 follows the end; restore it from a copy.");
}

TEST(document_format, tells_a_changed_line_by_its_seal) {
  Text sBytes = RealisticBytes();
  EXPECT_EQ(SealRead(sBytes), DocumentSeal::Whole);
  const auto n = sBytes.find(":100}");
  sBytes[n + 1] = '2';
  DocumentContent content;
  EXPECT_EQ(ReadDocument(sBytes, "plant.orvc", content), DocumentSeal::Broken);
  EXPECT_EQ(content.FindSnapIn("ORVOLEDBSnapIn")->ReadProperty("ServersNode_MaxRows", {}),
            Value(Long{200}));
}

TEST(document_format, tells_a_part_that_is_missing_whole) {
  const Text sBytes = RealisticBytes();
  const auto nBegin = sBytes.find("{\"part\"");
  const auto nEnd = sBytes.find('\n', sBytes.find("{\"end\":\"ServersNode_")) + 1;
  EXPECT_EQ(SealRead(Text(sBytes).erase(nBegin, nEnd - nBegin)), DocumentSeal::Broken);
}

TEST(document_format, reads_lines_without_any_seal) {
  DocumentContent content;
  EXPECT_EQ(ReadDocument(Text(kHeader) + kSnapIn + "{\"name\":\"a\",\"integer\":1}\n" + kEnd,
                         "plant.orvc", content),
            DocumentSeal::Broken);
  EXPECT_EQ(content.FindSnapIn("SnapIn")->ReadProperty("a", {}), Value(Long{1}));
}

Text WithCarriageReturns(const Text& sBytes) {
  Text sResult;
  for (const char c : sBytes) sResult.append(c == '\n' ? "\r\n" : Text(1, c));
  return sResult;
}

TEST(document_format, understands_carriage_returns_and_a_byte_order_mark) {
  const Text sWhole = RealisticBytes();
  const Text sOld = SealedOnce(Text(kOldHeader) + kSnapIn);
  for (const Text& sBytes :
       {WithCarriageReturns(sWhole), "\xEF\xBB\xBF" + sWhole,
        "\xEF\xBB\xBF" + WithCarriageReturns(sWhole), sWhole + "\n\n", sWhole + "\r\n",
        sWhole.substr(0, sWhole.size() - 1), WithCarriageReturns(sOld), "\xEF\xBB\xBF" + sOld}) {
    EXPECT_EQ(SealRead(sBytes), DocumentSeal::Whole);
    CheckDocumentStart(sBytes, "plant.orvc");
  }
  DocumentContent read;
  ReadDocument(WithCarriageReturns(sWhole), "plant.orvc", read);
  EXPECT_EQ(WriteDocument(read), sWhole);
}

TEST(document_format, says_that_a_merge_was_not_settled) {
  for (const char* const sMark :
       {"<<<<<<< ours", "=======", ">>>>>>> theirs", "||||||| base", "<<<<<<< ours\r"}) {
    EXPECT_EQ(SentenceForLine(sMark),
              "The document plant.orvc holds a merge that was not settled, at line 3; settle it in "
              "an editor, or restore it from a copy.");
  }
}

TEST(document_format, refuses_what_is_no_document_at_all) {
  for (const Text& sBytes : {Text(), Text("\n"), Text("hello\n"), Text("{}\n"),
                             Text("{\"format\":\"other\",\"version\":1}\n"), Text(100, '\0')}) {
    EXPECT_EQ(SentenceFor(sBytes),
              "The file plant.orvc is no document of ORVANE Console; open another one.");
  }
}

TEST(document_format, refuses_a_newer_version_with_a_sentence_of_its_own) {
  EXPECT_EQ(SentenceFor("{\"format\":\"orvane-console\",\"version\":3}\nwhatever follows"),
            "The document plant.orvc was written by a newer version of ORVANE Console (format 3, "
            "this one reads 2); open it with that version.");
  EXPECT_NE(SentenceFor("{\"format\":\"orvane-console\",\"version\":4,\"more\":[1]}\n")
                .find("newer version"),
            Text::npos);
}

TEST(document_format, refuses_a_version_that_never_was) {
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
    document_format, BadLines,
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

TEST(document_format, refuses_a_property_that_is_there_twice) {
  EXPECT_EQ(SentenceForLine("{\"name\":\"a\",\"integer\":1}\n{\"name\":\"a\",\"integer\":1}"),
            "The document plant.orvc is damaged: line 4 holds the property a a second time; "
            "restore it from a copy.");
}

TEST(document_format, refuses_a_second_view) {
  EXPECT_NE(SentenceForLine("{\"section\":\"view\"}\n{\"section\":\"view\"}")
                .find("line 4 begins a second view"),
            Text::npos);
}

TEST(document_format, refuses_a_property_outside_of_a_section) {
  EXPECT_NE(SentenceFor(Text(kHeader) + "{\"name\":\"a\",\"integer\":1}\n")
                .find("line 2 holds a property outside of a section"),
            Text::npos);
  EXPECT_NE(SentenceFor(Text(kHeader) + "{\"part\":\"a1_\"}\n")
                .find("line 2 holds a part outside of a section"),
            Text::npos);
}

TEST(document_format, repeats_names_from_a_hostile_file_on_one_line_and_cut_off) {
  const Text sLine = "{\"name\":\"a\\nb\\u001b" + Text(1000, 'x') + "\",\"integer\":1}";
  EXPECT_EQ(SentenceForLine(sLine + "\n" + sLine),
            "The document plant.orvc is damaged: line 4 holds the property a\\nb\\x1B" +
                Text(96, 'x') + "... a second time; restore it from a copy.");
}

TEST(document_format, refuses_snap_ins_without_end) {
  Text sBytes = kHeader;
  for (int i = 0; i <= 1000; ++i) {
    sBytes += "{\"class\":\"S" + std::to_string(i) + "\",\"section\":\"snap-in\"}\n";
  }
  EXPECT_NE(SentenceFor(sBytes).find("line 1002 begins one snap-in too many"), Text::npos);
}

TEST(document_format, refuses_deep_nesting_at_once) {
  EXPECT_NE(SentenceForLine(Text(1000000, '[')).find("holds a list"), Text::npos);
  Text sNested;
  for (int i = 0; i < 100000; ++i) sNested += "{\"a\":";
  EXPECT_NE(SentenceForLine(sNested).find("holds an object inside its object"), Text::npos);
}

}  // namespace
}  // namespace orvane::console
