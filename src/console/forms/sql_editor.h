// An editor of SQL text with a find bar under it: anywhere in the window, Ctrl+F opens the bar, F3
// and Shift+F3 go through the finds.
#pragma once

#include <QWidget>

namespace orvane::console {

class EditorFindBar;
class SqlView;

class SqlEditor : public QWidget {
 public:
  explicit SqlEditor(QWidget* parent = nullptr);

  SqlView& View() const { return *m_view; }
  bool isReadOnly() const;
  void setReadOnly(bool bReadOnly);

 private:
  SqlView* m_view;
  EditorFindBar* m_findBar;
};

}  // namespace orvane::console
