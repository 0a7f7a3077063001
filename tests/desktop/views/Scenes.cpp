#include "tests/desktop/views/Scenes.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QEnterEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <algorithm>
#include <cmath>
#include <map>
#include <random>

#include "desktop/views/island/MainPreview.h"

#include "tests/desktop/views/Island.h"

namespace quenlio {
namespace {

constexpr double kDensity = 2;  // of the thumbnails

void windowFrame(QPainter& painter, const QRectF& frame, const QColor& body, const QColor& bar) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 60));
  painter.drawRoundedRect(frame.adjusted(-6, 0, 6, 16), 18, 18);
  painter.setBrush(body);
  painter.drawRoundedRect(frame, 14, 14);
  painter.setBrush(bar);
  painter.drawRoundedRect(QRectF(frame.topLeft(), QSizeF(frame.width(), 56)), 14, 14);
  painter.drawRect(QRectF(frame.left(), frame.top() + 28, frame.width(), 28));
}

void linesOfText(QPainter& painter, const QRectF& room, const QColor& ink, std::mt19937& random) {
  double y = room.top();
  while (y < room.bottom() - 14) {
    double x = room.left();
    const double end = room.left() + room.width() * std::uniform_real_distribution(0.45, 1.0)(random);
    while (x < end - 30) {
      const double word = std::uniform_real_distribution(24.0, 110.0)(random);
      painter.fillRect(QRectF(x, y, std::min(word, end - x), 12), ink);
      x += word + 12;
    }
    y += 28;
  }
}

void paintEditor(QPainter& painter, const QRectF& room, std::mt19937& random) {
  windowFrame(painter, room, QColor(28, 31, 38), QColor(40, 44, 54));
  const QColor inks[] = {QColor(198, 120, 221), QColor(152, 195, 121), QColor(97, 175, 239), QColor(171, 178, 191)};
  for (int column = 0; column < 4; ++column) {
    linesOfText(painter, {room.left() + 40 + column * 90.0, room.top() + 90 + column * 28.0, room.width() * 0.5, 700},
                inks[column], random);
  }
}

void paintDocument(QPainter& painter, const QRectF& room, std::mt19937& random) {
  windowFrame(painter, room, QColor(252, 252, 250), QColor(232, 232, 230));
  painter.fillRect(QRectF(room.left() + 80, room.top() + 110, room.width() * 0.5, 40), QColor(40, 40, 46));
  linesOfText(painter, room.adjusted(80, 190, -80, -60), QColor(150, 150, 156), random);
}

void paintChart(QPainter& painter, const QRectF& room, std::mt19937& random) {
  windowFrame(painter, room, QColor(246, 248, 252), QColor(30, 64, 120));
  for (int bar = 0; bar < 14; ++bar) {
    const double height = std::uniform_real_distribution(80.0, room.height() - 220)(random);
    painter.fillRect(QRectF(room.left() + 70 + bar * 88.0, room.bottom() - 60 - height, 54, height),
                     QColor::fromHsl(205 + bar * 6, 170, 130));
  }
}

void paintLandscape(QPainter& painter, const QSize& size) {
  const double w = size.width();
  const double h = size.height();
  QLinearGradient sky(0, 0, 0, h);
  sky.setColorAt(0, QColor(38, 70, 132));
  sky.setColorAt(0.55, QColor(238, 156, 110));
  sky.setColorAt(1, QColor(250, 214, 160));
  painter.fillRect(QRectF(0, 0, w, h), sky);
  painter.setBrush(QColor(255, 238, 200));
  painter.drawEllipse(QPointF(w * 0.68, h * 0.5), h * 0.09, h * 0.09);
  for (int ridge = 0; ridge < 4; ++ridge) {
    QPolygonF hill{QPointF(0, h)};
    for (int step = 0; step <= 80; ++step) {
      const double x = w * step / 80;
      hill.append({x, h * (0.56 + 0.1 * ridge) - h * 0.05 * std::sin(step * 0.16 * (ridge + 1) + ridge * 2.1) -
                          h * 0.02 * std::sin(step * 0.71 + ridge)});
    }
    hill.append({w, h});
    painter.setBrush(QColor(66 - 14 * ridge, 62 - 12 * ridge, 96 - 17 * ridge));
    painter.drawPolygon(hill);
  }
}

