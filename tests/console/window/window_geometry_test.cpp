// The windows beside the components' dialogs, in small and large letters, on coarse and fine
// screens, light and dark: on the screen, nothing cut, nothing to be scrolled sideways, and all of
// it to be read.
//
// With ORVANE_PICTURES set to a folder, a picture of every case is put there.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QSpinBox>
#include <QToolButton>

#include "console/app/appearance.h"
#include "console/dialogs/logon_dialog.h"
#include "console/document/row_memory.h"
#include "console/look/contrast.h"
#include "console/look/control_style.h"
#include "console/look/dialogs_on_screen.h"
#include "console/look/elided_label.h"
#include "console/waiting/waiting_panel.h"
#include "console/window/guide_window.h"
#include "tests/console/look/picture_fixture.h"
#include "tests/console/look/seen_focus.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

struct Look {
  const char* sName;
  int iPoints;
  int iDotsPerInch;
  bool bDark;
};

void PrintTo(const Look& look, std::ostream* out) {
  *out << look.sName;
}

constexpr Look kLooks[] = {
    {"usual", 10, 96, false},         {"larger", 14, 96, false},
    {"fine", 10, 160, false},         {"fine_and_larger", 14, 160, false},
    {"dark", 10, 96, true},           {"larger_and_dark", 14, 96, true},
    {"fine_and_dark", 10, 160, true}, {"fine_larger_and_dark", 14, 160, true}};

/// Before the window is made.
class Dressed {
 protected:
  explicit Dressed(const Look& look) {
    constexpr int kPointsPerInch = 72;
    QApplication::setStyle(new ControlStyle);
    QFont font = QApplication::font();
    font.setPixelSize(look.iPoints * look.iDotsPerInch / kPointsPerInch);
    QApplication::setFont(font);
    if (look.bDark) QApplication::setPalette(DarkPalette());
    SeeToFaintText();
  }
  ~Dressed() { QApplication::setStyle("Fusion"); }

 private:
  AppearanceBefore m_before;
};

class WindowGeometryTest : public testing::WithParamInterface<Look>,
                           private Dressed,
                           public MainWindowTest {
 protected:
  WindowGeometryTest() : Dressed(GetParam()) {}

  static void Check(QWidget& window, const char* sName) {
    Settle();
    const QString sFolder = qEnvironmentVariable("ORVANE_PICTURES");
    if (!sFolder.isEmpty()) {
      EXPECT_TRUE(window.grab().save(
          QStringLiteral("%1/%2-%3.png")
              .arg(sFolder, QLatin1String(sName), QLatin1String(GetParam().sName))));
    }
    const auto frame = window.frameGeometry();
    EXPECT_TRUE(window.screen()->availableGeometry().contains(frame))
        << sName << " " << frame.x() << "," << frame.y() << " " << frame.width() << "x"
        << frame.height();
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      if (widget->isVisible()) CheckText(*widget, sName);
    }
  }

  static void CheckText(const QWidget& widget, const char* sName) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    // The toolkit's own, for what does not fit the toolbar.
    if (widget.objectName() == "qt_toolbar_ext_button") return;
    if (const auto* tool = qobject_cast<const QToolButton*>(button)) {
      // Its text is its tool tip's; what is seen is a picture.
      EXPECT_GE(tool->iconSize().height(), tool->fontMetrics().height())
          << sName << ": " << tool->text().toStdString();
      return;
    }
    if (!(label && !label->text().isEmpty()) && !(button && !button->text().isEmpty())) return;
    const auto sText = (label ? label->text() : button->text()).toStdString();
    if (!dynamic_cast<const ElidedLabel*>(label) && !(label && label->wordWrap())) {
      EXPECT_GE(widget.width(), widget.sizeHint().width()) << sName << ": " << sText;
    }
    EXPECT_GE(widget.height(), label && label->wordWrap() ? label->heightForWidth(label->width())
                                                          : widget.fontMetrics().height())
        << sName << ": " << sText;
    const auto role = button ? QPalette::ButtonText : widget.foregroundRole();
    const auto ground = widget.palette().color(button ? QPalette::Button : widget.backgroundRole());
    const auto ink = Over(widget.palette().color(role), ground);
    EXPECT_GE(Contrast(ink, ground), widget.isEnabled() ? 3 : kLeastOfDisabled)
        << sName << ": " << sText;
  }
  static QColor Over(const QColor& ink, const QColor& ground) {
    const float fInk = ink.alphaF();
    return QColor::fromRgbF(ink.redF() * fInk + ground.redF() * (1 - fInk),
                            ink.greenF() * fInk + ground.greenF() * (1 - fInk),
                            ink.blueF() * fInk + ground.blueF() * (1 - fInk));
  }
  static constexpr double kLeastOfDisabled = 2;
};

TEST_P(WindowGeometryTest, window_with_a_list_and_with_a_table) {
  Check(*m_window, "page");
  EXPECT_EQ(Scope().horizontalScrollBar()->maximum(), 0);
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine");
  Check(*m_window, "list");
  ClickItem("alpha.Catalogs.Machine.Tags");
  Check(*m_window, "table");
}

TEST_P(WindowGeometryTest, logon_dialog) {
  ado::LogonRequest request;
  request.sServer = "localhost";
  request.sUser = "orvanesnapin";
  LogonDialog dialog(request, m_window.get());
  dialog.show();
  Check(dialog, "logon");
}

