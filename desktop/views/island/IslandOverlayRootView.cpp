#include "desktop/views/island/IslandOverlayRootView.h"

#include <QtGui/QCursor>
#include <QtGui/QPainter>
#include <utility>

#include "core/island/IslandLayout.h"
#include "core/island/IslandOverlayPresentationState.h"
#include "core/island/IslandTexts.h"
#include "core/library/ScreenshotStore.h"
#include "core/settings/AppSettings.h"

#include "desktop/views/common/QtColor.h"

namespace quenlio {

IslandOverlayRootView::IslandOverlayRootView(const IslandOverlayRootViewModel& model, Shell shell)
    : model_(model),
      shell_(std::move(shell)),
      themeShare_(model.scheduler, model.clock, 1, weak_.bind([](IslandOverlayRootView& self) { self.applyLook(); })),
      containerOpacity_(model.scheduler, model.clock, 1, weak_.bind([](IslandOverlayRootView& self) {
        self.glass_.setContainerOpacity(self.containerOpacity_.value());
      })),
      size_(model.settings.islandSize.get()),
      root_({.store = model.store,
             .dragDrop = model.dragDrop,
             .scheduler = model.scheduler,
             .onOpenEditor = model.onOpenEditor,
             .onItemDragStateChanged =
                 weak_.bind([](IslandOverlayRootView& self, bool dragging) { self.itemDragStateChanged(dragging); })}),
      tooltips_(this, model.scheduler, model.clock),
      toolbar_(this, tooltips_, model.clock,
               {.onCopy = [&root = root_] { root.copy(); },
                .onEdit = [&root = root_] { root.edit(); },
                .onShare = [&root = root_] { root.share(); },
                .onViewInFolder = [&root = root_] { root.viewInFolder(); },
                .onTrash = [&root = root_] { root.trash(); },
                .onClose = model.onClose,
                .onWindowDrag = model.onWindowDrag}),
      preview_(this, model.scheduler, model.clock, shell_.sharpRendition,
               {.onOpenQuickLook = model.onOpenQuickLook,
                .onPrepareQuickLook = model.onPrepareQuickLook,
                .onDropPreparedQuickLook = model.onDropPreparedQuickLook,
                .onOpenEditor = model.onOpenEditor,
                .onStartItemDrag = [&root = root_](const ScreenshotItem& item) { (void)root.beginItemDrag(item); },
                .onHoldStateChanged = [&root = root_](bool holding) { root.isPreviewHolding.set(holding); }}),
      recovery_(this, tooltips_, model.onRequestFolderAccess),
      meta_(this, tooltips_, model.clock,
            [&store = model.store](const ScreenshotItem& item, std::string_view newName) {
              return store.rename(item, newName);
            }),
      emptyState_(this),
      strip_(
          this, model.scheduler, model.clock,
          {.onSelect = [&root = root_](const ScreenshotItem& item, ModifierFlags flags) { root.select(item, flags); },
           .onStartItemDrag = [&root = root_](const ScreenshotItem& item) { return root.beginItemDrag(item); }}),
      glass_(this),
      popupEnd_(weak_.bind([](IslandOverlayRootView& self) { self.pointerFreed(); })) {
  setFocusPolicy(Qt::ClickFocus);  // no stop of the Tab key, where nothing would be seen
  setAccessibleName(QString::fromUtf8(IslandTexts::kIsland));
  observe();
}

IslandOverlayRootView::~IslandOverlayRootView() {
  weak_.letGo();
}

void IslandOverlayRootView::observe() {
  refresh_.emplace(model_.scheduler, weak_.bind([](IslandOverlayRootView& self) { self.refresh(); }));
  refresh_->watch(model_.store.items);
  refresh_->watch(model_.store.selectedItemID);
  refresh_->watch(model_.store.selectedItemIDs);
  refresh_->watch(model_.presentationState.appearanceStyle);
  refresh_->watch(model_.presentationState.increaseContrast);
  refresh_->watch(model_.presentationState.screenshotFolderReadable);
  refresh_->watch(model_.presentationState.screenshotFolderPath);
  refresh_->watch(shell_.compositor.isThere());
  refresh_->watch(shell_.compositor.blursBehind());
  refresh_->watch(root_.isExportDragging);
  refresh_->watch(root_.isPreviewHolding);
  // Not on the next turn: what is typed after the key that asks for a rename must find the field. The present token,
  // announced at once, shows everything for the first time.
  renameRequests_ = model_.presentationState.renameRequestToken.subscribe(
      weak_.bind([](IslandOverlayRootView& self, std::int64_t token) {
        self.renameRequestToken_ = token;
        self.refresh();
      }));
  // At once, and as it is announced: the panel's new square comes while it still is, and no frame of one size is to be
  // painted with the lengths of another.
  sizeChange_ = model_.settings.islandSize.subscribe(
      weak_.bind([](IslandOverlayRootView& self, IslandSize size) { self.useSize(size); }));
  countdown_.emplace(model_.scheduler, weak_.bind([](IslandOverlayRootView& self) { self.refreshCountdown(); }));
  countdown_->watch(model_.presentationState.dismissProgress);
  countdown_->watch(model_.presentationState.showDismissProgress);
}

void IslandOverlayRootView::refreshCountdown() {
  const IslandOverlayPresentationState& state = model_.presentationState;
  toolbar_.showDismissProgress(state.showDismissProgress.get() ? std::optional(state.dismissProgress.get())
                                                               : std::nullopt);
}

void IslandOverlayRootView::refresh() {
  const IslandOverlayPresentationState& state = model_.presentationState;
  turnTo(IslandTheme::forAppearance(state.appearanceStyle.get(), state.increaseContrast.get(), backing()));

  const ScreenshotStore& store = model_.store;
  const ScreenshotItem* selected = store.selectedItem();
  const bool isEmpty = store.items.get().empty();
  const bool isReadable = state.screenshotFolderReadable.get();
  toolbar_.setHasSelectedItem(selected != nullptr);
  recovery_.setFolderPath(state.screenshotFolderPath.get());
  recovery_.setVisible(!isReadable);
  preview_.setVisible(isReadable);
  preview_.show(selected);
  preview_.setIsDraggingOut(root_.isExportDragging.get());
  meta_.show({.selectedItem = selected,
              .selectedCount = store.selectedItems().size(),
              .items = store.items.get(),
              .renameRequestToken = renameRequestToken_});
  meta_.setVisible(!isEmpty);
  emptyState_.setVisible(isEmpty);
  strip_.setVisible(!isEmpty);
  refreshContainerOpacity();
  strip_.show({.items = store.items.get(),
               .selectedItemID = store.selectedItemID.get(),
               .selectedItemIDs = store.selectedItemIDs.get(),
               .isDraggingOut = root_.isExportDragging.get()});
}

GlassBacking IslandOverlayRootView::backing() const {
  if (!shell_.compositor.isThere().get()) {
    return GlassBacking::opaque;
  }
  return shell_.compositor.blursBehind().get() ? GlassBacking::blurred : GlassBacking::composited;
}

// A view that nobody sees is there at once.
void IslandOverlayRootView::turnTo(const IslandTheme& theme) {
  if (theme != target_ || !surface_) {
    target_ = theme;
    origin_ = theme_;
    const Seconds duration = model_.presentationState.appearanceTransition;
    if (isVisible() && duration > Seconds::zero()) {
      themeShare_.jumpTo(0);
      themeShare_.animateTo(1, TimedCurve{kEaseOut, duration});
    } else {
      themeShare_.jumpTo(1);
      applyLook();
    }
  }
}

void IslandOverlayRootView::refreshContainerOpacity() {
  const IslandMotion::Container now{.isExportDragging = root_.isExportDragging.get(),
                                    .isPreviewHolding = root_.isPreviewHolding.get()};
  const IslandMotion::Container before = std::exchange(container_, now);
  if (isVisible()) {
    containerOpacity_.animateTo(root_.containerOpacity(), IslandMotion::ofContainer(before, now));
  } else {
    containerOpacity_.jumpTo(root_.containerOpacity());
  }
}

void IslandOverlayRootView::useSize(IslandSize size) {
  if (size != size_) {
    size_ = size;
    metrics_ = IslandLayoutMetrics::forSize(size);
    applyLook();
  }
}

void IslandOverlayRootView::applyLook() {
  theme_ = IslandTheme::between(origin_, target_, themeShare_.value());
  toolbar_.apply(theme_.tokens, metrics_);
  preview_.apply(theme_, metrics_);
  recovery_.apply(theme_, size_);
  meta_.apply(theme_.tokens, size_);
  emptyState_.apply(theme_.tokens, size_);
  strip_.apply(theme_.tokens, metrics_);
  glass_.apply(theme_, metrics_.cornerRadius);
  layOut();
  tellSurface();
  update();
}

// The shadow is that of where the theme is going: it would have to be rendered at every step for hardly a difference.
void IslandOverlayRootView::tellSurface() {
  Color tone = theme_.material.hudWindow;
  tone.alpha = 1;
  const PanelSurface surface{
      .cornerRadius = metrics_.cornerRadius, .tone = toQColor(tone), .shadow = panelShadow(target_.tokens)};
  if (shell_.onSurfaceChanged && surface != surface_) {
    shell_.onSurfaceChanged(surface);
  }
  surface_ = surface;
}

void IslandOverlayRootView::layOut() {
  const IslandLayout layout = islandLayout(metrics_, IslandLayoutMetrics::panelSide(size_));
  const auto place = [](QWidget& view, const Rect<IslandContent>& rect) {
    view.setGeometry(static_cast<int>(rect.minX()), static_cast<int>(rect.minY()), static_cast<int>(rect.size.width),
                     static_cast<int>(rect.size.height));
  };
  place(toolbar_, layout.toolbar);
  place(preview_, layout.preview);
  place(recovery_, layout.preview);
  place(meta_, layout.nameRow);
  place(emptyState_, layout.emptyState);
  place(strip_, layout.tray);
  glass_.setGeometry(rect());
}

void IslandOverlayRootView::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
}

void IslandOverlayRootView::enterEvent(QEnterEvent* /*event*/) {
  if (model_.onHoverChanged) {
    model_.onHoverChanged(true);
  }
}

// A menu that opens takes the pointer from the island that it rests on. That is no leaving: who chooses in the menu is
// still at work with the island.
void IslandOverlayRootView::leaveEvent(QEvent* /*event*/) {
  const bool isOnIsland = rect().contains(mapFromGlobal(QCursor::pos()));
  if (isOnIsland && popupEnd_.isAwaited()) {
    return;
  }
  if (model_.onHoverChanged) {
    model_.onHoverChanged(false);
  }
}

// The toolkit does not always tell where the pointer has come to in a drag.
void IslandOverlayRootView::itemDragStateChanged(bool dragging) {
  model_.onItemDragStateChanged(dragging);
  if (!dragging) {
    pointerFreed();
  }
}

void IslandOverlayRootView::pointerFreed() {
  if (model_.onPointerFreed) {
    model_.onPointerFreed();
  }
}

void IslandOverlayRootView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  glass_.paintBody(painter);
}

}  // namespace quenlio