QImage paintedCapture(int number) {
  QImage image(1600, 1000, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  std::mt19937 random(static_cast<std::uint32_t>(number + 1));
  paintLandscape(painter, image.size());
  const QRectF room(150, 110, 1300, 780);
  switch (number % 4) {
    case 0:
      paintEditor(painter, room, random);
      break;
    case 1:
      paintDocument(painter, room, random);
      break;
    case 2:
      break;  // the landscape alone
    default:
      paintChart(painter, room, random);
  }
  painter.end();
  return image;
}

QImage transparentCapture() {
  QImage image(1200, 800, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  std::mt19937 random(3);
  paintDocument(painter, {140, 90, 920, 600}, random);
  return image;
}

// The folder of captures behind a scene: their pictures by name.
class Captures {
 public:
  Captures(Island& island, SceneState state) : island_(island) {
    switch (state) {
      case SceneState::empty:
        return;
      case SceneState::thin:
        add(sampleCapture(0, {6000, 20}));
        return;
      case SceneState::dot:
        add(sampleCapture(0, {1, 1}));
        return;
      case SceneState::transparent:
        add(transparentCapture());
        return;
      case SceneState::one:
        add(sampleCapture(2));
        return;
      case SceneState::broken:
        add(QImage());
        return;
      default:
        for (int number = 11; number >= 0; --number) {
          add(sampleCapture(number));
        }
    }
  }

  void deliver() {
    island_.settle();
    island_.store.items.mutate([this](std::vector<ScreenshotItem>& items) {
      for (ScreenshotItem& item : items) {
        item.thumbnail = thumbnail(pictures_.at(item.fileURL.lastPathComponent()));
      }
    });
    island_.settle();
  }

  void answerRequests() {
    for (std::size_t index = 0; index < island_.requests.size(); ++index) {
      const Island::Request request = island_.requests[index];
      const QImage& source = pictures_.at(request.url.lastPathComponent());
      const QSize size = source.isNull() ? QSize() : source.size().scaled(request.pixels, Qt::KeepAspectRatio);
      request.completion(
          source.isNull() || size.isEmpty()
              ? nullptr
              : std::make_shared<QtImage>(source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                              .convertToFormat(QImage::Format_ARGB32_Premultiplied),
                                          pointsOf(source)));
    }
    island_.requests.clear();
  }

 private:
  void add(const QImage& picture) {
    const std::string name =
        "Screenshot from 2026-11-15 21-" + std::to_string(10 + static_cast<int>(pictures_.size())) + "-33.png";
    pictures_[name] = picture;
    island_.ingest(name);
  }

  static Size pointsOf(const QImage& source) {
    return {static_cast<double>(source.width()), static_cast<double>(source.height())};
  }
  static ImageRef thumbnail(const QImage& source) {
    if (source.isNull()) {
      return nullptr;
    }
    QImage canvas(QSize(280, 220) * kDensity, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    const QSizeF fitted = QSizeF(source.size()).scaled(canvas.size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), fitted);
    place.moveCenter(QRectF(canvas.rect()).center());
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSize whole = fitted.toSize().expandedTo(QSize(1, 1));
    painter.drawImage(place, source.scaled(whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    painter.end();
    return std::make_shared<QtImage>(canvas, Size{280, 220}, place, pointsOf(source));
  }

  Island& island_;
  std::map<std::string, QImage> pictures_;
};

template <class View>
View& find(Island& island) {
  for (QWidget* widget : island.view->findChildren<QWidget*>()) {
    if (auto* view = dynamic_cast<View*>(widget)) {
      return *view;
    }
  }
  throw std::out_of_range("no such view");
}

void enter(QWidget& widget) {
  const QPointF middle = QRectF(widget.rect()).center();
  QEnterEvent event(middle, widget.mapTo(widget.window(), middle), widget.mapToGlobal(middle));
  QCoreApplication::sendEvent(&widget, &event);
}

void press(QWidget& widget) {
  const QPointF middle = QRectF(widget.rect()).center();
  QMouseEvent event(QEvent::MouseButtonPress, middle, widget.mapToGlobal(middle), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &event);
}

void act(Island& island, SceneState state) {
  switch (state) {
    case SceneState::several: {
      const auto& items = island.store.items.get();
      island.store.select(items[0].id);
      island.store.selectedItemIDs.set({items[0].id, items[2].id, items[3].id});
      break;
    }
    case SceneState::hover:
      enter(find<MainPreview>(island));
      enter(*island.button("Share"));
      break;
    case SceneState::holding:
      enter(find<MainPreview>(island));
      press(find<MainPreview>(island));
      break;
    case SceneState::dragging:
      island.root().isExportDragging.set(true);
      break;
    case SceneState::ring:
      island.state.showDismissProgress.set(true);
      island.state.dismissProgress.set(0.62);
      break;
    case SceneState::recovery:
    case SceneState::recoveryHover:
      island.state.screenshotFolderReadable.set(false);
      island.settle();
      if (state == SceneState::recoveryHover) {
        enter(*island.button("Allow Access"));
      }
      break;
    case SceneState::rename:
      island.state.renameRequestToken.set(1);
      break;
    case SceneState::focus:
      find<MainPreview>(island).setFocus(Qt::TabFocusReason);
      break;
    default:
      break;
  }
}

std::vector<Words> wordsOf(const Island& island) {
  std::vector<Words> words;
  for (QWidget* widget : island.view->findChildren<QWidget*>()) {
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* field = qobject_cast<const QLineEdit*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    const QString text = label != nullptr    ? label->text()
                         : field != nullptr  ? field->displayText()
                         : button != nullptr ? button->text()
                                             : QString();
    if (widget->isVisible() && !text.isEmpty()) {
      words.push_back({text.toStdString(), QRect(widget->mapTo(island.view.get(), QPoint()), widget->size())});
    }
  }
  return words;
}

}  // namespace

std::string nameOf(SceneState state) {
  static constexpr const char* names[] = {"empty",    "one",  "several",     "hover",         "holding",
                                          "dragging", "ring", "recovery",    "recoveryHover", "rename",
                                          "thin",     "dot",  "transparent", "broken",        "focus"};
  return names[static_cast<std::size_t>(state)];
}

const std::vector<SceneState>& allSceneStates() {
  using enum SceneState;
  static const std::vector<SceneState> states{empty,    one,  several,     hover,         holding,
                                              dragging, ring, recovery,    recoveryHover, rename,
                                              thin,     dot,  transparent, broken,        focus};
  return states;
}

std::string nameOf(IslandSize size) {
  static constexpr const char* names[] = {"extraSmall", "small", "medium", "large", "xLarge"};
  return names[static_cast<std::size_t>(size)];
}

std::string nameOf(const Scene& scene) {
  std::string name = nameOf(scene.size) + "-" + std::string(rawValue(scene.style)) +
                     (scene.increaseContrast ? "-contrast" : "") + "-" + nameOf(scene.state);
  name += scene.backing == GlassBacking::opaque ? "-opaque" : scene.backing == GlassBacking::blurred ? "-blurred" : "";
  if (scene.scale != 1) {
    name += "@" + std::to_string(static_cast<int>(std::lround(scene.scale * 100)));
  }
  return name;
}

QImage pictureOf(const Scene& scene, std::vector<Words>* words) {
  Island island;
  island.compositor.isThere().set(scene.backing != GlassBacking::opaque);
  island.compositor.blursBehind().set(scene.backing == GlassBacking::blurred);
  island.state.appearanceStyle.set(scene.style);
  island.state.increaseContrast.set(scene.increaseContrast);
  island.setSize(scene.size);
  Captures captures(island, scene.state);
  captures.deliver();
  act(island, scene.state);
  // Twice: what is painted in so many pixels may be asked for anew.
  for (int look = 0; look < 3; ++look) {
    island.platform.time.advanceBy(Seconds(1));
    (void)island.picture(scene.scale);
    captures.answerRequests();
  }
  if (words != nullptr) {
    *words = wordsOf(island);
  }
  return island.picture(scene.scale);
}

QImage sampleCapture(int number, const QSize& size) {
  static std::map<std::pair<int, int>, QImage> kept;  // most are asked for again and again; by number and width
  QImage& captured = kept[{number, size.width()}];
  if (captured.isNull()) {
    const QImage whole = paintedCapture(number);
    captured = size == whole.size() ? whole : whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  }
  return captured;
}

}  // namespace quenlio
