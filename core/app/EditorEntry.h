// The ways into the editor from outside the island: on a file, on the newest screenshot, on a file that the user
// chooses. Main thread; owned by the composition root.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "core/base/FileURL.h"
#include "core/base/WeakOwner.h"

namespace quenlio {

class FileManager;
class OpenPanel;
class QuenlioReleaseTestDiagnostics;
class Scheduler;
class ScreenshotEditorManager;
class StandardDirectories;

class EditorEntry {
 public:
  struct Dependencies {
    const FileManager& files;
    const StandardDirectories& directories;
    OpenPanel& openPanel;
    Scheduler& scheduler;
    ScreenshotEditorManager& editors;
    QuenlioReleaseTestDiagnostics& diagnostics;
    std::function<std::optional<FileURL>()> newestScreenshot;
    std::function<void(const FileURL&)> refreshEditedScreenshot;  // in the library
  };

  explicit EditorEntry(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

  // On this file, else on the newest screenshot, else on a file that the user chooses.
  void openEditorFromMenu(const std::optional<FileURL>& url);
  // Does nothing unless the file is there and a picture.
  void openEditor(const FileURL& url);
  // Asks for a picture; nothing on any answer but a confirmation.
  [[nodiscard]] std::optional<FileURL> promptForEditorImage();

 private:
  Dependencies dependencies_;
  WeakOwner<EditorEntry> weak_{this};
};

}  // namespace quenlio