TEST_P(WindowGeometryTest, focus_is_seen_in_the_logon_dialog) {
  ado::LogonRequest request;
  request.knownServers = {"localhost", "plant"};
  request.bServerSelectable = true;
  LogonDialog dialog(request, m_window.get());
  ASSERT_TRUE(BringForward(dialog));
  ExpectFits(dialog);
  ExpectFocusSeen(dialog, 5);
}

TEST_P(WindowGeometryTest, memory_for_rows_is_asked_for_in_what_fits_and_by_keys) {
  Action("actRowMemory")->trigger();
  auto* dialog = m_window->findChild<QDialog*>("rowMemory");
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(BringForward(*dialog));
  ExpectFits(*dialog);
  ExpectFocusSeen(*dialog, 3);
  auto* number = dialog->findChild<QSpinBox*>();
  ASSERT_NE(number, nullptr);
  number->setFocus(Qt::TabFocusReason);
  number->selectAll();
  QTest::keyClicks(number, "512");
  QTest::keyClick(number, Qt::Key_Return);
  EXPECT_EQ(RowMemory(m_settings), std::size_t{512} << 20);
}

TEST_P(WindowGeometryTest, focus_is_seen_in_message_boxes) {
  const DialogAnswer answer([](QWidget* box) {
    EXPECT_TRUE(BringForward(*box));
    ExpectFocusSeen(*box, 2);
    QTest::keyClick(box, Qt::Key_Escape);
  });
  m_boxes->MsgBox("Are you sure you want to remove the \"Plant1\" catalog?",
                  platform::MsgBoxButtons::YesNo, platform::MsgBoxIcon::None,
                  "Confirm Catalog Removal");
  EXPECT_EQ(answer.Count(), 1);
}

TEST_P(WindowGeometryTest, dialogs_of_the_toolkit_stay_on_the_screen) {
  DialogsOnScreen keeper;
  qApp->installEventFilter(&keeper);
  QFileDialog files(m_window.get(), "Import Rows");
  files.setOption(QFileDialog::DontUseNativeDialog);
  files.resize(4000, 3000);
  files.show();
  Settle();
  const QRect room = files.screen()->availableGeometry();
  EXPECT_TRUE(room.contains(files.frameGeometry())) << files.frameGeometry().width();
  auto* buttons = files.findChild<QDialogButtonBox*>();
  ASSERT_NE(buttons, nullptr);
  for (const QAbstractButton* button : buttons->buttons()) {
    EXPECT_TRUE(files.rect().contains(QRect(button->mapTo(&files, QPoint()), button->size())));
    EXPECT_GE(button->width(), button->sizeHint().width());
  }
}

TEST_P(WindowGeometryTest, waiting_panel) {
  const WaitingPanel panel("Fetching the rows of the table \"Data\" from localhost\u2026",
                           m_window.get());
  Settle();
  for (const QWidget* widget : panel.findChildren<QWidget*>()) {
    if (widget->isVisible()) CheckText(*widget, "waiting");
  }
  const QRect place(panel.mapToGlobal(QPoint()), panel.size());
  EXPECT_TRUE(m_window->screen()->availableGeometry().contains(place));
  EXPECT_GE(panel.width(), panel.minimumSizeHint().width());
  EXPECT_GE(panel.height(), panel.minimumSizeHint().height());
}

TEST_P(WindowGeometryTest, message_boxes) {
  const auto check = [](const char* sName) {
    return [sName](QWidget* box) {
      Check(*box, sName);
      QTest::keyClick(box, Qt::Key_Escape);
    };
  };
  {
    const DialogAnswer answer(check("question"));
    m_boxes->MsgBox("Are you sure you want to remove the \"Plant1\" catalog?",
                    platform::MsgBoxButtons::YesNo, platform::MsgBoxIcon::None,
                    "Confirm Catalog Removal");
    EXPECT_EQ(answer.Count(), 1);
  }
  {
    const DialogAnswer answer(check("long"));
    m_boxes->MsgBox(std::string(40, 'x') + "/" + std::string(300, 'y') +
                        " cannot be read, since it is not there any more; look for it where it "
                        "was put.",
                    platform::MsgBoxButtons::OkOnly, platform::MsgBoxIcon::None, "Error");
    EXPECT_EQ(answer.Count(), 1);
  }
  const DialogAnswer answer(check("about"));
  Action("actAbout")->trigger();
  EXPECT_EQ(answer.Count(), 1);
}

TEST_P(WindowGeometryTest, guide_needs_no_scrolling_sideways) {
  QTest::keyClick(m_window.get(), Qt::Key_F1);
  auto* guide = m_window->findChild<GuideWindow*>();
  ASSERT_NE(guide, nullptr);
  Check(*guide, "guide");
  EXPECT_EQ(guide->horizontalScrollBar()->maximum(), 0);
  guide->resize(guide->width() / 2, guide->height());
  Check(*guide, "narrow guide");
  EXPECT_EQ(guide->horizontalScrollBar()->maximum(), 0);
}

INSTANTIATE_TEST_SUITE_P(looks, WindowGeometryTest, testing::ValuesIn(kLooks),
                         [](const auto& tested) { return std::string(tested.param.sName); });

}  // namespace
}  // namespace orvane::console
