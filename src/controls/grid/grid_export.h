// The export of a grid: asks what and where, and writes the rows that are shown or those that the
// server sends anew. Owned by the grid's core; user-interface thread, save that rows are written on
// another one: those of the server where they are fetched.
#pragma once

#include <QPointer>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

#include "controls/grid/export_dialog.h"
#include "controls/grid/grid_window.h"
#include "exports/row_export.h"
#include "platform/ado/connection.h"

namespace orvane::controls {

/// What a grid shows, for names of files and for SQL.
struct GridSubject {
  platform::Text sName;  ///< of the table or query
  platform::Text sInto;  ///< the table for rows that are inserted, quoted as SQL needs it
};

/// What an export asks of its grid.
struct ExportSource {
  std::function<GridSubject()> subject;
  std::function<zones::TimeZone()> zone;
  /// Whether Fetch can be called.
  std::function<bool()> canFetch;
  /// Runs the statement of the rows anew, without a row limit, and gives how the fetch ended; fails
  /// as the statement does. The grid may be gone then.
  std::function<platform::FetchState(platform::RowSink)> fetch;
  /// Has work done on another thread while the window tells of it, and returns when it is done;
  /// passes on what it throws. The grid may be gone then, and already before.
  std::function<void(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work)>
      beside;
};

class GridExport {
 public:
  /// Adds itself to what can be done to the rows of the window.
  GridExport(GridWindow& window, ExportSource source);

  /// Asks and writes. What goes wrong is told in a box; what was done, beneath the rows.
  void Run();

 private:
  ExportOffer Offer() const;
  QString Ask(ExportChoice& choice) const;
  std::optional<exports::Exported> Write(const ExportChoice& choice, const QString& sPath);
  /// Gives whether the source has more rows; none where nothing is to be written. `written` counts.
  std::optional<bool> WriteHeld(const ExportChoice& choice, exports::RowExport& target,
                                std::atomic<platform::RowIndex>& written);

  QPointer<GridWindow> m_window;
  ExportSource m_source;
  ExportChoice m_before;
  std::shared_ptr<void> m_life = std::make_shared<char>();
};

}  // namespace orvane::controls
