#include "desktop/linux/session/QtSharingServicePicker.h"

#include <QtGui/QIcon>
#include <QtGui/QPalette>
#include <QtWidgets/QMenu>
#include <algorithm>

#include "desktop/linux/session/Mail.h"
#include "desktop/linux/session/QtPasteboard.h"
#include "desktop/linux/session/ScreenGeometry.h"

namespace quenlio {
namespace {

QIcon iconOf(const DesktopEntry& entry) {
  const QString name = QString::fromStdString(entry.icon);
  QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
  return icon.isNull() ? QIcon::fromTheme(QStringLiteral("application-x-executable")) : icon;
}

// A single ampersand would underline what follows it.
QString plainText(const std::string& text) {
  return QString::fromStdString(text).replace(u'&', QStringLiteral("&&"));
}

QPalette paletteFor(bool isDark) {
  QPalette palette(isDark ? QColor(0x2b2d31) : QColor(0xf7f7f9));
  palette.setColor(QPalette::WindowText, isDark ? QColor(0xf0f1f3) : QColor(0x1d1e20));
  palette.setColor(QPalette::Text, palette.color(QPalette::WindowText));
  palette.setColor(QPalette::ButtonText, palette.color(QPalette::WindowText));
  palette.setColor(QPalette::Highlight, isDark ? QColor(0x3b82f6) : QColor(0x2563eb));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

// Where the menu's top left corner goes, so that it lies at this edge of the rectangle.
QPoint placeBeside(const QRect& rect, RectEdge edge, const QSize& menu) {
  switch (edge) {
    case RectEdge::minY:
      return {rect.left(), rect.top() + rect.height()};
    case RectEdge::maxY:
      return {rect.left(), rect.top() - menu.height()};
    case RectEdge::minX:
      return {rect.left() - menu.width(), rect.top()};
    case RectEdge::maxX:
      return {rect.left() + rect.width(), rect.top()};
  }
  return rect.topLeft();
}

}  // namespace

QtSharingServicePicker::QtSharingServicePicker(const Dependencies& dependencies)
    : dependencies_(dependencies), saver_(dependencies.files, dependencies.scheduler) {}

QtSharingServicePicker::~QtSharingServicePicker() = default;

void QtSharingServicePicker::showRelativeToRect(const std::vector<FileURL>& items, const Rect<WindowContent>& rect,
                                                WindowID ofView, RectEdge preferredEdge) {
  const std::vector<WindowInfo> windows = dependencies_.windows.visibleWindows();
  const auto host = std::ranges::find(windows, ofView, &WindowInfo::id);
  if (items.empty() || host == windows.end()) {
    return;
  }
  const Rect<Screen> onScreen{{host->frame.minX() + rect.minX(), host->frame.minY() + rect.minY()}, rect.size};
  menu_ = std::make_unique<QMenu>();
  menu_->setObjectName(QStringLiteral("share"));
  menu_->setAccessibleName(QStringLiteral("Share"));
  menu_->setPalette(paletteFor(dependencies_.appearance.isDarkAqua()));
  fill(*menu_, items);
  menu_->popup(placeBeside(ScreenGeometry::current().toQt(onScreen), preferredEdge, menu_->sizeHint()));
}

void QtSharingServicePicker::fill(QMenu& menu, const std::vector<FileURL>& items) {
  const DesktopEntries programs = dependencies_.starter.programs();
  std::vector<FileType> types;
  std::ranges::transform(items, std::back_inserter(types), fileTypeOf);
  const auto add = [&](const QIcon& icon, const QString& text, auto chosen) {
    const std::function<void()> run = weak_.bind(std::move(chosen));
    QObject::connect(menu.addAction(icon, text), &QAction::triggered, &menu, run);
  };
  for (const DesktopEntry& entry : programs.programsFor(types)) {
    add(iconOf(entry), plainText(entry.name),
        [entry, items](QtSharingServicePicker& self) { self.dependencies_.starter.open(entry, items); });
  }
  menu.addSeparator();
  if (canComposeMail(programs)) {
    add(QIcon::fromTheme(QStringLiteral("mail-send")), QStringLiteral("E-mail…"),
        [items](QtSharingServicePicker& self) { composeMail(items, self.dependencies_.starter); });
  }
  add(QIcon::fromTheme(QStringLiteral("edit-copy")), QStringLiteral("Copy Path"),
      [items](QtSharingServicePicker& /*self*/) { copyPaths(items); });
  add(QIcon::fromTheme(QStringLiteral("document-save-as")), QStringLiteral("Save a Copy…"),
      [items](QtSharingServicePicker& self) { self.saver_.save(items); });
}

}  // namespace quenlio
