#include "console/forms/sql_editor.h"

#include <QShortcut>
#include <QVBoxLayout>

#include "console/forms/editor_find_bar.h"
#include "console/forms/sql_view.h"

namespace orvane::console {

SqlEditor::SqlEditor(QWidget* parent)
    : QWidget(parent), m_view(new SqlView(this)), m_findBar(new EditorFindBar(*m_view, this)) {
  m_view->setObjectName("m_sqlView");
  m_findBar->setObjectName("m_findBar");
  setFocusProxy(m_view);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_view, 1);
  layout->addWidget(m_findBar);

  const auto onKey = [this](const QKeySequence& key, auto handler) {
    auto* const shortcut = new QShortcut(key, this);
    connect(shortcut, &QShortcut::activated, this, handler);
  };
  onKey(QKeySequence::Find, [this] { m_findBar->Open(); });
  onKey(Qt::Key_F3, [this] { m_findBar->FindNext(); });
  onKey(Qt::SHIFT | Qt::Key_F3, [this] { m_findBar->FindPrevious(); });
}

bool SqlEditor::isReadOnly() const {
  return m_view->isReadOnly();
}

void SqlEditor::setReadOnly(bool bReadOnly) {
  m_view->setReadOnly(bReadOnly);
}

}  // namespace orvane::console
