// Documents as bytes, for the tests of their format: lines with the seals that fit them, and what
// becomes of them when they are read.
#pragma once

#include <gtest/gtest.h>

#include "console/document/document_format.h"
#include "tests/console/fake_objects.h"

namespace orvane::console {

using platform::Long;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

constexpr const char* kOldHeader = "{\"format\":\"orvane-console\",\"version\":1}\n";
constexpr const char* kWholeNamesHeader = "{\"format\":\"orvane-console\",\"version\":2}\n";
constexpr const char* kHeader = "{\"format\":\"orvane-console\",\"version\":3}\n";
constexpr const char* kSnapIn = "{\"class\":\"SnapIn\",\"section\":\"snap-in\"}\n";

/// The lines with the one seal that fits them, as the first version of the format has it.
inline Text SealedOnce(const Text& sLines) {
  return sLines + "{\"blake2b\":\"" + SealOf(sLines) + "\"}\n";
}

/// The part with the seal that fits it, and its end. Parts beneath it stand before the seal, which
/// is of the lines that begin them as well.
inline Text Sealed(const Text& sPart, const Text& sEnd, const Text& sBeneath = {},
                   const Text& sBeneathBegins = {}) {
  return sPart + sBeneath + "{\"seal\":\"" + SealOf(sPart + sBeneathBegins) + "\"}\n{\"end\":\"" +
         sEnd + "\"}\n";
}

constexpr const char* kEnd = "{\"section\":\"end\"}\n";

/// The end of a document that begins, and whose sections begin, with these lines.
inline Text EndOf(const Text& sBegins) {
  return kEnd + ("{\"seal\":\"" + SealOf(sBegins + kEnd) + "\"}\n");
}

inline Text SentenceFor(const Text& sBytes) {
  DocumentContent content;
  return SentenceOf([&] { ReadDocument(sBytes, "plant.orvc", content); });
}

/// The sentence for a document with that line in a snap-in's section.
inline Text SentenceForLine(const Text& sLine) {
  return SentenceFor(Text(kHeader) + kSnapIn + sLine + "\n" + kEnd);
}

inline DocumentSeal SealRead(const Text& sBytes) {
  DocumentContent content;
  return ReadDocument(sBytes, "plant.orvc", content);
}

/// True when a change did not pass unseen.
inline bool IsNoticed(const Text& sBytes) {
  try {
    return SealRead(sBytes) == DocumentSeal::Broken;
  } catch (const platform::Failure&) {
    return true;
  }
}

inline void FillRealistically(DocumentContent& content) {
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
  content.View().WriteProperty("Grid.1_Item", "alpha");
}

inline Text RealisticBytes() {
  DocumentContent content;
  FillRealistically(content);
  return WriteDocument(content);
}

}  // namespace orvane::console
