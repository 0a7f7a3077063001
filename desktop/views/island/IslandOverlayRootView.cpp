#include "desktop/views/island/IslandOverlayRootView.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <iterator>
#include <utility>

#include "core/island/IslandOverlayPresentationState.h"
#include "core/library/ScreenshotStore.h"
#include "core/settings/AppSettings.h"

#include "desktop/linux/session/CubicBezier.h"
#include "desktop/views/common/Pixels.h"

namespace quenlio {
namespace {

constexpr IslandSize kSizes[] = {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large,
                                 IslandSize::xLarge};
constexpr Seconds kFadeStep{0.016};
constexpr TimingCurve kEaseOut{{0, 0, 0.58, 1}};

}  // namespace

IslandOverlayRootView::IslandOverlayRootView(const IslandOverlayRootViewModel& model, Shell shell)
    : model_(model),
      shell_(std::move(shell)),
      handle_(this, {.onWindowDrag = model.onWindowDrag, .onClose = model.onClose}),
      preview_(this, shell_.sharpRendition),
      recovery_(this, model.onRequestFolderAccess),
      meta_(this),
      emptyState_(this),
      strip_(this, [&store = model.store](const Uuid& id) { store.select(id); }) {
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(QStringLiteral("Island"));
  observe();
  applyLook();
  refresh();
}

void IslandOverlayRootView::observe() {
  refresh_.emplace(shell_.scheduler, weak_.bind([](IslandOverlayRootView& self) { self.refresh(); }));
  refresh_->watch(model_.store.items);
  refresh_->watch(model_.store.selectedItemID);
  refresh_->watch(model_.store.selectedItemIDs);
  refresh_->watch(model_.settings.islandSize);
  refresh_->watch(model_.presentationState.appearanceStyle);
  refresh_->watch(model_.presentationState.increaseContrast);
  refresh_->watch(model_.presentationState.screenshotFolderReadable);
  refresh_->watch(model_.presentationState.screenshotFolderPath);
}

void IslandOverlayRootView::refresh() {
  const IslandOverlayPresentationState& state = model_.presentationState;
  turnTo(IslandPalette::forAppearance(state.appearanceStyle.get(), state.increaseContrast.get()));
  useMetrics(IslandLayoutMetrics::forSize(model_.settings.islandSize.get()));

  const ScreenshotStore& store = model_.store;
  const ScreenshotItem* selected = store.selectedItem();
  const bool isEmpty = store.items.get().empty();
  const bool isReadable = state.screenshotFolderReadable.get();
  recovery_.setFolderPath(state.screenshotFolderPath.get());
  recovery_.setVisible(!isReadable);
  preview_.setVisible(isReadable);
  preview_.show(selected);
  meta_.setVisible(!isEmpty);
  meta_.show(store.selectedItems().size(),
             selected != nullptr ? std::optional(selected->fileURL.lastPathComponent()) : std::nullopt);
  emptyState_.setVisible(isEmpty);
  strip_.show(
      {.items = store.items.get(), .primary = store.selectedItemID.get(), .selected = store.selectedItemIDs.get()});
}

void IslandOverlayRootView::turnTo(const IslandPalette& palette) {
  if (palette == target_) {
    return;
  }
  target_ = palette;
  origin_ = palette_;
  faded_ = Seconds::zero();
  fade();
  if (palette_ != target_) {
    fade_ = shell_.scheduler.every(kFadeStep, Seconds::zero(),
                                   weak_.bind([](IslandOverlayRootView& self) { self.fade(); }));
  }
}

// The first step, at the very start, changes nothing yet, unless there is no time to take or nobody to see it.
void IslandOverlayRootView::fade() {
  const Seconds whole = model_.presentationState.appearanceTransition;
  const bool isOver = faded_ >= whole || !isVisible();
  palette_ = IslandPalette::between(origin_, target_, isOver ? 1 : progress(kEaseOut, faded_ / whole));
  faded_ += kFadeStep;
  if (isOver) {
    fade_.cancel();
  }
  applyLook();
}

void IslandOverlayRootView::useMetrics(const IslandLayoutMetrics& metrics) {
  if (metrics != metrics_) {
    metrics_ = metrics;
    applyLook();
  }
}

void IslandOverlayRootView::applyLook() {
  handle_.apply(palette_, metrics_);
  preview_.apply(palette_, metrics_);
  recovery_.apply(palette_, metrics_);
  meta_.apply(palette_, metrics_);
  emptyState_.apply(palette_, metrics_);
  strip_.apply(palette_, metrics_);
  layOut();
  if (shell_.onSurfaceChanged) {
    shell_.onSurfaceChanged({.cornerRadius = metrics_.cornerRadius, .tone = palette_.tone});
  }
  update();
}

// Aligned to the top: what the heights leave free of the square lies below the strip.
void IslandOverlayRootView::layOut() {
  const IslandLayoutMetrics& m = metrics_;
  const double left = m.horizontalPadding + m.previewHorizontalInset;
  const double wide = width() - 2 * left;
  const auto place = [left, wide](QWidget& view, double top, double height) {
    view.setGeometry(static_cast<int>(left), static_cast<int>(top), static_cast<int>(wide), static_cast<int>(height));
  };
  double top = m.topPadding;
  place(handle_, top, m.toolbarHeight);
  top += m.toolbarHeight + m.toolbarToPreviewSpacing;
  place(preview_, top, m.previewHeight);
  place(recovery_, top, m.previewHeight);
  top += m.previewHeight + m.previewToMetaSpacing;
  place(meta_, top, m.metadataHeight);
  // With an empty library there is no strip either, and the words may use its room.
  place(emptyState_, top, m.metadataHeight + m.metaToTraySpacing + m.trayHeight);
  top += m.metadataHeight + m.metaToTraySpacing;
  place(strip_, top, m.trayHeight);
}

// The panel's new square comes while the setting is still being announced. The square tells which size it is of, so
// that no frame of one size is painted with the lengths of another.
void IslandOverlayRootView::resizeEvent(QResizeEvent* /*event*/) {
  const auto* size = std::ranges::find(kSizes, static_cast<double>(width()), IslandLayoutMetrics::panelSide);
  if (size != std::end(kSizes)) {
    useMetrics(IslandLayoutMetrics::forSize(*size));
  }
  layOut();
}

void IslandOverlayRootView::enterEvent(QEnterEvent* /*event*/) {
  if (model_.onHoverChanged) {
    model_.onHoverChanged(true);
  }
}

void IslandOverlayRootView::leaveEvent(QEvent* /*event*/) {
  if (model_.onHoverChanged) {
    model_.onHoverChanged(false);
  }
}

void IslandOverlayRootView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF body = snappedToPixels(painter, rect());
  QLinearGradient fill(body.topLeft(), body.bottomLeft());
  fill.setColorAt(0, palette_.bodyTop);
  fill.setColorAt(1, palette_.bodyBottom);
  fillRounded(painter, body, metrics_.cornerRadius, fill);
  QLinearGradient edge(body.topLeft(), body.bottomLeft());
  edge.setColorAt(0, palette_.edgeTop);
  edge.setColorAt(1, palette_.edgeBottom);
  strokeInside(painter, body, metrics_.cornerRadius, edge);
}

}  // namespace quenlio
