// Takes the pictures of docs/user-guide.md: does what the guide tells, with the mouse, on a screen
// of its own, and writes a picture of each step. Run by scripts/pictures.
#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QMessageBox>
#include <QScreen>
#include <QTemporaryDir>
#include <cmath>
#include <iostream>

#include "console/app/appearance.h"
#include "console/document/document.h"
#include "console/scope/scope_pane.h"
#include "tests/console/whole_job/hands.h"
#include "tests/console/whole_job/new_user.h"
#include "tests/console/whole_job/x_screen.h"

namespace orvane::console {
namespace {

using platform::Text;

/// A morning of samples, the same in every run: one a minute for each of four tags.
Text Samples() {
  constexpr long long kStart = 1'772'431'200LL;  // 2026-03-02 06:00 UTC
  struct Tag {
    const char* sName;
    const char* sDescription;
    const char* sUnit;
    double dMean;
    double dSwing;
    double dMinutes;
  };
  const Tag tags[] = {{"boiler.flow", "Feed water flow", "t/h", 82, 6, 47},
                      {"boiler.level", "Drum level", "mm", -4, 11, 31},
                      {"boiler.pressure", "Steam pressure", "bar", 61, 1.5, 83},
                      {"boiler.temperature", "Steam temperature", "°C", 505, 4, 113}};
  Text sTags;
  Text sData;
  for (const auto& tag : tags) {
    const Text sName = tag.sName;
    sTags += Text(sTags.empty() ? "" : ", ") + "('" + sName + "', '" + tag.sDescription + "', '" +
             tag.sUnit + "')";
    for (int i = 0; i < 360; ++i) {
      const double dValue = tag.dMean + tag.dSwing * std::sin(2 * M_PI * i / tag.dMinutes);
      sData += Text(sData.empty() ? "" : ", ") + "('" + sName + "', " +
               std::to_string((kStart + std::int64_t{i} * 60) * 1'000'000) + ", " +
               std::to_string(std::round(dValue * 100) / 100) + ")";
    }
  }
  return "INSERT INTO Tags (Tag, Description, Unit) VALUES " + sTags +
         "; INSERT INTO Data (Tag, Timestamp, Value) VALUES " + sData;
}

class Guide {
 public:
  Guide(Stage& stage, const QDir& folder, QString sDocument)
      : m_stage(stage), m_hands(stage), m_folder(folder), m_sDocument(std::move(sDocument)) {}

  void Run() {
    Start();
    AddServer();
    Options();
    AddCatalog();
    Table();
    Query();
    NamedQueries();
    SaveAndOpenAgain();
  }

 private:
  QWidget* In(QDialog* dialog, const char* sName) {
    return m_stage.Ask([&] { return dialog->findChild<QWidget*>(sName); });
  }
  /// What the screen shows of the window, or of a dialog alone.
  void Picture(const char* sName, QWidget* of = nullptr) {
    auto* input = &m_stage.Input();
    input->MoveTo(1275, 955);
    m_stage.WaitFor("the pointer is out of the way",
                    [] { return QCursor::pos() == QPoint(1275, 955); });
    m_stage.Ask([&] {
      for (auto* window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) window->repaint();
      }
      const auto rect = (of ? of : &m_stage.Window())->frameGeometry();
      const auto picture = QGuiApplication::primaryScreen()->grabWindow(
          0, rect.x(), rect.y(), rect.width(), rect.height());
      if (!picture.save(m_folder.filePath(QLatin1String(sName) + ".png"))) {
        throw Stopped(Text("The picture ") + sName + " cannot be written.");
      }
    });
  }
  void Open(const Text& sKey) {
    m_hands.Expand(sKey);
    m_stage.WaitFor(sKey + " is open", [&] {
      const auto item = m_stage.Item(sKey);
      return item && item->State() == NodeState::Loaded && m_stage.IsIdle();
    });
  }

  void Start() {
    m_stage.StartProgram();
    m_stage.Ask([&] { m_stage.Window().resize(940, 560); });
    m_stage.WaitFor("the window has its size",
                    [&] { return m_stage.Window().size() == QSize(940, 560) && m_stage.IsIdle(); });
    Picture("guide-01-start");
  }

  void AddServer() {
    m_hands.Command("", "m_mnuServersConnect");
    auto* logon = m_stage.WaitForDialog("logonDialog");
    Picture("guide-02-log-on");
    m_hands.PressIn(logon, "m_btnOk");
    m_stage.WaitUntilIdle();
  }

  void Options() {
    m_hands.Command("", "m_mnuOptions");
    auto* options = m_stage.WaitForDialog("Options");
    m_hands.Enter(In(options, "m_txtMaxRows"), "500");
    m_hands.Enter(In(options, "m_txtTimeout"), "30");
    m_hands.Enter(In(options, "m_txtDefStartTime"), "2026-03-02 06:00");
    m_hands.Enter(In(options, "m_txtDefEndTime"), "2026-03-02 12:00");
    Picture("guide-03-options", options);
    m_hands.PressIn(options, "m_btnOK");
    m_stage.WaitUntilIdle();
  }

