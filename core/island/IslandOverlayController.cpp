#include "core/island/IslandOverlayController.h"

#include <chrono>
#include <string>
#include <utility>

#include "core/detection/ScreenshotLocationResolver.h"
#include "core/editor/ScreenshotEditorManager.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandOverlayRootViewModel.h"
#include "core/island/IslandShell.h"
#include "core/island/KeyboardToContent.h"
#include "core/library/QuickLookPreviewController.h"
#include "core/library/ScreenshotStore.h"
#include "core/permissions/OnboardingPermissionService.h"
#include "core/platform/Application.h"
#include "core/platform/FileManager.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr double kEntryRise = 6;  // points
constexpr double kExitSlide = 8;  // points
constexpr Seconds kEntryDuration = 0.12s;
constexpr Seconds kAppearanceTransition = 0.16s;
constexpr TimingCurve kEntryCurve{{0.22, 1.0, 0.36, 1.0}};
constexpr HideMotion kSlideOut{.animated = true};

}  // namespace

IslandOverlayController::IslandOverlayController(Dependencies dependencies)
    : dependencies_(std::move(dependencies)),
      announced_{.islandEnabled = dependencies_.settings.islandEnabled.get(),
                 .islandSize = dependencies_.settings.islandSize.get(),
                 .islandDurationMode = dependencies_.settings.islandDurationMode.get(),
                 .islandDurationSeconds = dependencies_.settings.islandDurationSeconds.get()} {
  const double side = IslandLayoutMetrics::panelSide(announced_.islandSize);
  panel_ = dependencies_.shell.makePanel({{0, 0}, {side, side}});
  placement_.emplace(
      IslandPlacement::Dependencies{.panel = *panel_, .screens = dependencies_.screens, .store = dependencies_.store});
  autoDismiss_.emplace(IslandAutoDismiss::Dependencies{
      .announced = announced_,
      .settings = dependencies_.settings,
      .store = dependencies_.store,
      .presentationState = presentationState_,
      .panel = *panel_,
      .scheduler = dependencies_.scheduler,
      .clock = dependencies_.clock,
      .hide = weak_.bind([](IslandOverlayController& self) { self.hide(kSlideOut); }),
  });
  hover_.emplace(IslandHover::Dependencies{.panel = *panel_,
                                           .screens = dependencies_.screens,
                                           .scheduler = dependencies_.scheduler,
                                           .autoDismiss = *autoDismiss_});
  keys_.emplace(IslandKeys::Dependencies{
      .store = dependencies_.store,
      .presentationState = presentationState_,
      .panel = *panel_,
      .screens = dependencies_.screens,
      .quickLook = dependencies_.quickLook,
      .previewPanel = dependencies_.previewPanel,
      .scheduleHideIfNeeded =
          weak_.bind([](IslandOverlayController& self) { self.autoDismiss_->scheduleHideIfNeeded(); }),
      .show = weak_.bind([](IslandOverlayController& self, std::optional<DisplayID> display) { self.show(display); }),
      .openEditor =
          weak_.bind([](IslandOverlayController& self, const ScreenshotItem& item) { self.openEditor(item); }),
  });
  setupPanel();
  bindSettings();
}

void IslandOverlayController::setupPanel() {
  panel_->setFloatingPanel(true);
  panel_->setLevel(kStatusWindowLevel);
  panel_->setClearBackgroundWithShadow();
  panel_->setCollectionBehavior(kCollectionBehaviorIsland);
  panel_->setHidesOnDeactivate(false);
  panel_->setIgnoresMouseEvents(true);
  panel_->setOnKeyDown(weak_.bindOr(
      false, [](IslandOverlayController& self, const KeyEvent& event) { return self.keys_->handleKeyEvent(event); }));
  dependencies_.shell.setContentView(*panel_, rootViewModel());
  keyDownMonitor_ = dependencies_.eventMonitors.addLocalMonitorForKeyDown(
      weak_.bindOr(false, [](IslandOverlayController& self, const KeyEvent& event) {
        const bool isListening =
            self.panel_->isVisible() && (self.panel_->isKeyWindow() || self.autoDismiss_->isHovered);
        return isListening && self.keys_->handleKeyEvent(event);
      }));
  hide({});
}

