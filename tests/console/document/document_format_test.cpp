#include "console/document/document_format.h"

#include <algorithm>
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
  content.View().WriteProperty("Grid_g", true);
  const Text sItem1 = "{\"part\":\"Item1_\"}\n";
  const Text sSub2 = "{\"part\":\"Item1_Sub2_\"}\n";
  const Text sItem2 = "{\"part\":\"Item2_\"}\n";
  const Text sView = "{\"section\":\"view\"}\n";
  const Text sGrid = "{\"part\":\"Grid_\"}\n";
  const Text sBeneath =
      Sealed(sItem1 + "{\"name\":\"b\",\"boolean\":false}\n", "Item1_",
             Sealed(sSub2 + "{\"name\":\"d\",\"boolean\":true}\n", "Sub2_"), sSub2) +
      Sealed(sItem2 + "{\"name\":\"c\",\"integer\":-1}\n", "Item2_");
  EXPECT_EQ(WriteDocument(content),
            kHeader +
                Sealed(Text(kSnapIn) + "{\"name\":\"a\",\"text\":\"x\\ny\"}\n"
                                       "{\"name\":\"e\",\"integer\":7}\n",
                       "SnapIn", sBeneath, sItem1 + sItem2) +
                Sealed(sView + "{\"name\":\"f\",\"text\":\"\"}\n", "view",
                       Sealed(sGrid + "{\"name\":\"g\",\"boolean\":true}\n", "Grid_")) +
                EndOf(Text(kHeader) + kSnapIn + sView));
}

TEST(document_format, a_part_is_an_item_or_a_list_of_them) {
  const Text sCatalog = "ServersNode_ServerNodes_ServerNode12_CatalogNodes_CatalogNode1_";
  EXPECT_EQ(PartOf("ServersNode"), "");
  EXPECT_EQ(PartOf("ServersNode_MaxRows"), "ServersNode_");
  EXPECT_EQ(PartOf("ServersNode_ServerNodes_ServerNodeCount"), "ServersNode_ServerNodes_");
  EXPECT_EQ(PartOf(sCatalog + "Catalog"), sCatalog);
  EXPECT_EQ(PartOf(sCatalog), sCatalog);
  EXPECT_EQ(PartOf(""), "");
  EXPECT_EQ(PartOf(Text(1000, '_')), Text(16, '_'));
  EXPECT_EQ(PartOf("a_" + Text(300, 'x') + "_y"), "a_");
  EXPECT_EQ(PartAbove(sCatalog), "ServersNode_ServerNodes_ServerNode12_CatalogNodes_");
  EXPECT_EQ(EndNameOf(sCatalog), "CatalogNode1_");
  EXPECT_EQ(EndNameOf("a_"), "a_");
  EXPECT_EQ(EndNameOf("_"), "_");
  EXPECT_EQ(EndNameOf(""), "");
}

TEST(document_format, names_of_any_depth_read_back_as_they_were_written) {
  DocumentContent written;
  for (const char* const sName : {"_", "__", "a_", "_a", "a__b", "a"}) {
    written.SnapIn("SnapIn").WriteProperty(sName, sName);
    written.View().WriteProperty(sName, sName);
  }
  written.SnapIn("SnapIn").WriteProperty(Text(100000, '_'), true);
  const Text sLong = "a_" + Text(1000, 'x') + "_y";
  written.SnapIn("SnapIn").WriteProperty(sLong, "long");
  const Text sBytes = WriteDocument(written);
  DocumentContent read;
  EXPECT_EQ(ReadDocument(sBytes, "plant.orvc", read), DocumentSeal::Whole);
  EXPECT_EQ(WriteDocument(read), sBytes);
  EXPECT_EQ(read.FindSnapIn("SnapIn")->Count(), 8U);
  EXPECT_EQ(read.FindSnapIn("SnapIn")->ReadProperty(sLong, {}), Value("long"));
  EXPECT_EQ(read.FindSnapIn("SnapIn")->ReadProperty("a__b", {}), Value("a__b"));
  EXPECT_EQ(read.View().ReadProperty("__", {}), Value("__"));
}

