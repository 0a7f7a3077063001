#include "desktop/linux/session/QtDraggingSessions.h"

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QCoreApplication>
#include <QtCore/QMimeData>
#include <QtGui/QDrag>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <iterator>
#include <utility>

#include "desktop/linux/session/DragPicture.h"
#include "desktop/linux/session/X11.h"
#include "desktop/linux/system/FileURI.h"

namespace quenlio {
namespace {

const QString kAddresses = QStringLiteral("text/uri-list");
const QString kText = QStringLiteral("text/plain");

// The addresses. The toolkit promises text beside them by itself, and who takes that gets the paths.
class DraggedFiles final : public QMimeData {
 public:
  explicit DraggedFiles(std::vector<FileURL> urls) : urls_(std::move(urls)) {}
  [[nodiscard]] QStringList formats() const override { return {kAddresses}; }
  [[nodiscard]] bool hasFormat(const QString& name) const override { return name == kAddresses; }

 protected:
  [[nodiscard]] QVariant retrieveData(const QString& name, QMetaType /*type*/) const override {
    if (name == kAddresses) {
      return QByteArray::fromStdString(uriList(urls_));
    }
    return name == kText ? QVariant(QByteArray::fromStdString(pathLines(urls_))) : QVariant();
  }

 private:
  std::vector<FileURL> urls_;
};

std::vector<FileURL> filesOf(const std::vector<DraggingItem>& items) {
  std::vector<FileURL> urls;
  std::ranges::transform(items, std::back_inserter(urls), &DraggingItem::fileURL);
  return urls;
}

Qt::DropActions actionsFor(DragOperationMask operations) {
  return (operations & kDragOperationCopy) != 0 ? Qt::CopyAction : Qt::IgnoreAction;
}

// As the server has it now: a release that is still on its way here will come, one that has come will not come again.
bool isButtonDown() {
  if (x11::connection() == nullptr) {
    return QGuiApplication::mouseButtons() != Qt::NoButton;
  }
  const auto cookie = xcb_query_pointer(x11::connection(), x11::rootWindow());
  const x11::Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(x11::connection(), cookie, nullptr));
  return reply && (reply->mask & (XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3)) != 0;
}

// A window that goes takes the pointer's events with it, and nobody would hear of the release.
class EndsWithWindow final : private QObject {
 public:
  explicit EndsWithWindow(QWidget& window) { window.installEventFilter(this); }

 private:
  bool eventFilter(QObject* /*object*/, QEvent* event) override {
    if (event->type() == QEvent::Hide || event->type() == QEvent::Close) {
      QDrag::cancel();
    }
    return false;
  }
};

// Escape gives the drag up also when another program has the keyboard.
class EndsOnEscape final : private QAbstractNativeEventFilter {
 public:
  EndsOnEscape() {
    if (x11::connection() == nullptr) {
      return;
    }
    for (const std::uint16_t modifiers : kModifiers) {
      // Some of them may be another's, a window manager's for one.
      const auto cookie = xcb_grab_key_checked(x11::connection(), 0, x11::rootWindow(), modifiers, kEscape,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
      xcb_discard_reply(x11::connection(), cookie.sequence);
    }
    xcb_flush(x11::connection());
    QCoreApplication::instance()->installNativeEventFilter(this);
  }
  EndsOnEscape(const EndsOnEscape&) = delete;
  EndsOnEscape& operator=(const EndsOnEscape&) = delete;
  ~EndsOnEscape() override {
    if (x11::connection() == nullptr) {
      return;
    }
    for (const std::uint16_t modifiers : kModifiers) {
      xcb_ungrab_key(x11::connection(), kEscape, x11::rootWindow(), modifiers);
    }
    xcb_flush(x11::connection());
    QCoreApplication::instance()->removeNativeEventFilter(this);
  }

 private:
  static constexpr xcb_keycode_t kEscape = 9;
  // Each with and without Caps Lock and Num Lock.
  static constexpr std::uint16_t kModifiers[] = {0,
                                                 XCB_MOD_MASK_LOCK,
                                                 XCB_MOD_MASK_2,
                                                 XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2,
                                                 XCB_MOD_MASK_SHIFT,
                                                 XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK,
                                                 XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_2,
                                                 XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) override {
    const auto* event = static_cast<const xcb_key_press_event_t*>(message);
    const bool isPress = eventType == "xcb_generic_event_t" &&
                         (event->response_type & x11::kEventNumber) == XCB_KEY_PRESS && event->detail == kEscape;
    if (isPress) {
      QDrag::cancel();
    }
    return isPress;
  }
};

}  // namespace

DraggingSessionID QtDraggingSessions::beginDraggingSession(const DraggingRequest& request,
                                                           std::function<void(DraggingSessionID)> ended) {
  const DraggingSessionID session = ++lastID_;
  const std::function<void()> runNow = weak_.bind([request](QtDraggingSessions& self) { self.run(request); });
  QMetaObject::invokeMethod(
      QCoreApplication::instance(),
      [runNow, session, ended = std::move(ended)] {
        runNow();
        ended(session);
      },
      Qt::QueuedConnection);
  return session;
}

// Returns when the drag is over.
void QtDraggingSessions::run(const DraggingRequest& request) {
  QWidget* window = QWidget::find(request.window);
  if (isRunning_ || window == nullptr || !window->isVisible() || request.items.empty() || !isButtonDown()) {
    return;
  }
  const DragPicture picture =
      dragPicture(request.items, request.location,
                  {.scale = window->devicePixelRatioF(), .hasShadow = compositor_.isThere().get()});
  isRunning_ = true;
  const EndsWithWindow endsWithWindow(*window);
  const EndsOnEscape endsOnEscape;
  auto* drag = new QDrag(window);  // the toolkit lets go of it
  drag->setMimeData(new DraggedFiles(filesOf(request.items)));
  drag->setPixmap(picture.pixmap);
  drag->setHotSpot(picture.hotSpot);
  drag->exec(actionsFor(request.allowedOperations));
  isRunning_ = false;
}

}  // namespace quenlio
