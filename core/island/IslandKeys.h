// The keys of the island: which key does what, and what it does to the selected screenshots. Main thread. Part of
// IslandOverlayController, to which both ways of a key lead: the panel that has the keyboard, and the monitor of all
// keys while the pointer is on the panel.
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "core/identity/ScreenUtilities.h"
#include "core/library/ScreenshotItem.h"
#include "core/platform/Panel.h"

namespace quenlio {

class PreviewPanel;
class QuickLookPreviewController;
class ScreenshotStore;
struct IslandOverlayPresentationState;

class IslandKeys {
 public:
  struct Dependencies {
    ScreenshotStore& store;
    IslandOverlayPresentationState& presentationState;
    Panel& panel;
    const Screens& screens;
    QuickLookPreviewController& quickLook;
    PreviewPanel& previewPanel;
    std::function<void()> scheduleHideIfNeeded;
    std::function<void(std::optional<DisplayID>)> show;
    std::function<void(const ScreenshotItem&)> openEditor;
  };
  explicit IslandKeys(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

  // True when the key has been used. While a text field has the keyboard no key is. A button of the island's own window
  // that has the keyboard is pressed by Return, Enter and Space, which do not come here then; all other keys do.
  bool handleKeyEvent(const KeyEvent& event);
  // The preview window on all screenshots, at this one.
  void openQuickLook(const ScreenshotItem& item);

 private:
  enum class Command { rename, quickLook, undo, share, copy, edit, reveal, arrow, trash };
  struct Row;
  static const Row kTable[];

  bool perform(Command command, const KeyEvent& event);
  // Does it to the selected screenshots; false when there are none.
  bool onSelection(void (ScreenshotStore::*operation)());
  bool handleRenameShortcut();
  bool handleQuickLookShortcut();
  bool handleUndoShortcut();
  bool handleEditShortcut();
  bool handleArrowShortcut(int step, bool extendSelection);
  // Whether a key acts on exactly one screenshot.
  [[nodiscard]] bool isOneSelected() const;
  [[nodiscard]] bool isPreviewVisible() const;
  [[nodiscard]] std::vector<FileURL> allFileURLs() const;

  Dependencies dependencies_;
};

}  // namespace quenlio
