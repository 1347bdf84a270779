#include "console/document/document_format.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QCryptographicHash>

#include "tests/console/fake_objects.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

constexpr const char* kHeader = "{\"format\":\"orvane-console\",\"version\":1}\n";
constexpr const char* kSnapIn = "{\"class\":\"SnapIn\",\"section\":\"snap-in\"}\n";

/// The lines with the digest that fits them.
Text Sealed(const Text& sLines) {
  const QByteArray digest =
      QCryptographicHash::hash(QByteArray::fromStdString(sLines), QCryptographicHash::Blake2b_256);
  return sLines + "{\"blake2b\":\"" + digest.toHex().toStdString() + "\"}\n";
}

Text SentenceFor(const Text& sBytes) {
  DocumentContent content;
  return SentenceOf([&] { ReadDocument(sBytes, "plant.orvc", content); });
}

/// The sentence for a well-sealed document with that line in a snap-in's section.
Text SentenceForLine(const Text& sLine) {
  return SentenceFor(Sealed(Text(kHeader) + kSnapIn + sLine + "\n"));
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

TEST(document_format, is_text_of_one_json_object_a_line) {
  DocumentContent content;
  content.SnapIn("SnapIn").WriteProperty("a", "x\ny");
  content.SnapIn("SnapIn").WriteProperty("b", false);
  content.View().WriteProperty("c", Long{-1});
  EXPECT_EQ(WriteDocument(content), Sealed(Text(kHeader) + kSnapIn +
                                           "{\"name\":\"a\",\"text\":\"x\\ny\"}\n"
                                           "{\"name\":\"b\",\"boolean\":false}\n"
                                           "{\"section\":\"view\"}\n"
                                           "{\"name\":\"c\",\"integer\":-1}\n"));
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

TEST(document_format, every_flipped_bit_gives_a_sentence) {
  const Text sWhole = RealisticBytes();
  for (std::size_t n = 0; n < sWhole.size(); ++n) {
    for (int iBit = 0; iBit < 8; ++iBit) {
      Text sBytes = sWhole;
      sBytes[n] = static_cast<char>(sBytes[n] ^ (1 << iBit));
      EXPECT_NE(SentenceFor(sBytes), "") << "byte " << n << " bit " << iBit;
    }
  }
}

TEST(document_format, every_byte_cut_out_gives_a_sentence) {
  const Text sWhole = RealisticBytes();
  for (std::size_t n = 0; n < sWhole.size(); ++n) {
    EXPECT_NE(SentenceFor(Text(sWhole).erase(n, 1)), "") << "byte " << n;
  }
}

TEST(document_format, a_document_cut_off_anywhere_gives_a_sentence) {
  const Text sWhole = RealisticBytes();
  for (std::size_t n = 0; n < sWhole.size(); ++n) {
    EXPECT_NE(SentenceFor(sWhole.substr(0, n)), "") << "after byte " << n;
  }
}

TEST(document_format, a_line_taken_out_or_doubled_gives_a_sentence) {
  const Text sWhole = RealisticBytes();
  for (std::size_t nStart = 0; nStart < sWhole.size();) {
    const std::size_t nLength = sWhole.find('\n', nStart) + 1 - nStart;
    EXPECT_NE(SentenceFor(Text(sWhole).erase(nStart, nLength)), "");
    EXPECT_NE(SentenceFor(Text(sWhole).insert(nStart, sWhole.substr(nStart, nLength))), "");
    nStart += nLength;
  }
}

TEST(document_format, names_the_line_that_is_cut_off) {
  EXPECT_EQ(SentenceFor(Text(kHeader) + kSnapIn),
            "The document plant.orvc is damaged: line 3 is cut off; restore it from a copy.");
}

TEST(document_format, refuses_bytes_behind_the_end) {
  EXPECT_EQ(SentenceFor(Sealed(kHeader) + "x"),
            "The document plant.orvc is damaged: line 3 follows the end; restore it from a copy.");
}

TEST(document_format, refuses_a_changed_line_by_its_digest) {
  Text sBytes = Sealed(Text(kHeader) + kSnapIn + "{\"name\":\"a\",\"integer\":1}\n");
  sBytes[sBytes.find(":1}\n{\"blake") + 1] = '2';
  EXPECT_EQ(SentenceFor(sBytes),
            "The document plant.orvc is damaged: line 4 holds a digest that does not fit the lines "
            "before it; restore it from a copy.");
}

TEST(document_format, refuses_what_is_no_document_at_all) {
  for (const Text& sBytes : {Text(), Text("\n"), Text("hello\n"), Text("{}\n"),
                             Text("{\"format\":\"other\",\"version\":1}\n"), Text(100, '\0')}) {
    EXPECT_EQ(SentenceFor(sBytes),
              "The file plant.orvc is no document of ORVANE Console; open another one.");
  }
}

TEST(document_format, refuses_a_byte_order_mark_before_the_document) {
  EXPECT_NE(SentenceFor("\xEF\xBB\xBF" + RealisticBytes()), "");
}

TEST(document_format, refuses_a_newer_version_with_a_sentence_of_its_own) {
  EXPECT_EQ(SentenceFor("{\"format\":\"orvane-console\",\"version\":2}\nwhatever follows"),
            "The document plant.orvc was written by a newer version of ORVANE Console (format 2, "
            "this one reads 1); open it with that version.");
  EXPECT_NE(SentenceFor("{\"format\":\"orvane-console\",\"version\":3,\"more\":[1]}\n")
                .find("newer version"),
            Text::npos);
}

TEST(document_format, refuses_a_version_that_never_was) {
  for (const char* sVersion : {"0", "-1", "\"1\"", "1.0", "true"}) {
    EXPECT_NE(
        SentenceFor(Sealed(Text("{\"format\":\"orvane-console\",\"version\":") + sVersion + "}\n"))
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
        BadLine{"", "is no JSON object in UTF-8"}, BadLine{"{", "is no JSON object in UTF-8"},
        BadLine{"1", "is no JSON object in UTF-8"},
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
        BadLine{"{\"integer\":1}", "is no property, section or digest"},
        BadLine{"{\"name\":1,\"integer\":1}", "is no property, section or digest"},
        BadLine{"{\"section\":\"other\"}", "begins an unknown section"},
        BadLine{"{\"section\":\"snap-in\"}", "begins an unknown section"},
        BadLine{"{\"class\":\"SnapIn\",\"section\":\"snap-in\"}",
                "begins the snap-in SnapIn again"}));

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
  EXPECT_NE(SentenceFor(Sealed(Text(kHeader) + "{\"name\":\"a\",\"integer\":1}\n"))
                .find("line 2 holds a property outside of a section"),
            Text::npos);
}

}  // namespace
}  // namespace orvane::console
