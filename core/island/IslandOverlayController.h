// The island: one floating panel in a corner of a screen that shows the screenshots. It decides how the panel appears,
// moves and leaves, and what the settings mean for it. Main thread; made by the composition root on first use, and
// shown at once when the island is enabled.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/identity/ScreenUtilities.h"
#include "core/island/IslandAutoDismiss.h"
#include "core/island/IslandHover.h"
#include "core/island/IslandKeys.h"
#include "core/island/IslandOverlayPresentationState.h"
#include "core/island/IslandPlacement.h"
#include "core/platform/Panel.h"

namespace quenlio {

class Appearance;
class Application;
class DragDropProvider;
class FileManager;
class IslandShell;
class PreviewPanel;
class QuickLookPreviewController;
class ScreenshotEditorManager;
class ScreenshotLocationResolver;
struct IslandOverlayRootViewModel;
struct ScreenshotItem;

// How the panel leaves.
struct HideMotion {
  bool animated = false;
  Seconds duration{0.12};
  bool shouldSlide = true;
};

class IslandOverlayController {
 public:
  struct Dependencies {
    AppSettings& settings;
    ScreenshotStore& store;
    IslandShell& shell;
    const Screens& screens;
    Scheduler& scheduler;
    const Clock& clock;
    Application& application;
    Appearance& appearance;
    EventMonitors& eventMonitors;
    DragDropProvider& dragDrop;
    QuickLookPreviewController& quickLook;
    PreviewPanel& previewPanel;
    ScreenshotEditorManager& editors;
    const FileManager& files;
    const ScreenshotLocationResolver& locations;
    std::function<void()> onRequestNewScreenshot;
    std::function<void()> onRequestFolderAccess;
  };

  explicit IslandOverlayController(Dependencies dependencies);
  IslandOverlayController(const IslandOverlayController&) = delete;
  IslandOverlayController& operator=(const IslandOverlayController&) = delete;

  // Brings the panel up at its corner, on the preferred display or the one under the pointer. A panel that is up
  // already goes back to the corner. Nothing happens while the island is switched off, or without a screen.
  void show(std::optional<DisplayID> preferredDisplayID);
  void hide(const HideMotion& motion);
  // Gives up the pending hide, the ring and the looks at the pointer, for good. What is on the screen stays.
  void endDelayedWork();
  // Moves the panel with the pointer, inside its screen. The translation is that since the gesture began, in points, y
  // growing downward.
  void dragPanel(Size translation, bool ended);

  [[nodiscard]] const Panel& panel() const { return *panel_; }
  [[nodiscard]] const IslandOverlayPresentationState& presentationState() const { return presentationState_; }
  [[nodiscard]] std::optional<DisplayID> lastPresentedDisplayID() const { return placement_->lastPresentedDisplayID; }

 private:
  void setupPanel();
  [[nodiscard]] IslandOverlayRootViewModel rootViewModel();
  void bindSettings();
  void sizeChanged(IslandSize size);
  void refreshFolderAccessState();
  void applyAppearanceStyle(bool animated);
  void orderOut();
  void hideFromCloseButton();
  void itemDragStateChanged(bool dragging);
  void prepareForItemDragInteraction();

  // The editor on the screenshot; what it saves comes back into the library.
  void openEditor(const ScreenshotItem& item);

  Dependencies dependencies_;
  IslandSettings announced_;
  IslandOverlayPresentationState presentationState_;
  std::unique_ptr<Panel> panel_;
  std::optional<IslandPlacement> placement_;  // these four are set from the constructor on
  std::optional<IslandAutoDismiss> autoDismiss_;
  std::optional<IslandHover> hover_;
  std::optional<IslandKeys> keys_;
  std::optional<Point<Screen>> dragStartOrigin_;
  Subscription keyDownMonitor_;
  std::vector<Subscription> cancellables_;
  WeakOwner<IslandOverlayController> weak_{this};
};

}  // namespace quenlio
