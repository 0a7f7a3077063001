#include "core/app/EditorEntry.h"

#include "core/base/ImageExtensions.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/editor/ScreenshotEditorManager.h"
#include "core/platform/FileManager.h"
#include "core/platform/OpenPanel.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

void EditorEntry::openEditorFromMenu(const std::optional<FileURL>& url) {
  if (url) {
    openEditor(*url);
  } else if (const auto newest = dependencies_.newestScreenshot()) {
    openEditor(*newest);
  } else if (const auto chosen = promptForEditorImage()) {
    openEditor(*chosen);
  }
}

void EditorEntry::openEditor(const FileURL& url) {
  const FileURL file = url.standardized();
  const FileManager& files = dependencies_.files;
  if (!files.fileExistsAtPath(file) || files.isDirectory(file) || !hasImageExtension(file)) {
    return;
  }
  auto saved = weak_.bind([](EditorEntry& self, const FileURL& edited) {
    self.dependencies_.refreshEditedScreenshot(edited);
    self.dependencies_.diagnostics.record("editor_saved", {{"path", edited.path()}});
  });
  dependencies_.editors.open(file, [saved, &scheduler = dependencies_.scheduler](const FileURL& edited) {
    scheduler.post([saved, edited] { saved(edited); });
  });
}

std::optional<FileURL> EditorEntry::promptForEditorImage() {
  return dependencies_.openPanel.runModal({
      .title = "Open Image in Editor",
      .prompt = "Open",
      .canChooseFiles = true,
      .allowedContentTypes = {ContentType::png, ContentType::jpeg, ContentType::heic, ContentType::tiff,
                              ContentType::pdf},
      .directoryURL = dependencies_.directories.homeDirectory().appending("Desktop"),
  });
}

}  // namespace quenlio
