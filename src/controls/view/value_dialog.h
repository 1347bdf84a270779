// A larger place to see and type one cell: a text with its line breaks, or bytes as hexadecimal
// digits with their number, beside the text and the picture that they may be. Shown by the editing
// of a grid; user-interface thread.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <optional>
#include <utility>
#include <vector>

#include "controls/view/cell_editor.h"

class QDialogButtonBox;
class QTabWidget;

namespace orvane::controls {

/// The text with the line breaks that the original had: lines that stayed at the beginning and at
/// the end keep theirs, new ones get the kind that the original begins with.
platform::Text WithLineBreaksOf(const platform::Text& sOriginal, const QString& sEdited);

class ValueDialog : public QDialog {
  Q_OBJECT

 public:
  ValueDialog(EditedCell cell, const QString& sColumn, QWidget* parent);

  /// Nothing can be typed: the value is there to be looked at.
  void OnlyShow();
  /// The value that is typed; none when nothing was typed, or what was typed is no value.
  const std::optional<platform::Value>& Taken() const { return m_taken; }

  void accept() override;

 private:
  bool IsBytes() const;
  platform::Value Read() const;
  /// The text from which typing begins.
  platform::Text Original() const;
  void ShowBytes();
  /// What the bytes are as a text, or a picture, once that is looked at: it may take its time.
  void ShowPage();

  static constexpr int kTextPage = 1;
  static constexpr int kPicturePage = 2;

  EditedCell m_cell;
  std::vector<std::pair<QChar, QChar>> m_standIns;  ///< for characters that cannot be shown
  QTabWidget* m_pages;
  QPlainTextEdit* m_typed;
  QPlainTextEdit* m_asText = nullptr;
  QLabel* m_asPicture = nullptr;
  QLabel* m_length = nullptr;  ///< of bytes
  QByteArray m_bytes;          ///< as they are typed
  bool m_bTextShown = false;
  bool m_bPictureShown = false;
  QLabel* m_sentence;
  QDialogButtonBox* m_buttons;
  std::optional<platform::Value> m_taken;
};

}  // namespace orvane::controls
