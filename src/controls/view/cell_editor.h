// The line in which a cell is typed. It begins with the value as it can be typed again, says what
// is wrong with what was typed and keeps it, and tells null from the empty text. Made by the cells'
// delegate; user-interface thread.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <functional>
#include <optional>

#include "controls/values/value_input.h"

namespace orvane::controls {

/// Stands in place of a text that holds other bytes than characters: typing could not keep them.
inline constexpr const char* kNoCharacters = "bytes that are no characters; typing replaces them";

/// The cell that is edited.
struct EditedCell {
  platform::Value vtValue;
  ColumnTakes takes;
  ValueInput input;
};

class CellEditor : public QLineEdit {
  Q_OBJECT

 public:
  /// False for a value of so many characters that nobody edits it in a line, which takes the longer
  /// to be laid out the more there are.
  static bool TakesInLine(const platform::Value& vtValue);

  CellEditor(EditedCell cell, QWidget* parent);
  ~CellEditor() override;

  /// True when something was typed, also when it is what was there before.
  bool Touched() const { return m_bTouched; }
  /// The value that is typed; none after showing beneath the line why it is none.
  std::optional<platform::Value> Take();
  /// The value, or the text as it was typed where that is none: for a cell that is left.
  platform::Value Kept() const;
  void SetNull();
  const EditedCell& Cell() const { return m_cell; }
  /// The sentence that is shown beneath the line; empty when there is none.
  QString Problem() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  platform::Value Read() const;
  void ShowProblem(const QString& sSentence);
  void PlaceProblem();
  void Edited();

  EditedCell m_cell;
  bool m_bTouched = false;
  bool m_bNull;
  QPointer<QLabel> m_problem;
};

}  // namespace orvane::controls
