// Which tables have rows that are not stored, as the grids tell it. Asked before a document, a
// connection or a catalog is let go. One for the program; user-interface thread.
#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "platform/unsent_rows.h"

namespace orvane::console {

class UnsentRows final : public platform::UnsentRows {
 public:
  /// Asks whether the rows of which the sentence tells may be given up.
  using Asker = std::function<platform::Boolean(const platform::Text& sSentence)>;

  explicit UnsentRows(Asker ask) : m_ask(std::move(ask)) {}

  void Tell(const platform::RowsPlace& table, platform::RowIndex rows) override;
  platform::Long Round(const platform::RowsPlace& table) const override;
  platform::Boolean MayLose(const platform::RowsPlace& place) override;
  void Lose(const platform::RowsPlace& place) override;

  /// "1 row of the table "Data" is not stored.", and so on for several; empty where all are.
  platform::Text Sentence(const platform::RowsPlace& place = {}) const;

 private:
  struct Rows {
    platform::Text sTable;  ///< as it is shown
    platform::RowIndex rows = 0;
  };

  Asker m_ask;
  std::map<platform::RowsPlace, Rows> m_tables;          ///< by their names without regard to case
  std::map<platform::RowsPlace, platform::Long> m_lost;  ///< how often a place was
};

}  // namespace orvane::console