IslandOverlayRootViewModel IslandOverlayController::rootViewModel() {
  using Self = IslandOverlayController;
  return {
      .store = dependencies_.store,
      .settings = dependencies_.settings,
      .presentationState = presentationState_,
      .dragDrop = dependencies_.dragDrop,
      .scheduler = dependencies_.scheduler,
      .clock = dependencies_.clock,
      .onHoverChanged = weak_.bind([](Self& self, bool hovering) { self.hover_->changed(hovering); }),
      .onPointerFreed = weak_.bind([](Self& self) { self.hover_->syncWithCurrentPointer(); }),
      .onClose = weak_.bind([](Self& self) { self.hideFromCloseButton(); }),
      .onOpenQuickLook = weak_.bind([](Self& self, const ScreenshotItem& item) { self.keys_->openQuickLook(item); }),
      .onPrepareQuickLook = weak_.bind(
          [](Self& self, const ScreenshotItem& item) { self.dependencies_.quickLook.prepare(item.fileURL); }),
      .onDropPreparedQuickLook = weak_.bind([](Self& self) { self.dependencies_.quickLook.dropPrepared(); }),
      .onOpenEditor = weak_.bind([](Self& self, const ScreenshotItem& item) { self.openEditor(item); }),
      .onWindowDrag = weak_.bind([](Self& self, Size translation, bool ended) { self.dragPanel(translation, ended); }),
      .onItemDragStateChanged = weak_.bind([](Self& self, bool dragging) { self.itemDragStateChanged(dragging); }),
      .onRequestNewScreenshot = weak_.bind([](Self& self) {
        self.dependencies_.onRequestNewScreenshot();
        self.hide(kSlideOut);
      }),
      .onRequestFolderAccess = weak_.bind([](Self& self) {
        self.dependencies_.onRequestFolderAccess();
        self.refreshFolderAccessState();
      }),
  };
}

void IslandOverlayController::bindSettings() {
  using Self = IslandOverlayController;
  AppSettings& settings = dependencies_.settings;
  cancellables_.push_back(settings.islandEnabled.subscribe(weak_.bind([](Self& self, bool enabled) {
    self.announced_.islandEnabled = enabled;
    if (enabled) {
      self.show(ScreenUtilities::activeDisplayID(self.dependencies_.screens));
    } else {
      self.hide(kSlideOut);
    }
  })));
  cancellables_.push_back(
      settings.islandSize.subscribe(weak_.bind([](Self& self, IslandSize size) { self.sizeChanged(size); })));
  cancellables_.push_back(settings.islandDurationMode.subscribe(weak_.bind([](Self& self, IslandDurationMode mode) {
    self.announced_.islandDurationMode = mode;
    self.autoDismiss_->scheduleHideIfNeeded();
  })));
  cancellables_.push_back(settings.islandDurationSeconds.subscribe(weak_.bind([](Self& self, double seconds) {
    self.announced_.islandDurationSeconds = seconds;
    self.autoDismiss_->scheduleHideIfNeeded();
  })));
  const auto changed = weak_.bind([](Self& self) { self.applyAppearanceStyle(true); });
  cancellables_.push_back(dependencies_.appearance.observeEffectiveAppearance(changed));
  cancellables_.push_back(dependencies_.appearance.observeAccessibilityDisplayOptions(changed));
  applyAppearanceStyle(false);
}

void IslandOverlayController::sizeChanged(IslandSize size) {
  announced_.islandSize = size;
  const auto screen = panel_->isVisible() ? placement_->targetScreenForPanelUpdates() : std::nullopt;
  if (screen) {
    placement_->lastPresentedDisplayID = ScreenUtilities::displayID(*screen);
    panel_->setFrame(IslandPlacement::desiredFrame(*screen, size));
    applyAppearanceStyle(false);
  }
}

void IslandOverlayController::show(std::optional<DisplayID> preferredDisplayID) {
  if (!announced_.islandEnabled) {
    return;
  }
  refreshFolderAccessState();
  const auto screen = placement_->resolveTargetScreen(preferredDisplayID);
  if (!screen) {
    return;
  }
  placement_->lastPresentedDisplayID = ScreenUtilities::displayID(*screen);
  const Rect<Screen> frame = IslandPlacement::desiredFrame(*screen, announced_.islandSize);
  const bool wasVisible = panel_->isVisible();
  panel_->setCollectionBehavior(kCollectionBehaviorIsland);
  panel_->setLevel(kStatusWindowLevel);
  panel_->setIgnoresMouseEvents(false);
  if (wasVisible) {
    panel_->setFrame(frame);
  } else {
    panel_->setFrame(frame.moved(0, -kEntryRise));
    panel_->setAlphaValue(0);
    panel_->orderFrontRegardless();
    panel_->runAnimationGroup({.duration = kEntryDuration, .curve = kEntryCurve, .alpha = 1.0, .frame = frame}, {});
  }
  panel_->makeKeyAndOrderFront();
  panel_->invalidateShadow();
  giveKeyboardToContent(*panel_);
  applyAppearanceStyle(false);
  hover_->syncWithCurrentPointer();
  if (!wasVisible) {
    hover_->syncAfterEntry();
  }
  autoDismiss_->scheduleHideIfNeeded();
}

