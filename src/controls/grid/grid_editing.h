// Editing in a grid: keys and menu entries, what is left and so to be sent, the questions
// before something is deleted, and what the strip tells of rows that are not stored. Owned by the
// grid's window, made by its core, which lends it what it needs; user-interface thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <array>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "controls/editing/edit_session.h"
#include "controls/editing/row_outbox.h"
#include "controls/grid/cell_filling.h"
#include "controls/grid/row_questions.h"

namespace orvane::controls {

class CellDelegate;
class CellEditor;
class GridWindow;
class RowView;

class GridEditing final : public QObject {
 public:
  /// Called after rows were added at the server, and after some were deleted there.
  struct Events {
    std::function<void()> inserted;
    std::function<void()> deleted;
    /// Called with the number of rows that are not stored when it may have changed; the row in
    /// which something is being typed is one of them.
    std::function<void(platform::RowIndex)> pending;
  };

  GridEditing(GridWindow& window, RowOutbox::Server server, Events events, CellFilling::Asker asker,
              std::shared_ptr<QStringList> lastQueries);
  ~GridEditing() override;

  /// Takes the rows over that the window shows.
  void Show(const platform::RecordsetPtr& rs, Updatability updatability, ValueInput input,
            std::shared_ptr<EditNotes> notes);
  void ShowNothing();

  /// True while a cell is being typed.
  bool IsTyping() const { return Typed() != nullptr; }
  /// What is being typed becomes a value of its cell, or is kept there as it is.
  void TakeTyped();

  RowQuestions& Questions() { return *m_questions; }
  /// Queries that fill cells, and pasting.
  CellFilling& Filling() { return *m_filling; }

  EditSession& Session() { return m_session; }
  const EditSession& Session() const { return m_session; }

  bool DeleteAllowed() const { return m_session.Updatability().bDelete; }

 private:
  CellEditor* Typed() const;
  void AddCommands();
  void StartEditing();
  /// A window for a cell; the current one's stays where there is one already.
  void OpenCell(const QModelIndex& index);
  void SetNull();
  /// Undoes the last step, or redoes it.
  void Move(bool bUndo);
  void DiscardRow();
  void Delete(const std::vector<platform::RowIndex>& rows);
  std::optional<platform::RowIndex> CurrentRow() const;
  void GoTo(std::optional<platform::RowIndex> row);
  /// None, with a sentence in the strip, where they are more than can be changed at once.
  std::vector<CellEdit> SelectedCells();
  static void Raise(const std::function<void()>& event);
  void TellOfStored(platform::RowState before);
  void RowsChanged(std::span<const platform::RowIndex> rows);
  /// Storing many rows: so many of all are sent.
  void TellOfProgress(platform::RowIndex sent, platform::RowIndex of);
  platform::RowIndex RecordRowOf(const QModelIndex& index) const;
  /// The row in which the keys are now, as the one before is left without any key or click where
  /// rows are put into order or filtered.
  void FollowCurrent();
  void TellOfPending();
  platform::RowIndex Unsent() const;
  std::array<CellDelegate*, 2> Cells() const;
  void TellOfCurrent();

  GridWindow& m_window;
  QPointer<RowView> m_rows;  ///< goes before this does when the window goes
  Events m_events;
  EditSession m_session;
  CellFilling* m_filling;
  RowQuestions* m_questions;
  RowOutbox* m_outbox;
  std::optional<platform::RowIndex> m_current;
};

}  // namespace orvane::controls
