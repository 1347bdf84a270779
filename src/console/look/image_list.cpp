#include "console/look/image_list.h"

#include "console/look/drawn_icon.h"
#include "platform/console_version.h"

// The drawings lie in a static library, whose resources nobody registers by themselves.
static void InitImages() {
  Q_INIT_RESOURCE(console_images);
}

namespace orvane::console {

using platform::Long;

namespace {

// In the order of the snap-in's folder lists.
constexpr std::array kFolderNames = {"servers", "server",     "folder",  "table",
                                     "column",  "column-key", "catalog", "query"};
constexpr std::array kButtonNames = {
    "move-first", "move-last", "sort-ascending", "sort-descending", "cell-query", "delete", "sql"};
static_assert(kFolderNames.size() == ImageList::kFolderImages);
static_assert(kButtonNames.size() == ImageList::kButtons);

}  // namespace

Long ImageList::ImagesAButton(platform::FileVersion* functions) {
  return functions && platform::IsConsoleAtLeast51(platform::ReadConsoleVersion(*functions)) ? 1
                                                                                             : 2;
}

ImageList::ImageList(Long lImagesAButton) : m_lImagesAButton(lImagesAButton) {
  InitImages();
  for (std::size_t n = 0; n < m_folders.size(); ++n) {
    m_folders[n] = Named(kFolderNames[n]);
    m_failedFolders[n] = QIcon(new DrawnIcon(kFolderNames[n], DrawnIcon::Mark::Failed));
    m_connectedFolders[n] = QIcon(new DrawnIcon(kFolderNames[n], DrawnIcon::Mark::Connected));
  }
  for (std::size_t n = 0; n < m_imlButtons.size(); ++n) m_imlButtons[n] = Named(kButtonNames[n]);
}

QIcon ImageList::Folder(Long lImage) const {
  return lImage >= 1 && lImage <= kFolderImages ? m_folders[static_cast<std::size_t>(lImage - 1)]
                                                : QIcon();
}

QIcon ImageList::FailedFolder(Long lImage) const {
  return lImage >= 1 && lImage <= kFolderImages
             ? m_failedFolders[static_cast<std::size_t>(lImage - 1)]
             : QIcon();
}

QIcon ImageList::ConnectedFolder(Long lImage) const {
  return lImage >= 1 && lImage <= kFolderImages
             ? m_connectedFolders[static_cast<std::size_t>(lImage - 1)]
             : QIcon();
}

QIcon ImageList::Button(Long lImage) const {
  return lImage >= 1 && lImage <= kButtons * m_lImagesAButton
             ? m_imlButtons[static_cast<std::size_t>((lImage - 1) / m_lImagesAButton)]
             : QIcon();
}

QIcon ImageList::Named(const char* sName) {
  InitImages();
  return QIcon(new DrawnIcon(QLatin1String(sName)));
}

QIcon ImageList::Badge(const char* sName) {
  InitImages();
  return QIcon(DrawnIcon::FileOf(QLatin1String(sName)));
}

}  // namespace orvane::console
