#include "desktop/linux/session/QtSharingServicePicker.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtWidgets/QMenu>
#include <algorithm>

#include "desktop/linux/session/Mail.h"
#include "desktop/linux/session/QtPasteboard.h"
#include "desktop/linux/session/ScreenGeometry.h"
#include "desktop/linux/session/ShareMenuLook.h"

namespace quenlio {
namespace {

// A single ampersand would underline what follows it.
QString plainText(const std::string& text) {
  return QString::fromStdString(text).replace(u'&', QStringLiteral("&&"));
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

// The same corner, or the nearest one from which all of the menu is a little off the edges of the work area that the
// rectangle is in.
QPoint clearOfEdges(QPoint corner, const QSize& menu, const QRect& rect) {
  constexpr int margin = 8;  // points
  const QScreen* screen = QGuiApplication::screenAt(rect.topLeft());
  if (screen == nullptr) {
    return corner;
  }
  const QRect room =
      screen->availableGeometry().adjusted(margin, margin, -margin - menu.width(), -margin - menu.height());
  return {std::max(room.left(), std::min(corner.x(), room.left() + room.width())),
          std::max(room.top(), std::min(corner.y(), room.top() + room.height()))};
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
  dress(*menu_, {.isDark = dependencies_.appearance.isDarkAqua(),
                 .increasesContrast = dependencies_.appearance.accessibilityDisplayShouldIncreaseContrast(),
                 .isBlended = dependencies_.compositor.isThere().get()});
  fill(*menu_, items);
  const QRect beside = ScreenGeometry::current().toQt(onScreen);
  const QSize size = menu_->sizeHint();
  menu_->popup(clearOfEdges(placeBeside(beside, preferredEdge, size), size, beside));
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
    add(iconOf(entry, programs.dataFolders()), plainText(entry.name),
        [entry, items](QtSharingServicePicker& self) { self.dependencies_.starter.open(entry, items); });
  }
  menu.addSeparator();
  if (canComposeMail(programs)) {
    add(QIcon(), QStringLiteral("E-mail…"),
        [items](QtSharingServicePicker& self) { composeMail(items, self.dependencies_.starter); });
  }
  const bool isOne = items.size() == 1;
  add(QIcon(), isOne ? QStringLiteral("Copy Path") : QStringLiteral("Copy Paths"),
      [items](QtSharingServicePicker& /*self*/) { copyPaths(items); });
  add(QIcon(), isOne ? QStringLiteral("Save a Copy…") : QStringLiteral("Save Copies…"),
      [items](QtSharingServicePicker& self) { self.saver_.save(items); });
}

}  // namespace quenlio
