// The island: one floating panel in a corner of a screen that shows the screenshots. It decides on which display the
// panel is, where it sits, how it appears and leaves. Main thread; made by the composition root on first use, and shown
// at once when the island is enabled.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/identity/ScreenUtilities.h"
#include "core/island/IslandAutoDismiss.h"
#include "core/island/IslandKeys.h"
#include "core/island/IslandOverlayPresentationState.h"
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
  // Gives up the pending hide, the ring and the look at the pointer. What is on the screen stays.
  void endDelayedWork();
  // Moves the panel with the pointer, inside its screen. The translation is that since the gesture began, in points, y
  // growing downward.
  void dragPanel(Size translation, bool ended);

  [[nodiscard]] const Panel& panel() const { return *panel_; }
  [[nodiscard]] const IslandOverlayPresentationState& presentationState() const { return presentationState_; }
  [[nodiscard]] std::optional<DisplayID> lastPresentedDisplayID() const { return lastPresentedDisplayID_; }

  // The panel's place on a screen: a square at the bottom right of the visible frame, 12 points from its edges.
  [[nodiscard]] static Rect<Screen> desiredFrame(const ScreenInfo& screen, IslandSize size);

 private:
  void setupPanel();
  [[nodiscard]] IslandOverlayRootViewModel rootViewModel();
  void bindSettings();
  void sizeChanged(IslandSize size);
  void refreshFolderAccessState();
  void applyAppearanceStyle(bool animated);
  void orderOut();
  void hideFromCloseButton();
  void makeKeyWithContentFirstResponder();
  void hoverChanged(bool hovering);
  void itemDragStateChanged(bool dragging);
  void syncHoverStateWithCurrentPointer();
  void prepareForItemDragInteraction();
  [[nodiscard]] std::optional<ScreenInfo> resolveTargetScreen(std::optional<DisplayID> preferredDisplayID) const;
  [[nodiscard]] std::optional<ScreenInfo> targetScreenForPanelUpdates() const;

  // The editor on the screenshot; what it saves comes back into the library.
  void openEditor(const ScreenshotItem& item);

  Dependencies dependencies_;
  IslandSettings announced_;
  IslandOverlayPresentationState presentationState_;
  std::unique_ptr<Panel> panel_;
  std::optional<IslandAutoDismiss> autoDismiss_;  // these two are set from the constructor on
  std::optional<IslandKeys> keys_;
  std::optional<Point<Screen>> dragStartOrigin_;
  std::optional<DisplayID> lastPresentedDisplayID_;
  ScheduledTask pointerRecheck_;
  Subscription keyDownMonitor_;
  std::vector<Subscription> cancellables_;
  WeakOwner<IslandOverlayController> weak_{this};
};

}  // namespace quenlio
