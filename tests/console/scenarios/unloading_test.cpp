// The snap-in's library goes when its last document is closed and comes back with the next one, in
// the real host with the components of this build tree.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QSettings>
#include <QTemporaryDir>

#include "component/registration.h"
#include "console/app/host.h"
#include "tests/console/window/panes.h"

namespace orvane::console {
namespace {

bool IsLoaded(const char* sLibrary) {
  void* const handle = dlopen(sLibrary, RTLD_LAZY | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

TEST(UnloadingTest, a_snap_in_is_unloaded_after_its_document_and_loaded_again_with_the_next) {
  const QTemporaryDir folder;
  const auto sComponents = folder.filePath("components").toStdString();
  for (const char* const sLibrary : {ORVANE_SNAP_IN, ORVANE_CONTROLS, ORVANE_PROVIDER}) {
    component::RegisterLibrary(sLibrary, sComponents);
  }
  QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
  Host host(sComponents);
  ASSERT_FALSE(IsLoaded(ORVANE_SNAP_IN));
  for (int i = 0; i < 3; ++i) {
    {
      MainWindow window(host.Parts(&settings));
      ASSERT_TRUE(window.OpenDocument(ORVANE_SAMPLE));
      EXPECT_NE(ResultsOf(window).Sentence(), "The snap-in cannot be loaded.");
      EXPECT_EQ(window.Session().Tree().StaticItem()->DisplayName(), "ORVANE Servers");
      // What has an object alive stays.
      host.Runtime().UnloadUnused();
      EXPECT_TRUE(IsLoaded(ORVANE_SNAP_IN));
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    host.Runtime().UnloadUnused();
    EXPECT_FALSE(IsLoaded(ORVANE_SNAP_IN)) << "round " << i;
  }
}

}  // namespace
}  // namespace orvane::console