TEST(document_format, the_second_version_is_still_read) {
  const Text sPart = "{\"part\":\"A_Item1_\"}\n";
  const Text sView = "{\"section\":\"view\"}\n";
  const Text sBytes = kWholeNamesHeader +
                      Sealed(Text(kSnapIn) + "{\"name\":\"A_a\",\"integer\":1}\n", "SnapIn") +
                      Sealed(sPart + "{\"name\":\"A_Item1_B_b\",\"integer\":2}\n", "A_Item1_") +
                      Sealed(sView + "{\"name\":\"Splitter.State\",\"text\":\"AAAA\"}\n", "view") +
                      EndOf(Text(kWholeNamesHeader) + kSnapIn + sPart + sView);
  DocumentContent read;
  EXPECT_EQ(ReadDocument(sBytes, "plant.orvc", read), DocumentSeal::Whole);
  EXPECT_EQ(read.FindSnapIn("SnapIn")->ReadProperty("A_a", {}), Value(Long{1}));
  EXPECT_EQ(read.FindSnapIn("SnapIn")->ReadProperty("A_Item1_B_b", {}), Value(Long{2}));
  EXPECT_EQ(read.View().ReadProperty("Splitter.State", {}), Value("AAAA"));
  EXPECT_EQ(WriteDocument(read).find(kHeader), 0U);
  for (std::size_t n = 0; n + 1 < sBytes.size(); ++n) {
    EXPECT_TRUE(IsNoticed(Text(sBytes).erase(n, 1))) << "byte " << n;
  }
  const auto nBegin = sBytes.find(sPart);
  const auto nEnd = sBytes.find(sView);
  EXPECT_EQ(SealRead(Text(sBytes).erase(nBegin, nEnd - nBegin)), DocumentSeal::Broken);
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

/// The part of that name in the realistic document, with those beneath it.
Text PartIn(const Text& sBytes, const Text& sName) {
  const auto nBegin = sBytes.find("{\"part\":\"" + sName + "\"}");
  const auto nEnd = sBytes.find("{\"end\":\"" + Text(EndNameOf(sName)) + "\"}", nBegin);
  return sBytes.substr(nBegin, sBytes.find('\n', nEnd) + 1 - nBegin);
}

const Text kServer = "ServersNode_ServerNodes_ServerNode1_";

TEST(document_format, tells_a_part_that_is_missing_whole) {
  const Text sBytes = RealisticBytes();
  for (const Text& sName : {Text("ServersNode_"), Text("ServersNode_ServerNodes_"), kServer,
                            kServer + "CatalogNodes_CatalogNode1_"}) {
    const Text sPart = PartIn(sBytes, sName);
    EXPECT_EQ(SealRead(Text(sBytes).erase(sBytes.find(sPart), sPart.size())), DocumentSeal::Broken)
        << sName;
  }
}

TEST(document_format, tells_a_part_that_stands_elsewhere_or_twice) {
  const Text sBytes = RealisticBytes();
  const Text sPart = PartIn(sBytes, kServer);
  const Text sWithout = Text(sBytes).erase(sBytes.find(sPart), sPart.size());
  for (const char* const sBefore :
       {"{\"part\":\"ServersNode_\"}", "{\"section\":\"view\"}", "{\"section\":\"end\"}"}) {
    EXPECT_TRUE(IsNoticed(Text(sWithout).insert(sWithout.find(sBefore), sPart))) << sBefore;
  }
  EXPECT_NE(SentenceFor(Text(sBytes).insert(sBytes.find(sPart), sPart)).find("twice"), Text::npos);
}

TEST(document_format, parts_without_their_ends_are_read_all_the_same) {
  const Text sBytes = RealisticBytes();
  Text sWithout;
  std::istringstream lines(sBytes);
  for (Text sLine; std::getline(lines, sLine);) {
    if (!sLine.starts_with("{\"end\"") && !sLine.starts_with("{\"seal\"")) sWithout += sLine + "\n";
  }
  DocumentContent read;
  EXPECT_EQ(ReadDocument(sWithout, "plant.orvc", read), DocumentSeal::Broken);
  EXPECT_EQ(WriteDocument(read), sBytes);
}

TEST(document_format, parts_beneath_each_other_without_end_are_read) {
  Text sBytes = Text(kHeader) + kSnapIn;
  for (std::size_t i = 1; i < 3000; ++i) sBytes += "{\"part\":\"" + Text(i, 'a') + "\"}\n";
  for (int i = 1; i < 3000; ++i) sBytes += "{\"end\":\"b\"}\n";
  EXPECT_EQ(SealRead(sBytes + EndOf(Text(kHeader) + kSnapIn)), DocumentSeal::Broken);
}

TEST(document_format, tells_the_line_at_which_the_first_seal_stops_to_fit) {
  const Text sBytes = RealisticBytes();
  const auto brokenAt = [](const Text& sRead) {
    DocumentContent content;
    DocumentLines lines;
    lines.nBroken = 99;
    ReadDocument(sRead, "plant.orvc", content, &lines);
    return lines.nBroken;
  };
  const auto lineOf = [&](std::size_t n) {
    return static_cast<std::size_t>(std::ranges::count(sBytes.substr(0, n), '\n')) + 1;
  };
  EXPECT_EQ(brokenAt(sBytes), 0U);
  // A changed property is told by the line that begins its part.
  Text sChanged = sBytes;
  sChanged.replace(sBytes.find("*-1h"), 4, "*-2h");
  sChanged.replace(sBytes.find("Log Level = 0"), 13, "Log Level = 1");
  EXPECT_EQ(brokenAt(sChanged), lineOf(sBytes.find("{\"part\":\"ServersNode_\"")));
  // So is one that has lost its seal, and one that has lost a part beneath.
  const auto nEnd = sBytes.find("{\"end\":\"ServerNode1_\"}");
  const auto nSeal = sBytes.rfind("{\"seal\"", nEnd);
  const Text sServer = PartIn(sBytes, kServer);
  EXPECT_EQ(brokenAt(Text(sBytes).erase(nSeal, nEnd - nSeal)), lineOf(sBytes.find(sServer)));
  EXPECT_EQ(brokenAt(Text(sBytes).erase(sBytes.find(sServer), sServer.size())),
            lineOf(sBytes.find("{\"part\":\"ServersNode_ServerNodes_\"")));
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
