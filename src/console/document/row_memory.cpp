#include "console/document/row_memory.h"

#include <QSettings>

namespace orvane::console {

std::optional<std::size_t> RowMemory(const QSettings& settings) {
  bool bNumber = false;
  const qulonglong nMegabytes = settings.value(kRowMemorySetting).toULongLong(&bNumber);
  if (!bNumber || nMegabytes < kLeastRowMegabytes || nMegabytes > kMostRowMegabytes) {
    return std::nullopt;
  }
  return static_cast<std::size_t>(nMegabytes) << 20;
}

void RowMemory(QSettings& settings, std::optional<int> megabytes) {
  if (megabytes) {
    settings.setValue(kRowMemorySetting, *megabytes);
  } else {
    settings.remove(kRowMemorySetting);
  }
  settings.sync();
}

}  // namespace orvane::console
