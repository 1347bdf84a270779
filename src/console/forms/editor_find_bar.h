// The bar under an editor that finds a text in it. Hidden until it is opened; Enter presses the
// button that has the focus, else goes to the next find, Shift+Enter to the one before. Escape
// closes the bar and nothing else.
#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QsciScintilla;

namespace orvane::console {

class EditorFindBar : public QWidget {
 public:
  /// The editor must outlive the bar.
  EditorFindBar(QsciScintilla& editor, QWidget* parent);

  /// Shows the bar, takes the selected text of the editor, if it is one line, and the focus.
  void Open();
  /// Hides the bar and gives the focus back to the editor.
  void Close();
  /// Goes to the next find, around the end of the text; opens the bar when there is nothing to find
  /// yet.
  void FindNext() { Find(true); }
  void FindPrevious() { Find(false); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SizeImages();
  void Find(bool bForward);
  void FindWhileTyping();
  /// Looks from that place of the text on and says so when there is nothing.
  void FindFrom(int iLine, int iIndex, bool bForward);

  QsciScintilla& m_editor;
  QLineEdit* m_txtFind;
  QCheckBox* m_chkMatchCase;
  QLabel* m_lblResult;
};

}  // namespace orvane::console
