#include "desktop/linux/session/ShareMenuLook.h"

#include <QtCore/QFile>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QMenu>
#include <cmath>

namespace quenlio {
namespace {

constexpr int kIconSide = 16;

struct Colors {
  const char* body;
  const char* edge;
  const char* text;
  const char* line;
  const char* selected;
};
constexpr Colors kLight{"#fafafc", "#c9cbd1", "#1c1d20", "#e1e2e6", "#2463d6"};
constexpr Colors kDark{"#2a2c31", "#4b4e56", "#f1f2f4", "#42454c", "#3a75de"};

Colors colorsFor(const ShareMenuLook& look) {
  Colors colors = look.isDark ? kDark : kLight;
  if (look.increasesContrast) {
    colors.edge = colors.line = colors.text;
  }
  return colors;
}

// The path of an icon that no theme has, as older programs install theirs.
QString pixmapPath(const QString& name, const std::vector<FileURL>& dataFolders) {
  for (const FileURL& data : dataFolders) {
    const QString base =
        QFile::decodeName(QByteArray::fromStdString(data.appending("pixmaps").path())) + QLatin1Char('/') + name;
    for (const char* ending : {"", ".svg", ".png", ".xpm"}) {
      if (const QString path = base + QLatin1String(ending); QFile::exists(path)) {
        return path;
      }
    }
  }
  return {};
}

QIcon tileWith(const QString& name) {
  const double scale = qGuiApp->devicePixelRatio();
  const int pixels = static_cast<int>(std::lround(kIconSide * scale));
  QPixmap pixmap(pixels, pixels);
  pixmap.setDevicePixelRatio(scale);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  // Told apart by their colours too, each always the same.
  painter.setBrush(QColor::fromHsl(static_cast<int>(qHash(name, 0) % 360), 90, 120));
  painter.drawRoundedRect(QRectF(0, 0, kIconSide, kIconSide), 4, 4);
  QFont font = painter.font();
  font.setPixelSize(10);
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(QRectF(0, 0, kIconSide, kIconSide), Qt::AlignCenter, name.left(1).toUpper());
  painter.end();
  return QIcon(pixmap);
}

}  // namespace

void dress(QMenu& menu, const ShareMenuLook& look) {
  // Corners that nothing blends would be black.
  menu.setAttribute(Qt::WA_TranslucentBackground, look.isBlended);
  const Colors colors = colorsFor(look);
  menu.setStyleSheet(QStringLiteral("QMenu { background: %1; border: 1px solid %2; border-radius: %6px; padding: 5px; }"
                                    "QMenu::item { color: %3; background: transparent; border-radius: 5px;"
                                    " padding: 5px 18px 5px 10px; margin: 0; }"
                                    "QMenu::icon { padding-left: 9px; }"
                                    "QMenu::item:selected { color: white; background: %5; }"
                                    "QMenu::separator { height: 1px; background: %4; margin: 5px 9px; }")
                         .arg(QLatin1String(colors.body), QLatin1String(colors.edge), QLatin1String(colors.text),
                              QLatin1String(colors.line), QLatin1String(colors.selected))
                         .arg(look.isBlended ? 10 : 0));
}

QIcon iconOf(const DesktopEntry& entry, const std::vector<FileURL>& dataFolders) {
  const QString name = QString::fromStdString(entry.icon);
  QIcon icon;
  if (name.startsWith(u'/')) {
    icon = QIcon(name);
  } else if (!name.isEmpty()) {
    icon = QIcon::fromTheme(name);
    if (icon.isNull() || icon.availableSizes().isEmpty()) {
      icon = QIcon(pixmapPath(name, dataFolders));
    }
  }
  return icon.pixmap(kIconSide).isNull() ? tileWith(QString::fromStdString(entry.name)) : icon;
}

}  // namespace quenlio