  void AddCatalog() {
    Open("localhost");
    Open("localhost.Catalogs");
    m_hands.Command("localhost.Catalogs", "m_mnuAddCatalog");
    auto* dialog = m_stage.WaitForDialog("Add Catalog");
    m_hands.Enter(In(dialog, "m_txtName"), "Boiler");
    Picture("guide-04-add-catalog");
    m_hands.PressIn(dialog, "m_btnOk");
    m_stage.WaitUntilIdle();
    WriteToCatalog("localhost", "Boiler", Samples());
  }

  void Table() {
    Open("localhost.Catalogs.Boiler");
    m_hands.Select("localhost.Catalogs.Boiler.Data");
    Picture("guide-05-table");
    m_hands.Tab("Structure");
    Picture("guide-06-structure");
    m_hands.Tab("Data");
  }

  void Query() {
    m_hands.Command("localhost.Catalogs.Boiler.Data", "m_mnuQuery");
    auto* builder = m_stage.WaitForDialog("Table Query");
    m_hands.PressIn(builder, "m_btnDeselectAllCols");
    auto* available = qobject_cast<QAbstractItemView*>(In(builder, "m_lvAvailableCols"));
    for (const char* sColumn : {"Timestamp", "Value"}) {
      m_hands.MoveColumn(available, sColumn, nullptr);
    }
    m_hands.PressIn(builder, "m_chkDefaultFilterCond");
    m_hands.Enter(In(builder, "m_txtFilterCond"), "Tag = 'boiler.pressure' AND Value > 62");
    m_hands.PressIn(builder, "m_chkNoSortingCriteria");
    m_hands.Choose(In(builder, "m_cmbSortCol"), "Timestamp");
    m_hands.Choose(In(builder, "m_cmbSortOrder"), "Descending");
    Picture("guide-07-table-query", builder);
    m_hands.PressIn(builder, "m_btnOk");
    m_stage.WaitUntilIdle();
    m_hands.ToolbarButton("MoveFirst");
    Picture("guide-08-chosen-rows");
  }

  void NamedQueries() {
    m_hands.Command("localhost.Queries", "m_mnuNewQuery");
    auto* dialog = m_stage.WaitForDialog("Query");
    m_hands.Enter(In(dialog, "m_txtName"), "Morning at a glance");
    m_hands.Enter(In(dialog, "m_sqlView"),
                  "SELECT d.Tag, MIN(d.Value) AS Lowest, MAX(d.Value) AS Highest, t.Unit\n"
                  "FROM Boiler..Data AS d JOIN Boiler..Tags AS t ON t.Tag = d.Tag\n"
                  "WHERE d.Timestamp BETWEEN '2026-03-02 06:00' AND '2026-03-02 12:00'\n"
                  "GROUP BY d.Tag");
    Picture("guide-09-named-query", dialog);
    m_hands.PressIn(dialog, "m_btnOk");
    m_stage.WaitUntilIdle();
    Open("localhost.Queries");
    m_hands.Select("localhost.Queries.Morning at a glance");
    Picture("guide-10-results");
  }

  void SaveAndOpenAgain() {
    m_hands.Save();
    auto* dialog = m_stage.WaitForDialog("saveDialog");
    m_hands.Enter(In(dialog, "fileNameEdit"), "Plant.orvc");
    m_stage.Input().Key("Return");
    m_stage.WaitFor("the document is saved",
                    [&] { return !m_stage.Window().IsModified() && m_stage.IsIdle(); });
    m_stage.Ask([&] { m_stage.Window().OpenDocument(m_sDocument.toStdString()); });
    Open("");
    m_hands.Select("localhost");
    Picture("guide-11-opened-again");
  }

  Stage& m_stage;
  MouseHands m_hands;
  QDir m_folder;
  QString m_sDocument;
};

int Run(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "Usage: orvane-guide-pictures FOLDER\n";
    return 1;
  }
  const QDir pictures(QDir().absoluteFilePath(QString::fromLocal8Bit(argv[1])));
  const QTemporaryDir folder;
  BeginAsNewUser(folder.path().toStdString());
  setenv("TZ", "UTC", 1);
  const XScreen screen;
  QApplication application(argc, argv);
  PrepareApplication(application);
  QApplication::setQuitOnLastWindowClosed(false);
  // A cursor that is there in one picture and not in the next would make each run differ.
  QApplication::setCursorFlashTime(0);
  QDir::setCurrent(folder.path());
  Stage stage(screen.Display(), RegisterComponents(folder.path().toStdString()));
  Guide guide(stage, pictures, folder.filePath("Plant.orvc"));
  const auto sStopped = stage.Play([&] { guide.Run(); });
  if (!sStopped.empty()) std::cerr << sStopped << '\n';
  return sStopped.empty() ? 0 : 1;
}

}  // namespace
}  // namespace orvane::console

int main(int argc, char** argv) {
  try {
    return orvane::console::Run(argc, argv);
  } catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}
