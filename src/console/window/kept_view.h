// What a document keeps of the window: its place, the panes' shares, which bars are shown, how
// lists and grids look. User-interface thread.
#pragma once

#include <QByteArray>

class QMainWindow;
class QSplitter;

namespace orvane::console {

class ConsoleSession;
class DocumentBag;
class ResultPane;
class ToolbarView;
class WindowMenus;

struct ViewParts {
  QMainWindow& window;
  QSplitter& splitter;
  ToolbarView& toolbar;
  ResultPane& results;
  WindowMenus& menus;
  ConsoleSession& session;
};

void WriteView(const ViewParts& parts, DocumentBag& bag);

/// What the bag does not hold is as it is in a new window, but for the window's place: that is the
/// usual one, as QWidget::saveGeometry gave it, if there is one.
void ReadView(const ViewParts& parts, const DocumentBag& bag, const QByteArray& usualGeometry);

}  // namespace orvane::console
