// quenlio-gallery FOLDER: pictures of the island's real views in all their states, sizes and appearances, over what may
// be behind them. Writes each as a file of its own, sheets of them, and an index to look at.
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTextStream>
#include <QtGui/QBitmap>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <cstdio>
#include <functional>
#include <map>
#include <random>

#include "core/island/IslandLayoutMetrics.h"

#include "desktop/render/SoftShadow.h"
#include "desktop/views/common/Shapes.h"
#include "desktop/views/island/IslandTheme.h"

#include "tests/desktop/views/Scenes.h"

namespace quenlio {
namespace {

constexpr int kMargin = 44;  // points of the background around the panel

enum class Background { black, white, photograph };
constexpr Background kBackgrounds[] = {Background::black, Background::white, Background::photograph};
constexpr IslandSize kSizes[] = {IslandSize::extraSmall, IslandSize::small, IslandSize::medium, IslandSize::large,
                                 IslandSize::xLarge};
constexpr GlassBacking kBackings[] = {GlassBacking::opaque, GlassBacking::composited, GlassBacking::blurred};

std::string nameOf(Background background) {
  static constexpr const char* names[] = {"black", "white", "photograph"};
  return names[static_cast<std::size_t>(background)];
}

// Something like a market seen from above: full of small things in all colours and of hard edges.
QImage photograph(const QSize& size) {
  QImage image(size, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawImage(image.rect(), sampleCapture(2));
  std::mt19937 random(11);
  const auto any = [&random](double from, double to) { return std::uniform_real_distribution(from, to)(random); };
  painter.setPen(Qt::NoPen);
  for (int thing = 0; thing < size.width() * size.height() / 420; ++thing) {
    painter.setBrush(QColor::fromHsl(static_cast<int>(any(0, 359)), static_cast<int>(any(40, 230)),
                                     static_cast<int>(any(15, 245)), static_cast<int>(any(120, 255))));
    const double reach = any(2, 13);
    const QPointF middle(any(0, size.width()), any(0, size.height()));
    if (any(0, 1) < 0.5) {
      painter.drawEllipse(middle, reach, reach * any(0.4, 1));
    } else {
      painter.drawRect(QRectF(middle, QSizeF(reach * 2, reach)));
    }
  }
  return image;
}

QImage backgroundOf(Background background, const QSize& size) {
  if (background == Background::photograph) {
    static std::map<int, QImage> kept;  // by the side; each is asked for many times
    QImage& seen = kept[size.width()];
    if (seen.isNull()) {
      seen = photograph(size);
    }
    return seen;
  }
  QImage image(size, QImage::Format_RGB32);
  image.fill(background == Background::black ? Qt::black : Qt::white);
  return image;
}

QImage blurred(const QImage& image) {
  const QImage small = image.scaled(image.size() / 14, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                           .scaled(image.size() / 28, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return small.scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// As the panel stands on the desktop.
QImage onBackground(const Scene& scene, Background background) {
  const QImage panel = pictureOf(scene);
  const double side = panel.width() / scene.scale;
  const QSize whole = (QSizeF(side + 2 * kMargin, side + 2 * kMargin) * scene.scale).toSize();
  QImage image = backgroundOf(background, whole);
  image.setDevicePixelRatio(scene.scale);
  const QRectF body(kMargin, kMargin, side, side);
  const double radius = IslandLayoutMetrics::forSize(scene.size).cornerRadius;
  QPainter painter(&image);
  if (scene.backing == GlassBacking::opaque) {
    QBitmap shape(panel.size());
    shape.clear();
    QPainter shaping(&shape);
    shaping.setBrush(Qt::color1);
    shaping.setPen(Qt::NoPen);
    shaping.drawPath(continuousRectanglePath(QRectF(panel.rect()).translated(0, 0), radius * scene.scale));
    shaping.end();
    QPixmap shaped = QPixmap::fromImage(panel);
    shaped.setDevicePixelRatio(1);
    shaped.setMask(shape);
    shaped.setDevicePixelRatio(scene.scale);
    painter.drawPixmap(body.topLeft(), shaped);
    return image;
  }
  if (scene.backing == GlassBacking::blurred) {
    QImage behind = blurred(backgroundOf(background, whole));
    behind.setDevicePixelRatio(scene.scale);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(continuousRectanglePath(body, radius));
    painter.drawImage(QPointF(), behind);
    painter.setClipping(false);
  }
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = radius,
                  .layers = panelShadow(IslandThemeTokens::forAppearance(scene.style, scene.increaseContrast))});
  shadow.paint(painter, body);
  painter.drawImage(body.topLeft(), panel);
  return image;
}

class Gallery {
 public:
  explicit Gallery(const QDir& folder) : folder_(folder) {}

  struct Piece {
    Scene scene;
    Background background;
  };
  // One picture of all pieces, so many in a row, each also in a file of its own.
  void sheet(const std::string& title, const std::vector<Piece>& pieces, int columns) {
    std::vector<QImage> images;
    QSize cell;
    for (const Piece& piece : pieces) {
      const std::string name = nameOf(piece.scene) + "-" + nameOf(piece.background) + ".png";
      images.push_back(onBackground(piece.scene, piece.background));
      images.back().setDevicePixelRatio(1);
      images.back().save(folder_.filePath(QString::fromStdString(name)));
      cell = cell.expandedTo(images.back().size());
    }
    const int rows = (static_cast<int>(images.size()) + columns - 1) / columns;
    QImage all(cell.width() * columns, cell.height() * rows, QImage::Format_RGB32);
    all.fill(QColor(128, 128, 128));
    QPainter painter(&all);
    for (std::size_t index = 0; index < images.size(); ++index) {
      const int column = static_cast<int>(index) % columns;
      painter.drawImage(column * cell.width(), static_cast<int>(index) / columns * cell.height(), images[index]);
    }
    painter.end();
    const QString file = QString::fromStdString("sheet-" + title + ".png");
    all.save(folder_.filePath(file));
    sheets_ << file;
    std::printf("%s: %zu pictures\n", file.toUtf8().constData(), pieces.size());
  }

  void index() const {
    QFile file(folder_.filePath(QStringLiteral("index.html")));
    if (!file.open(QIODevice::WriteOnly)) {
      return;
    }
    QTextStream out(&file);
    out << "<!doctype html><meta charset=utf-8><title>The island</title><style>body{background:#808080;font:14px "
           "sans-serif}img{display:block;margin:8px 0 32px}</style>\n";
    for (const QString& sheet : sheets_) {
      out << "<h2>" << sheet << "</h2><img src=\"" << sheet << "\">\n";
    }
  }

 private:
  QDir folder_;
  QStringList sheets_;
};

std::vector<std::pair<IslandAppearanceStyle, bool>> appearances() {
  return {{IslandAppearanceStyle::light, false},
          {IslandAppearanceStyle::dark, false},
          {IslandAppearanceStyle::light, true},
          {IslandAppearanceStyle::dark, true}};
}

// Every state in every appearance, one sheet a size.
void states(Gallery& gallery) {
  for (const IslandSize size : kSizes) {
    std::vector<Gallery::Piece> pieces;
    for (const auto& [style, contrast] : appearances()) {
      for (const SceneState state : allSceneStates()) {
        pieces.push_back(
            {{.size = size, .style = style, .increaseContrast = contrast, .state = state}, Background::photograph});
      }
    }
    gallery.sheet("states-" + nameOf(size), pieces, static_cast<int>(allSceneStates().size()));
  }
}

// In front of everything, with each kind of glass, one sheet a size.
void backgrounds(Gallery& gallery) {
  for (const IslandSize size : kSizes) {
    std::vector<Gallery::Piece> pieces;
    for (const auto& [style, contrast] : appearances()) {
      for (const GlassBacking backing : kBackings) {
        for (const Background background : kBackgrounds) {
          pieces.push_back({{.size = size,
                             .style = style,
                             .increaseContrast = contrast,
                             .state = SceneState::several,
                             .backing = backing},
                            background});
        }
      }
    }
    gallery.sheet("backgrounds-" + nameOf(size), pieces, 9);
  }
}

// On screens of each density.
void scales(Gallery& gallery) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    std::vector<Gallery::Piece> pieces;
    for (const IslandSize size : {IslandSize::extraSmall, IslandSize::medium}) {
      for (const IslandAppearanceStyle style : {IslandAppearanceStyle::light, IslandAppearanceStyle::dark}) {
        for (const GlassBacking backing : {GlassBacking::opaque, GlassBacking::composited}) {
          pieces.push_back(
              {{.size = size, .style = style, .state = SceneState::ring, .backing = backing, .scale = scale},
               Background::photograph});
        }
      }
    }
    gallery.sheet("scale-" + std::to_string(static_cast<int>(scale * 100)), pieces, 4);
  }
}

}  // namespace
}  // namespace quenlio

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QFont font(QStringLiteral("DejaVu Sans"));
  QApplication::setFont(font);
  if (argc < 2) {
    std::fprintf(stderr, "usage: quenlio-gallery FOLDER [states|backgrounds|scales]\n");
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  const std::string only = argc > 2 ? argv[2] : "";
  QDir().mkpath(folder);
  quenlio::Gallery gallery{QDir(folder)};
  const std::pair<const char*, std::function<void(quenlio::Gallery&)>> parts[] = {
      {"states", quenlio::states}, {"backgrounds", quenlio::backgrounds}, {"scales", quenlio::scales}};
  for (const auto& [name, part] : parts) {
    if (only.empty() || only == name) {
      part(gallery);
    }
  }
  gallery.index();
  return 0;
}
