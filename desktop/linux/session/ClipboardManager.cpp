#include "desktop/linux/session/ClipboardManager.h"

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QMimeData>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <optional>
#include <vector>

#include "desktop/linux/session/X11.h"

namespace quenlio {
namespace {

// However busily it is reading.
constexpr std::chrono::seconds kLongest{10};

// A window of its own for the question, so that the answer is known by it.
class Requestor final : private QAbstractNativeEventFilter {
 public:
  Requestor() : window_(xcb_generate_id(x11::connection())) {
    xcb_create_window(x11::connection(), XCB_COPY_FROM_PARENT, window_, x11::rootWindow(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    QCoreApplication::instance()->installNativeEventFilter(this);
    lastRead_.start();
  }
  Requestor(const Requestor&) = delete;
  Requestor& operator=(const Requestor&) = delete;
  ~Requestor() override {
    QCoreApplication::instance()->removeNativeEventFilter(this);
    xcb_destroy_window(x11::connection(), window_);
    xcb_flush(x11::connection());
  }

  // The list says what is to be kept. Without one some managers ask for what cannot be had, and wait for that.
  void askToSave(const QStringList& formats) const {
    std::vector<xcb_atom_t> targets;
    for (const QString& format : formats) {
      targets.push_back(x11::atom(format.toLatin1().constData()));
    }
    if (formats.contains(QStringLiteral("text/plain"))) {
      targets.push_back(x11::atom("UTF8_STRING"));
    }
    const xcb_atom_t list = x11::atom("QUENLIO_SAVED");
    xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, window_, list, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(targets.size()), targets.data());
    xcb_convert_selection(x11::connection(), window_, x11::atom("CLIPBOARD_MANAGER"), x11::atom("SAVE_TARGETS"), list,
                          XCB_CURRENT_TIME);
    xcb_flush(x11::connection());
  }
  [[nodiscard]] std::optional<bool> answer() const { return answer_; }
  [[nodiscard]] const QElapsedTimer& lastRead() const { return lastRead_; }

 private:
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) override {
    if (eventType != "xcb_generic_event_t") {
      return false;
    }
    const auto* event = static_cast<const xcb_selection_notify_event_t*>(message);
    const int number = event->response_type & x11::kEventNumber;
    if (number == XCB_SELECTION_NOTIFY && event->requestor == window_) {
      answer_ = event->property != XCB_NONE;
      return true;
    }
    // A reader, or one that has taken a part of something large.
    if (number == XCB_SELECTION_REQUEST || number == XCB_PROPERTY_NOTIFY) {
      lastRead_.restart();
    }
    return false;
  }

  xcb_window_t window_;
  std::optional<bool> answer_;
  QElapsedTimer lastRead_;
};

bool isManaged() {
  const auto cookie = xcb_get_selection_owner(x11::connection(), x11::atom("CLIPBOARD_MANAGER"));
  const x11::Reply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(x11::connection(), cookie, nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace

bool handOverClipboard(std::chrono::milliseconds patience) {
  if (x11::connection() == nullptr || !isManaged()) {
    return false;
  }
  const QClipboard& clipboard = *QGuiApplication::clipboard();
  const Requestor requestor;
  requestor.askToSave(clipboard.mimeData()->formats());
  const QDeadlineTimer end(kLongest);
  QTimer wake;
  wake.start(50);
  const auto isGivenUp = [&] { return end.hasExpired() || requestor.lastRead().hasExpired(patience.count()); };
  // The manager reads the contents from us meanwhile. It may own them before it says so.
  while (!requestor.answer() && clipboard.ownsClipboard() && !isGivenUp()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
  }
  return requestor.answer().value_or(!clipboard.ownsClipboard());
}

}  // namespace quenlio
