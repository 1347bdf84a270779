// Colours the words of the historian's SQL. Other words that some dialect reserves are column names
// here more often than not, "Timestamp" and "Value" first of all.
#pragma once

#include <Qsci/qscilexersql.h>

namespace orvane::controls {

class SqlLexer : public QsciLexerSQL {
 public:
  explicit SqlLexer(QObject* parent) : QsciLexerSQL(parent) {}

  const char* keywords(int nSet) const override;
};

}  // namespace orvane::controls
