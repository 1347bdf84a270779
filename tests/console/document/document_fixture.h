// Documents on the disk, for their tests: made, opened and looked at byte by byte.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "console/document/document.h"
#include "tests/console/fake_objects.h"
#include "tests/fakes/processes.h"

namespace orvane::console {

namespace fs = std::filesystem;

inline std::unique_ptr<DocumentContent> ContentOf(const platform::Text& sText) {
  auto content = std::make_unique<DocumentContent>();
  content->SnapIn("SnapIn").WriteProperty("text", sText);
  return content;
}

inline platform::Value TextIn(const Document& document) {
  const DocumentBag* bag = document.Content().FindSnapIn("SnapIn");
  return bag ? bag->ReadProperty("text", {}) : platform::Value();
}

inline platform::Text BytesOf(const fs::path& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

inline void WriteBytes(const fs::path& path, const platform::Text& sBytes) {
  std::ofstream(path, std::ios::binary) << sBytes;
}

inline struct stat StatusOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status;
}

class DocumentTest : public testing::Test {
 protected:
  platform::Text Path(const platform::Text& sName = "plant.orvc") const {
    return (fs::path(m_folder.path().toStdString()) / sName).string();
  }
  /// Saves a new document of that text and lets it go.
  void Make(const platform::Text& sText, const platform::Text& sName = "plant.orvc") const {
    Document().SaveAs(Path(sName), ContentOf(sText));
  }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(m_folder.path().toStdString()), {}));
  }

  QTemporaryDir m_folder;
};

}  // namespace orvane::console