void IslandOverlayController::hide(const HideMotion& motion) {
  autoDismiss_->disarm();
  if (!motion.animated || !panel_->isVisible()) {
    orderOut();
    return;
  }
  const Rect<Screen> target = panel_->frame().moved(0, motion.shouldSlide ? -kExitSlide : 0);
  panel_->runAnimationGroup({.duration = motion.duration, .curve = kEaseIn, .alpha = 0, .frame = target},
                            weak_.bind([](IslandOverlayController& self) {
                              self.orderOut();
                              self.panel_->setAlphaValue(1.0);
                            }));
}

// Going, the panel lets go of what the pointer holds, which arms the hiding once more.
void IslandOverlayController::orderOut() {
  panel_->orderOut();
  panel_->setIgnoresMouseEvents(true);
  autoDismiss_->disarm();
}

void IslandOverlayController::endDelayedWork() {
  autoDismiss_->end();
  hover_->end();
}

void IslandOverlayController::hideFromCloseButton() {
  autoDismiss_->isHovered = false;
  autoDismiss_->isWindowDragging = false;
  autoDismiss_->isItemDragging = false;
  dragStartOrigin_.reset();
  hide(kSlideOut);
}

void IslandOverlayController::dragPanel(Size translation, bool ended) {
  if (!panel_->isVisible()) {
    return;
  }
  if (!dragStartOrigin_) {
    dragStartOrigin_ = panel_->frame().origin;
    autoDismiss_->isWindowDragging = true;
    autoDismiss_->disarm();
  }
  Point<Screen> origin{dragStartOrigin_->x + translation.width, dragStartOrigin_->y - translation.height};
  if (const auto screen = panel_->screen()) {
    origin = clampedOrigin(origin, panel_->frame().size, screen->visibleFrame);
  }
  panel_->setFrameOrigin(origin);
  if (!ended) {
    return;
  }
  dragStartOrigin_.reset();
  const auto screen = panel_->screen();
  if (const auto displayID = screen ? ScreenUtilities::displayID(*screen) : std::nullopt) {
    placement_->lastPresentedDisplayID = displayID;
    dependencies_.settings.displayPositions[std::to_string(*displayID)] = {origin.x, origin.y};
    dependencies_.settings.storePositions();
  }
  autoDismiss_->isWindowDragging = false;
  autoDismiss_->scheduleHideIfNeeded();
}

void IslandOverlayController::itemDragStateChanged(bool dragging) {
  autoDismiss_->isItemDragging = dragging;
  if (dragging) {
    prepareForItemDragInteraction();
    autoDismiss_->disarm();
  } else {
    autoDismiss_->scheduleHideIfNeeded();
  }
}

void IslandOverlayController::prepareForItemDragInteraction() {
  dependencies_.application.activateIgnoringOtherApps();
  panel_->makeKeyAndOrderFront();
  panel_->invalidateShadow();
  giveKeyboardToContent(*panel_);
}

void IslandOverlayController::applyAppearanceStyle(bool animated) {
  const Appearance& appearance = dependencies_.appearance;
  const auto style = appearance.isDarkAqua() ? IslandAppearanceStyle::dark : IslandAppearanceStyle::light;
  const bool contrast = appearance.accessibilityDisplayShouldIncreaseContrast();
  if (style == presentationState_.appearanceStyle.get() && contrast == presentationState_.increaseContrast.get()) {
    return;
  }
  presentationState_.appearanceTransition = animated ? kAppearanceTransition : Seconds::zero();
  presentationState_.appearanceStyle.set(style);
  presentationState_.increaseContrast.set(contrast);
}

void IslandOverlayController::refreshFolderAccessState() {
  const FileURL folder = dependencies_.locations.resolveFolder(dependencies_.settings);
  presentationState_.screenshotFolderReadable.set(
      OnboardingPermissionService::isReadableFolder(dependencies_.files, folder));
  presentationState_.screenshotFolderPath.set(folder.path());
}

void IslandOverlayController::openEditor(const ScreenshotItem& item) {
  auto refresh = weak_.bind(
      [](IslandOverlayController& self, const FileURL& url) { self.dependencies_.store.refreshEditedScreenshot(url); });
  dependencies_.editors.open(item.fileURL, [refresh, &scheduler = dependencies_.scheduler](const FileURL& url) {
    scheduler.post([refresh, url] { refresh(url); });
  });
}

}  // namespace quenlio
