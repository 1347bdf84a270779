// What all four dialogs look like: nothing cut off, nothing outside, nothing over something else,
// not larger than the screen, in small and large letters, on coarse and fine screens, and in long
// languages; and every control has a name to be read out.
//
// With ORVANE_PICTURES set to a folder, a picture of every case is put there.
#include <Qsci/qsciscintilla.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QGroupBox>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

#include "console/look/control_style.h"
#include "console/look/elided_label.h"
#include "dialogs/add_catalog_dlg.h"
#include "dialogs/options_dlg.h"
#include "dialogs/query_dlg.h"
#include "dialogs/table_query_dlg.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {
namespace {

struct Case {
  const char* sName;
  int iPoints;
  int iDotsPerInch;
  bool bLongCaptions;
  bool bDark;
};

void PrintTo(const Case& one, std::ostream* out) {
  *out << one.sName;
}

constexpr Case kCases[] = {{"usual", 10, 96, false, false},
                           {"dark", 10, 96, false, true},
                           {"larger", 14, 96, false, false},
                           {"larger_and_dark", 14, 96, false, true},
                           {"fine", 10, 160, false, false},
                           {"fine_and_dark", 10, 160, false, true},
                           {"fine_and_larger", 14, 160, false, false},
                           {"fine_larger_and_dark", 14, 160, false, true},
                           {"long", 10, 96, true, false},
                           {"fine_larger_and_long", 14, 160, true, false}};

class form_geometry : public FormsFixture, public testing::WithParamInterface<Case> {
 protected:
  form_geometry() : m_fontBefore(QApplication::font()), m_paletteBefore(QApplication::palette()) {
    QApplication::setStyle(new ControlStyle);
    constexpr int kPointsPerInch = 72;
    QFont font = m_fontBefore;
    font.setPixelSize(GetParam().iPoints * GetParam().iDotsPerInch / kPointsPerInch);
    QApplication::setFont(font);
    if (GetParam().bDark) QApplication::setPalette(DarkPalette());
  }
  ~form_geometry() override {
    QApplication::setFont(m_fontBefore);
    QApplication::setPalette(m_paletteBefore);
    QApplication::setStyle("Fusion");
  }

  template <class Dialog>
  void Check(Dialog& dialog, const char* sForm) {
    if (GetParam().bLongCaptions) Lengthen(sForm);
    Show(dialog, [&](QWidget& window) {
      ASSERT_EQ(window.objectName(), sForm);
      QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
      QApplication::processEvents();
      Picture(window);
      CheckScreen(window);
      CheckTexts(window);
      CheckSizes(window);
      CheckPlaces(window);
      CheckNames(window);
      CheckButtons(window);
    });
  }

 private:
  static QString Twice(const QString& sText) { return sText + u' ' + QString(sText).remove(u'&'); }

  static void Lengthen(const char* sForm) {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() != sForm) continue;
      for (auto* const label : window->findChildren<QLabel*>())
        label->setText(Twice(label->text()));
      for (auto* const button : window->findChildren<QAbstractButton*>()) {
        if (!button->text().isEmpty()) button->setText(Twice(button->text()));
      }
      for (auto* const frame : window->findChildren<QGroupBox*>()) {
        frame->setTitle(Twice(frame->title()));
      }
    }
  }

  static void Picture(QWidget& window) {
    const QString sFolder = qEnvironmentVariable("ORVANE_PICTURES");
    if (sFolder.isEmpty()) return;
    EXPECT_TRUE(window.grab().save(sFolder + u'/' + window.objectName() + u'-' +
                                   QLatin1String(GetParam().sName) + ".png"));
  }

  /// The window with its title is on the screen, the buttons are in sight, and so is each control
  /// when it has the focus.
  static void CheckScreen(QWidget& window) {
    const QRect screen = window.screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(window.frameGeometry())) << window.frameGeometry().height();
    QWidget* const first = QApplication::focusWidget();
    ASSERT_NE(first, nullptr);
    do {
      const QWidget* const focus = QApplication::focusWidget();
      EXPECT_GE(focus->visibleRegion().boundingRect().height(),
                qMin(focus->height(), focus->minimumSizeHint().height()))
          << Focus();
      Key(Qt::Key_Tab);
    } while (QApplication::focusWidget() != first);
    for (const auto* const area : window.findChildren<QScrollArea*>()) {
      if (GetParam().iPoints > 10 || GetParam().iDotsPerInch > 96) continue;
      EXPECT_FALSE(area->verticalScrollBar()->isVisible()) << "there is room for all of it";
      EXPECT_FALSE(area->horizontalScrollBar()->isVisible());
    }
  }

  /// What has no text of its own is as large as the letters beside it.
  static void CheckSizes(QWidget& window) {
    for (const auto* const button : window.findChildren<QToolButton*>()) {
      if (!button->isVisible() || qobject_cast<QLineEdit*>(button->parentWidget())) continue;
      EXPECT_GE(button->iconSize().height(), button->fontMetrics().height())
          << button->objectName().toStdString();
    }
    for (auto* const sql : window.findChildren<QsciScintilla*>()) {
      EXPECT_GE(sql->textHeight(0), sql->fontMetrics().height());
    }
  }

  static bool HasText(const QWidget& widget) {
    if (dynamic_cast<const ElidedLabel*>(&widget)) return false;
    return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QGroupBox*>(&widget);
  }

  static void CheckTexts(QWidget& window) {
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
      if (!widget->isVisible() || !HasText(*widget)) continue;
      // A frame's own text is its title; what stands in it is looked at by itself.
      const QSize hint =
          qobject_cast<const QGroupBox*>(widget) ? widget->minimumSizeHint() : widget->sizeHint();
      EXPECT_GE(widget->width(), hint.width()) << widget->objectName().toStdString();
      EXPECT_GE(widget->height(), hint.height()) << widget->objectName().toStdString();
    }
    for (const QLineEdit* const box : window.findChildren<QLineEdit*>()) {
      if (!box->isVisible()) continue;
      EXPECT_GE(box->height(), box->sizeHint().height()) << box->objectName().toStdString();
      EXPECT_GE(box->width(), box->minimumSizeHint().width()) << box->objectName().toStdString();
    }
  }

  static void CheckPlaces(QWidget& window) {
    const QList<QWidget*> widgets = window.findChildren<QWidget*>();
    for (const QWidget* const widget : widgets) {
      if (!widget->isVisible() || widget->objectName().isEmpty()) continue;
      const QWidget* const parent = widget->parentWidget();
      EXPECT_TRUE(parent->rect().contains(widget->geometry()))
          << widget->objectName().toStdString();
      for (const QWidget* const other : widgets) {
        if (other == widget || other->parentWidget() != parent || !other->isVisible()) continue;
        if (other->objectName().isEmpty()) continue;
        EXPECT_FALSE(widget->geometry().intersects(other->geometry()))
            << widget->objectName().toStdString() << " over " << other->objectName().toStdString();
      }
    }
  }

  static void CheckNames(QWidget& window) {
    int nNamed = 0;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
      if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus) continue;
      QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
      ASSERT_NE(accessible, nullptr) << widget->objectName().toStdString();
      const QString sName = accessible->text(QAccessible::Name);
      EXPECT_FALSE(sName.isEmpty())
          << widget->metaObject()->className() << " " << widget->objectName().toStdString();
      EXPECT_FALSE(sName.contains(u'&')) << sName.toStdString();
      ++nNamed;
    }
    EXPECT_GE(nNamed, 4);
  }

  static void CheckButtons(QWidget& window) {
    const bool bOptions = window.objectName() == "OptionsDlg";
    const QRect ok = Find(window, bOptions ? "m_btnOK" : "m_btnOk").geometry();
    const QRect cancel = Find(window, "m_btnCancel").geometry();
    EXPECT_EQ(ok.width(), cancel.width());
    EXPECT_LT(ok.right(), cancel.left());
    EXPECT_EQ(ok.top(), cancel.top());
  }

  const QFont m_fontBefore;
  const QPalette m_paletteBefore;
};

