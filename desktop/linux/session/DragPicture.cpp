#include "desktop/linux/session/DragPicture.h"

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <algorithm>
#include <cmath>

#include "desktop/linux/system/DesktopEntries.h"
#include "desktop/render/QtImage.h"
#include "desktop/render/SoftShadow.h"

namespace quenlio {
namespace {

constexpr double kCornerRadius = 6;
constexpr double kHairline = 0.5;
constexpr double kBadgeHeight = 20;

QRectF framesOf(const std::vector<DraggingItem>& items) {
  QRectF all;
  for (const DraggingItem& item : items) {
    // y turned downward; the place where it begins does not matter here.
    all |= QRectF(item.frame.minX(), -item.frame.maxY(), item.frame.size.width, item.frame.size.height);
  }
  return all;
}

// The part of the source that fills a frame of this shape, from its middle.
QRectF filling(const QRectF& source, const QSizeF& frame) {
  const QSizeF size = frame.scaled(source.size(), Qt::KeepAspectRatio);
  return {source.center() - QPointF(size.width(), size.height()) / 2, size};
}

// A sheet with a folded corner, where there is no picture and the desktop has no icon.
void drawSheet(QPainter& painter, const QRectF& card) {
  const double fold = card.width() / 4;
  const QPointF top(card.right() - fold, card.top());
  const QPointF bottom(card.right(), card.top() + fold);
  painter.fillRect(card, QColor(0xf4f5f7));
  QPainterPath folded(top);
  folded.lineTo(bottom);
  folded.lineTo(top + QPointF(0, fold));
  folded.closeSubpath();
  painter.fillPath(folded, QColor(0xd3d7de));
  for (int line = 1; line <= 3; ++line) {
    const double y = card.top() + card.height() * (0.32 + 0.16 * line);
    painter.fillRect(QRectF(card.left() + card.width() * 0.2, y, card.width() * (line < 3 ? 0.6 : 0.36), 3),
                     QColor(0xb4bac6));
  }
}

// The desktop's icon of the file's type, or of its kind.
QIcon iconOf(const FileURL& file) {
  const FileType type = fileTypeOf(file);
  for (const std::string& name : type) {
    const QIcon icon = QIcon::fromTheme(QString::fromStdString(name).replace(u'/', u'-'));
    if (!icon.isNull()) {
      return icon;
    }
  }
  const bool isPicture = type.front().starts_with("image/");
  return QIcon::fromTheme(isPicture ? QStringLiteral("image-x-generic") : QStringLiteral("x-office-document"));
}

void drawContents(QPainter& painter, const DraggingItem& item, const QRectF& card) {
  const auto* picture = dynamic_cast<const QtImage*>(item.image.get());
  if (picture != nullptr && !picture->picture().isEmpty()) {
    painter.fillRect(card, Qt::white);  // behind what is clear in the picture
    painter.drawImage(card, picture->image(), filling(picture->picture(), card.size()));
    return;
  }
  const QIcon icon = iconOf(item.fileURL);
  if (icon.isNull()) {
    drawSheet(painter, card);
  } else {
    painter.fillRect(card, Qt::white);
    icon.paint(&painter, card.adjusted(8, 8, -8, -8).toRect());
  }
}

void drawCard(QPainter& painter, const DraggingItem& item, const QRectF& card) {
  QPainterPath body;
  body.addRoundedRect(card, kCornerRadius, kCornerRadius);
  painter.save();
  painter.setClipPath(body);
  drawContents(painter, item, card);
  painter.restore();
  painter.strokePath(body, QPen(QColor(0, 0, 0, 60), kHairline));
}

void drawBadge(QPainter& painter, std::size_t count, QPointF corner) {
  const QString text = QString::number(count);
  QFont font;
  font.setPixelSize(12);
  font.setBold(true);
  painter.setFont(font);
  const double width = std::max(kBadgeHeight, painter.fontMetrics().horizontalAdvance(text) + 12.0);
  const QRectF badge(corner.x() - width * 0.6, corner.y() - kBadgeHeight * 0.4, width, kBadgeHeight);
  painter.setPen(QPen(Qt::white, 1.5));
  painter.setBrush(QColor(0xd93025));
  painter.drawRoundedRect(badge, kBadgeHeight / 2, kBadgeHeight / 2);
  painter.drawText(badge, Qt::AlignCenter, text);
}

}  // namespace

DragPicture dragPicture(const std::vector<DraggingItem>& items, Point<WindowContent> pointer,
                        const DragPictureStyle& style) {
  SoftShadow shadow;
  shadow.setLook({.cornerRadius = kCornerRadius, .layers = {{.opacity = 0.3, .radius = 8, .y = 3}}});
  // As many points on each side as shadow and badge reach beyond the cards.
  const QMargins reach = style.hasShadow ? shadow.margins() : QMargins();
  const int badge = items.size() > 1 ? static_cast<int>(kBadgeHeight) / 2 : 1;
  const QMargins margins(std::max(reach.left(), 1), std::max(reach.top(), badge), std::max(reach.right(), badge),
                         std::max(reach.bottom(), 1));
  const QRectF frames = framesOf(items);
  const QRectF canvas = frames.marginsAdded(margins);
  QPixmap pixmap(QSizeF(canvas.size() * style.scale).toSize());
  pixmap.setDevicePixelRatio(style.scale);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
  painter.translate(-canvas.topLeft());
  // Of those that lie on one another only the first is seen.
  const std::size_t seen = std::min<std::size_t>(items.size(), 5);
  for (std::size_t index = seen; index-- > 0;) {
    const Rect<WindowContent>& frame = items[index].frame;
    const QRectF card(frame.minX(), -frame.maxY(), frame.size.width, frame.size.height);
    if (style.hasShadow) {
      shadow.paint(painter, card);
    }
    drawCard(painter, items[index], card);
  }
  if (items.size() > 1) {
    const Rect<WindowContent>& first = items.front().frame;
    drawBadge(painter, items.size(), QPointF(frames.right(), -first.maxY()));
  }
  painter.end();
  const QPointF hotSpot = QPointF(pointer.x, -pointer.y) - canvas.topLeft();
  return {std::move(pixmap), hotSpot.toPoint()};
}

}  // namespace quenlio
