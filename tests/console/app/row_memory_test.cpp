#include "console/document/row_memory.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>

namespace orvane::console {
namespace {

TEST(row_memory, is_what_the_setting_says_in_megabytes) {
  const QTemporaryDir folder;
  QSettings settings(folder.filePath("settings.conf"), QSettings::NativeFormat);
  EXPECT_EQ(RowMemory(settings), std::nullopt);
  settings.setValue(kRowMemorySetting, 64);
  EXPECT_EQ(RowMemory(settings), std::size_t{64} << 20);
  settings.setValue(kRowMemorySetting, "100000");
  EXPECT_EQ(RowMemory(settings), std::size_t{100'000} << 20);
  for (const char* const sBad : {"", "-64", "0", "15", "a lot", "64 MB", "99999999999999999999"}) {
    settings.setValue(kRowMemorySetting, sBad);
    EXPECT_EQ(RowMemory(settings), std::nullopt) << sBad;
  }
}

}  // namespace
}  // namespace orvane::console
