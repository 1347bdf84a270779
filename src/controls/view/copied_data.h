// What a copy leaves on the clipboard: the text, and the other forms of the same cells, which are
// written when a program asks for one of them, whatever has become of the grid meanwhile.
// Made by copying, owned by the clipboard; user-interface thread.
#pragma once

#include <QMimeData>
#include <memory>

#include "controls/view/clipboard_text.h"
#include "zones/time_zone.h"

namespace orvane::controls {

class CopiedData final : public QMimeData {
 public:
  /// Copying more cells goes without their kinds.
  static constexpr platform::RowIndex kMostExact = 200'000;

  struct Forms {
    bool bPage = false;   ///< as a table of a page
    bool bExact = false;  ///< as cells of this library
  };
  /// Keeps `life` as long as it is on the clipboard.
  CopiedData(CopiedText copied, Forms forms, zones::TimeZone zone, std::shared_ptr<void> life);

  QStringList formats() const override;
  bool hasFormat(const QString& sFormat) const override { return formats().contains(sFormat); }
  bool IsExact() const { return m_forms.bExact; }

 protected:
  QVariant retrieveData(const QString& sFormat, QMetaType type) const override;

 private:
  // Gone last: the code of all this goes with it.
  std::shared_ptr<void> m_life;
  CopiedText m_copied;
  Forms m_forms;
  zones::TimeZone m_zone;
};

}  // namespace orvane::controls
