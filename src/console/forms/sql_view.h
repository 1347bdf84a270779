// The editor of SQL text: highlighting in the desktop's colours, line numbers, undo. Tab leaves it,
// as every control of a form; Ctrl+] and Ctrl+[ indent the selected lines.
#pragma once

#include <Qsci/qsciscintilla.h>

#include "sql_look/sql_words.h"

namespace orvane::console {

class SqlView : public QsciScintilla {
 public:
  explicit SqlView(QWidget* parent = nullptr);
  ~SqlView() override;

  /// Draws the whole text in one colour; an invalid one brings the highlighting back.
  void PlainColor(const QColor& color);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool focusNextPrevChild(bool bNext) override;
  void changeEvent(QEvent* event) override;

 private:
  QFont TextFont() const;
  void Paint();
  void NumberLines();
  QSize SizeFor(int iCharacters, int iLines) const;

  sql_look::SqlWords m_lexer;
  QColor m_plainColor;
  bool m_bPainting = false;
};

}  // namespace orvane::console
