#include "console/document/document_format.h"

#include <cstring>
#include <random>
#include <sstream>

#include "tests/console/document/document_format_fixture.h"

namespace orvane::console {
namespace {

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

TEST(document_format, whatever_is_done_to_its_lines_it_is_read_or_refused) {
  const Text sWhole = RealisticBytes();
  std::vector<Text> lines;
  std::istringstream all(sWhole);
  for (Text sLine; std::getline(all, sLine);) lines.push_back(sLine + "\n");
  std::mt19937 random(20260229);
  const auto any = [&](std::size_t nCount) {
    return std::uniform_int_distribution<std::size_t>(0, nCount - 1)(random);
  };
  int nRead = 0;
  for (int i = 0; i < 5000; ++i) {
    auto changed = lines;
    for (std::size_t n = 0; n <= any(3); ++n) {
      const auto at = changed.begin() + static_cast<std::ptrdiff_t>(any(changed.size()));
      switch (any(4)) {
        case 0:
          changed.erase(at);
          break;
        case 1:
          changed.insert(at, lines[any(lines.size())]);
          break;
        case 2:
          std::swap(*at, changed[any(changed.size())]);
          break;
        default:
          (*at)[any(at->size())] = static_cast<char>(any(256));
      }
    }
    Text sChanged;
    for (const Text& sLine : changed) sChanged += sLine;
    DocumentContent content;
    try {
      const auto seal = ReadDocument(sChanged, "plant.orvc", content);
      EXPECT_EQ(seal == DocumentSeal::Whole, sChanged == sWhole) << sChanged;
      const Text sWritten = WriteDocument(content);
      EXPECT_EQ(SealRead(sWritten), DocumentSeal::Whole);
      DocumentContent again;
      ReadDocument(sWritten, "plant.orvc", again);
      EXPECT_EQ(WriteDocument(again), sWritten);
      ++nRead;
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Number(), failure::kDocument);
    }
  }
  EXPECT_GT(nRead, 100);
}

}  // namespace
}  // namespace orvane::console
