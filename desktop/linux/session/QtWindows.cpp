#include "desktop/linux/session/QtWindows.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QWidget>
#include <chrono>
#include <ctime>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/PanelWindow.h"
#include "desktop/linux/session/ScreenGeometry.h"

namespace quenlio {
namespace {

bool isOfApplication(const QWindow& window) {
  const Qt::WindowType type = window.type();
  return window.isTopLevel() && window.isVisible() && window.handle() != nullptr &&
         (type == Qt::Window || type == Qt::Dialog || type == Qt::Tool || type == Qt::Sheet);
}

const PanelWindow* panelOf(const QWindow& window) {
  return dynamic_cast<const PanelWindow*>(QWidget::find(window.winId()));
}

QRect frameOf(const QWindow& window) {
  const PanelWindow* panel = panelOf(window);
  return panel != nullptr ? panel->frame() : window.geometry();
}

QPoint pixelAt(QPointF place) {
  return {qFloor(place.x()), qFloor(place.y())};
}

}  // namespace

QtWindows::QtWindows() {
  QCoreApplication::instance()->installEventFilter(this);
}

QtWindows::~QtWindows() = default;

std::vector<WindowInfo> QtWindows::visibleWindows() const {
  std::vector<WindowInfo> windows;
  for (const QWindow* window : QGuiApplication::topLevelWindows()) {  // the oldest first
    if (isOfApplication(*window)) {
      windows.push_back(infoFor(*window));
    }
  }
  return windows;
}

WindowInfo QtWindows::infoFor(const QWindow& window) const {
  const PanelWindow* panel = panelOf(window);
  const bool isAboveOthers = panel != nullptr && panel->layer() == PanelLayer::aboveOthers;
  return {.id = window.winId(),
          .frame = ScreenGeometry::current().fromQt(frameOf(window)),
          .level = isAboveOthers ? kStatusWindowLevel : 0,
          .isKeyWindow = QGuiApplication::focusWindow() == &window,
          .isMainWindow = panel == nullptr && lastMain_ == &window};
}

std::optional<PointerEvent> QtWindows::currentEvent() const {
  return QGuiApplication::mouseButtons().testFlag(Qt::LeftButton) ? pointer_ : std::nullopt;
}

ModifierFlags QtWindows::modifierFlags() const {
  return modifierFlagsFrom(QGuiApplication::queryKeyboardModifiers());
}

Seconds QtWindows::systemUptime() const {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::string QtWindows::makeStartupID() {
  return "quenlio-" + std::to_string(QCoreApplication::applicationPid()) + "-" + std::to_string(++startups_) + "_TIME" +
         std::to_string(lastInput_);
}

bool QtWindows::eventFilter(QObject* object, QEvent* event) {
  if (!object->isWindowType()) {
    return false;
  }
  auto& window = *static_cast<QWindow*>(object);
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
      notePointer(window, *static_cast<const QMouseEvent*>(event));
      [[fallthrough]];
    case QEvent::KeyPress:
      lastInput_ = static_cast<const QInputEvent*>(event)->timestamp();
      break;
    case QEvent::FocusIn:
      if (isOfApplication(window) && panelOf(window) == nullptr) {
        lastMain_ = &window;
      }
      break;
    default:
      break;
  }
  return false;
}

void QtWindows::notePointer(const QWindow& window, const QMouseEvent& event) {
  const bool isPress = event.type() == QEvent::MouseButtonPress && event.button() == Qt::LeftButton;
  const bool isDrag = event.type() == QEvent::MouseMove && event.buttons().testFlag(Qt::LeftButton);
  if (event.type() == QEvent::MouseButtonRelease && event.button() == Qt::LeftButton) {
    pointer_.reset();
  }
  if (!isPress && !isDrag) {
    return;
  }
  const Point<Screen> place = ScreenGeometry::current().fromQt(pixelAt(event.globalPosition()));
  pointer_ = {.type = isPress ? PointerEventType::leftMouseDown : PointerEventType::leftMouseDragged,
              .window = window.winId(),
              .locationInWindow = toWindowContent(infoFor(window), place),
              .modifierFlags = modifierFlagsFrom(event.modifiers()),
              .timestamp = systemUptime()};
}

}  // namespace quenlio
