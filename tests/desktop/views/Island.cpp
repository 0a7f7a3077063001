#include "tests/desktop/views/Island.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <algorithm>
#include <stdexcept>

namespace quenlio {
namespace {

constexpr const char* kFolder = "/home/user/Desktop/";

}  // namespace

ImageRef plainImage(const QSize& pixels, const QColor& colour) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(colour);
  return std::make_shared<QtImage>(image,
                                   Size{static_cast<double>(pixels.width()), static_cast<double>(pixels.height())});
}

Island::Island() {
  view = std::make_unique<IslandOverlayRootView>(
      IslandOverlayRootViewModel{
          .store = store,
          .settings = settings,
          .presentationState = state,
          .dragDrop = dragDrop,
          .scheduler = platform.time,
          .clock = platform.time,
          .onHoverChanged = [this](bool hovering) { hovers.push_back(hovering); },
          .onPointerFreed = [this] { ++pointerReleases; },
          .onClose = [this] { ++closes; },
          .onOpenQuickLook =
              [this](const ScreenshotItem& item) { quickLooks.push_back(item.fileURL.lastPathComponent()); },
          .onPrepareQuickLook = [this](const ScreenshotItem& item) { prepared = item.fileURL.lastPathComponent(); },
          .onDropPreparedQuickLook = [this] { prepared.reset(); },
          .onOpenEditor = [this](const ScreenshotItem& item) { editors.push_back(item.fileURL.lastPathComponent()); },
          .onWindowDrag = [this](Size moved, bool ended) { drags.emplace_back(moved, ended); },
          .onItemDragStateChanged = [this](bool dragging) { itemDrags.push_back(dragging); },
          .onRequestNewScreenshot = {},
          .onRequestFolderAccess = [this] { ++folderRequests; }},
      IslandOverlayRootView::Shell{
          .compositor = compositor,
          .sharpRendition =
              [this](const FileURL& url, QSize pixels, std::function<void(const ImageRef&)> completion) {
                const std::size_t index = requests.size();
                requests.push_back({url, pixels, std::move(completion)});
                return Subscription([this, index] { requests[index].isEnded = true; });
              },
          .onSurfaceChanged = [this](const PanelSurface& surface) { surfaces.push_back(surface); }});
  setSize(settings.islandSize.get());
  view->show();
  settle();
}

void Island::ingest(const std::string& name) {
  platform.time.advanceBy(Seconds(1));  // so that their dates differ
  platform.files.write(kFolder + name);
  store.ingestScreenshot(FileURL(kFolder + name), std::nullopt);
}

void Island::giveThumbnails(const QColor& colour, const QSize& canvas, const QSize& picture, double density,
                            Size ownSize) {
  settle();  // the fake renderer's own answers come first, which hold no pixels
  QImage image(canvas, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  const QRect place(QPoint((canvas.width() - picture.width()) / 2, (canvas.height() - picture.height()) / 2), picture);
  QPainter painter(&image);
  painter.fillRect(place, colour);
  painter.end();
  image.setDevicePixelRatio(density);
  store.items.mutate([&image, &place, ownSize](std::vector<ScreenshotItem>& items) {
    for (ScreenshotItem& item : items) {
      item.thumbnail = std::make_shared<QtImage>(image, Size{280, 220}, place, ownSize);
    }
  });
}

const ScreenshotItem& Island::item(const std::string& name) const {
  const auto& items = store.items.get();
  const auto found = std::ranges::find(items, name, [](const auto& item) { return item.fileURL.lastPathComponent(); });
  if (found == items.end()) {
    throw std::out_of_range(name);
  }
  return *found;
}

void Island::setSize(IslandSize size) {
  settings.islandSize.set(size);
  const int side = static_cast<int>(IslandLayoutMetrics::panelSide(size));
  view->resize(side, side);
}

void Island::settle() {
  platform.time.runReady();
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::vector<std::string> Island::words() const {
  std::vector<std::string> words;
  for (const QWidget* widget : view->findChildren<QWidget*>()) {
    if (!widget->isVisible()) {
      continue;
    }
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    for (const QString& text : {widget->accessibleName(), label != nullptr ? label->text() : QString(),
                                button != nullptr ? button->text() : QString()}) {
      if (!text.isEmpty()) {
        words.push_back(text.toStdString());
      }
    }
  }
  return words;
}

bool Island::says(const std::string& text) const {
  const auto all = words();
  return std::ranges::find(all, text) != all.end();
}

QAbstractButton* Island::button(const std::string& name) const {
  for (QAbstractButton* candidate : view->findChildren<QAbstractButton*>()) {
    if (candidate->isVisible() &&
        (candidate->accessibleName().toStdString() == name || candidate->text().toStdString() == name)) {
      return candidate;
    }
  }
  return nullptr;
}

QImage Island::picture(double scale) {
  settle();
  QImage image((QSizeF(view->size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  view->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
  return image;
}

}  // namespace quenlio
