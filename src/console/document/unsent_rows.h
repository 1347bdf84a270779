// Which tables have rows that are not stored, as the grids tell it. Asked before a document is let
// go. One for the program; user-interface thread.
#pragma once

#include <map>
#include <utility>

#include "platform/unsent_rows.h"

namespace orvane::console {

class UnsentRows final : public platform::UnsentRows {
 public:
  void Tell(const platform::Text& sPlace, const platform::Text& sTable,
            platform::RowIndex rows) override;
  platform::Long Round() const override { return m_lRound; }

  bool Any() const { return !m_tables.empty(); }
  /// "1 row of the table "Data" is not stored.", and so on for several.
  platform::Text Sentence() const;
  /// The user gave all of them up.
  void Drop();

 private:
  std::map<platform::Text, std::pair<platform::Text, platform::RowIndex>> m_tables;
  platform::Long m_lRound = 0;
};

}  // namespace orvane::console
