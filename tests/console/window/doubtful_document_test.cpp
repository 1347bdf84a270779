// Documents that were changed outside the console, or whose save broke off, as the window meets
// them.
#include "tests/console/document/document_fixture.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

class DoubtfulDocument : public MainWindowTest {
 protected:
  DoubtfulDocument() {
    DoWork("saved");
    EXPECT_TRUE(m_window->SaveTo(Path("plant.orvc")));
    Text sBytes = BytesOf(Path("plant.orvc"));
    sBytes.replace(sBytes.find("\"saved\""), 7, "\"edited\"");
    EXPECT_TRUE(m_window->NewDocument());
    WriteBytes(Path("plant.orvc"), sBytes);
  }
  /// Opens it, pressing the box's button of that text.
  bool Open(const char* sButton) {
    const DialogAnswer answer([&](QWidget* box) {
      EXPECT_EQ(box->objectName(), "doubtfulDocumentBox");
      const auto* message = qobject_cast<QMessageBox*>(box);
      ASSERT_NE(message, nullptr);
      m_sText = message->text();
      for (auto* button : message->buttons()) {
        if (button->text() == QLatin1String(sButton)) {
          QTest::mouseClick(button, Qt::LeftButton);
          return;
        }
      }
      ADD_FAILURE() << "no button " << sButton;
      box->close();
    });
    const bool bOpened = m_window->OpenDocument(Path("plant.orvc"));
    EXPECT_EQ(answer.Count(), 1);
    return bOpened;
  }

  QString m_sText;
};

TEST_F(DoubtfulDocument, changed_outside_is_asked_about_and_not_opened_on_cancel) {
  EXPECT_FALSE(Open("Cancel"));
  EXPECT_EQ(m_sText, "“plant.orvc” was changed outside the console since it was saved.");
  EXPECT_EQ(m_window->Document().Name(), "Untitled");
  EXPECT_TRUE(Session().IsOpen());
  EXPECT_FALSE(m_window->IsModified());
}

TEST_F(DoubtfulDocument, changed_outside_is_opened_as_unsaved_work) {
  ASSERT_TRUE(Open("&Open"));
  EXPECT_EQ(m_window->Document().Name(), "plant");
  EXPECT_TRUE(m_window->IsModified());
  EXPECT_TRUE(m_window->isWindowModified() || m_window->windowTitle().contains('*'));
  // Looking again does not forget it.
  DoWork("edited");
  EXPECT_TRUE(m_window->IsModified());
  EXPECT_TRUE(m_window->Save());
  EXPECT_FALSE(m_window->IsModified());
  const DialogAnswer nobody([](QWidget* box) { box->close(); });
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(nobody.Count(), 0);
}

}  // namespace
}  // namespace orvane::console
