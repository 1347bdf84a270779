#include "console/app/row_memory.h"

#include <QSettings>

namespace orvane::console {

std::optional<std::size_t> RowMemory(const QSettings& settings) {
  constexpr qulonglong kLeast = 16;
  constexpr qulonglong kMost = qulonglong{1} << 30;
  bool bNumber = false;
  const qulonglong nMegabytes = settings.value(kRowMemorySetting).toULongLong(&bNumber);
  if (!bNumber || nMegabytes < kLeast || nMegabytes > kMost) return std::nullopt;
  return static_cast<std::size_t>(nMegabytes) << 20;
}

}  // namespace orvane::console
