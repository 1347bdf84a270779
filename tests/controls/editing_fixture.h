// A table's grid on a real historian, worked with keys and mouse; what it stored is read back over
// another connection.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "controls/view/row_numbers.h"
#include "controls/view/row_view.h"
#include "tests/controls/historian_server.h"

namespace orvane::controls {

class EditingFixture : public testing::Test {
 protected:
  explicit EditingFixture(
      std::shared_ptr<tests::HistorianServer> server = tests::HistorianServer::Make())
      : m_server(std::move(server)) {}

  /// A grid on the rows of a table of the catalog "P", shown and with the keys in it.
  void Open(const platform::Text& sTable, const platform::Text& sOptions = {}) {
    m_cn = m_server->Connect(sOptions);
    m_query->Catalog("P");
    m_query->Table(sTable);
    m_editor = std::make_unique<controls::TableEditor>(Services());
    m_editor->Connection(m_cn);
    m_editor->TableQuery(m_query);
    m_editor->Requery();
    Show();
  }
  void Show() {
    Window()->resize(800, 400);
    Window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Window()));
    Rows().setFocus();
  }
  GridServices Services() {
    GridServices services{m_server, m_states, m_life, MachineTime, nullptr, m_unsent};
    services.longOperation = m_longOperation;
    return services;
  }
  virtual QWidget* Window() { return static_cast<QWidget*>(m_editor->Window()); }
  RowView& Rows() { return *Window()->findChild<RowView*>("rows"); }
  QLineEdit* Editor() { return Rows().findChild<QLineEdit*>("cellEditor"); }
  void PressRowNumber(int nRow, Qt::KeyboardModifiers modifiers = {}) {
    auto& numbers = Rows().Numbers();
    QTest::mouseClick(&numbers, Qt::LeftButton, modifiers, {5, numbers.YOf(nRow) + 5});
  }
  void GoTo(int nRow, int nColumn) { Rows().GoTo(nRow, nColumn); }
  /// A key for whatever has the keys, as somebody at the keyboard presses it.
  void Press(int nKey, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* target = Editor();
    if (!target) target = &Rows();
    QTest::keyClick(target, static_cast<Qt::Key>(nKey), modifiers);
    Settle();
  }
  void Type(const QString& sText) {
    for (const QChar c : sText) {
      QWidget* target = Editor();
      if (!target) target = &Rows();
      QTest::keyClick(target, c.toLatin1());
    }
  }
  /// What was left until the event loop runs is done.
  static void Settle() {
    for (int n = 0; n < 3; ++n) QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  std::string Cell(int nRow, int nColumn) {
    return Rows().model()->index(nRow, nColumn).data().toString().toStdString();
  }
  std::string Mark(int nRow) {
    return Rows()
        .model()
        ->headerData(nRow, Qt::Vertical, Qt::DecorationRole)
        .toString()
        .toStdString();
  }
  std::string Label(const char* sName) {
    if (const auto* button = Window()->findChild<QPushButton*>(sName)) {
      return button->isVisibleTo(Window()) ? button->text().toStdString() : "";
    }
    const auto* label = Window()->findChild<QLabel*>(sName);
    return label && label->isVisibleTo(Window()) ? label->text().toStdString() : "";
  }
  /// Presses a button of the box that is open.
  void Answer(const QString& sButton) {
    auto* box = Window()->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    for (auto* button : box->buttons()) {
      if (button->text().remove(u'&') == sButton) {
        QTest::mouseClick(button, Qt::LeftButton);
        Settle();
        return;
      }
    }
    FAIL() << "no button " << sButton.toStdString();
  }
  /// What another connection reads: cells parted by "|", rows by a line break.
  platform::Text Stored(const platform::Text& sSql) {
    platform::Text sRows = m_server->Read(sSql);
    if (sRows.ends_with('\n')) sRows.pop_back();
    return sRows;
  }

  std::shared_ptr<tests::HistorianServer> m_server;
  platform::ConnectionPtr m_cn;
  std::shared_ptr<RowsStates> m_states = std::make_shared<RowsStates>();
  std::shared_ptr<UnsentStash> m_unsent = std::make_shared<UnsentStash>();
  std::shared_ptr<void> m_life = std::make_shared<int>();
  std::shared_ptr<platform::LongOperation> m_longOperation;  ///< of grids to come
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
  std::unique_ptr<controls::TableEditor> m_editor;
};

}  // namespace orvane::controls