TEST_P(form_geometry, options_fit) {
  dialogs::OptionsDlg dialog(services);
  dialog.MaxRows().Text("100");
  dialog.Timeout().Text("60");
  dialog.DefStartTime().Text("*-1h");
  dialog.DefEndTime().Text("*");
  Check(dialog, "OptionsDlg");
}

TEST_P(form_geometry, the_query_fits_with_its_find_bar) {
  dialogs::QueryDlg dialog(services);
  dialog.Name().Text("Hourly means");
  dialog.SqlStatement().Text(
      "-- Means of the last hour\nSELECT Tag, Timestamp, Value\n  FROM Plant1..Data\n"
      " WHERE Timestamp >= '*-1h'\n   AND Value > 12.5\n ORDER BY Timestamp DESC");
  Check(dialog, "QueryDlg");
}

TEST_P(form_geometry, the_new_catalog_fits) {
  dialogs::AddCatalogDlg dialog(services);
  Check(dialog, "AddCatalogDlg");
}

TEST_P(form_geometry, the_query_builder_fits) {
  dialogs::TableQueryDlg dialog(services);
  dialog.Columns({"Tag", "Timestamp", "Value", "Status", "Quality"});
  dialog.CatalogLabel("Plant1");
  dialog.TableLabel("Data");
  dialog.AddSelectedColumn("Tag");
  dialog.AddSelectedColumn("Timestamp");
  dialog.AddSelectedColumn("Value");
  dialog.UpdateAvailableColumns();
  dialog.DefaultFilterCondition("Timestamp BETWEEN '*-1h' AND '*'");
  dialog.UseDefaultFilter(true);
  dialog.UpdateSortColumns();
  dialog.SetSortingCriteria("Timestamp", false);
  dialog.UpdateButtons();
  Check(dialog, "TableQueryDlg");
}

INSTANTIATE_TEST_SUITE_P(looks, form_geometry, testing::ValuesIn(kCases),
                         [](const auto& tested) { return std::string(tested.param.sName); });

struct form_alignment : FormsFixture {};

TEST_F(form_alignment, the_boxes_of_the_options_stand_under_each_other) {
  dialogs::OptionsDlg dialog(services);
  Show(dialog, [](QWidget& window) {
    const auto left = [&](const char* sName) {
      const QWidget& widget = Find(window, sName);
      return widget.mapTo(&window, QPoint()).x();
    };
    EXPECT_EQ(left("m_txtMaxRows"), left("m_txtTimeout"));
    EXPECT_EQ(left("m_txtMaxRows"), left("m_txtDefStartTime"));
    EXPECT_EQ(left("m_txtMaxRows"), left("m_txtDefEndTime"));
    EXPECT_GT(left("m_lblSeconds"), left("m_txtTimeout"));
    EXPECT_LT(Find(window, "m_txtMaxRows").width(), Find(window, "m_txtDefEndTime").width());
  });
}

}  // namespace
}  // namespace orvane::console
