// Colours the words of the historian's SQL, wherever statements are shown or typed: the same words
// in the same colours. Used by the grids and by the console's forms; user-interface thread.
#pragma once

#include <Qsci/qscilexersql.h>

#include <QFont>
#include <QPalette>

namespace orvane::sql_look {

/// Knows the statements' own words, not the names that columns and tables like to have: of the
/// library's words many are a historian's columns, "Value" and "Timestamp" first.
class SqlWords : public QsciLexerSQL {
 public:
  using QsciLexerSQL::QsciLexerSQL;

  const char* keywords(int iSet) const override;
  /// Takes the palette's colours for text and ground, and for each kind of word one that can be
  /// read on it. A valid plain colour takes the place of all of them.
  void Paint(const QPalette& palette, const QFont& font, const QColor& plain = {});
};

}  // namespace orvane::sql_look
