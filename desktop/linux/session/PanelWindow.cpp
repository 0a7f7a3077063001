#include "desktop/linux/session/PanelWindow.h"

#include <QtGui/QBitmap>
#include <QtGui/QCloseEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <algorithm>
#include <array>
#include <utility>
#include <xcb/shape.h>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/X11Windows.h"

namespace quenlio {
namespace {

constexpr std::uint32_t kAllDesktops = 0xffffffff;
constexpr char kWindowClass[] = "quenlio\0Quenlio";  // instance and class, each with its closing zero

void replaceProperty(xcb_window_t window, const char* name, xcb_atom_t type, const std::uint32_t* values,
                     std::uint32_t count) {
  xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, window, x11::atom(name), type, 32, count, values);
}

using States = std::array<std::uint32_t, 4>;
States panelStates() {
  return {x11::atom("_NET_WM_STATE_ABOVE"), x11::atom("_NET_WM_STATE_STICKY"), x11::atom("_NET_WM_STATE_SKIP_TASKBAR"),
          x11::atom("_NET_WM_STATE_SKIP_PAGER")};
}

// No window manager lets the user move, resize or put away a window with these hints: where the panel is, is for it to
// say. Its own wishes are heard all the same.
constexpr std::uint32_t kHasFunctionsAndDecorations = 1 | 2;
constexpr std::uint32_t kCanBeClosed = 32;
constexpr std::array<std::uint32_t, 5> kMotifHints{kHasFunctionsAndDecorations, kCanBeClosed, 0, 0, 0};

constexpr std::uint32_t kAddState = 1;
constexpr std::uint32_t kFromApplication = 1;

void sendToWindowManager(xcb_window_t window, const char* type, const std::array<std::uint32_t, 5>& data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = x11::atom(type);
  std::copy(data.begin(), data.end(), event.data.data32);
  xcb_send_event(x11::connection(), 0, x11::rootWindow(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
}

// The pixels whose centre is inside the rounded rectangle.
QRegion roundedRegion(const QSize& size, double radius) {
  QBitmap bits(size);
  bits.clear();
  QPainter painter(&bits);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::color1);
  painter.drawRoundedRect(QRectF(QPointF(), size), radius, radius);
  painter.end();
  return QRegion(bits);
}

}  // namespace

// Lies over the content while the panel is not wholly opaque, and takes away from what has been painted below it. Being
// the topmost widget it is painted last, once for every part of the window that is painted anew.
class PanelWindow::Veil final : public QWidget {
 public:
  explicit Veil(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
  }
  double alpha = 1;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(event->rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha)));
  }
};

PanelWindow::PanelWindow()
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), veil_(new Veil(this)) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(QStringLiteral("Quenlio Island"));
  setAccessibleName(QStringLiteral("Quenlio Island"));
  setFocusPolicy(Qt::StrongFocus);
  winId();  // made now, so that the first showing need not wait for it
  windowHandle()->installEventFilter(this);
}

void PanelWindow::setContent(std::unique_ptr<QWidget> content) {
  delete content_;
  content_ = content.release();
  content_->setParent(this);
  content_->setGeometry(rect());
  content_->show();
  setFocusProxy(content_);
  veil_->raise();
}

void PanelWindow::setSurface(const PanelSurface& surface) {
  if (surface != surface_) {
    surface_ = surface;
    shape();
    update();
  }
}

void PanelWindow::setComposited(bool composited) {
  composited_ = composited;
  if (x11::connection() != nullptr) {
    // The server clears a newly mapped window to this before we have painted. Without a compositor a clear colour
    // would be black, so there the old pixels stay until ours come.
    const std::uint32_t clear = composited ? 0 : static_cast<std::uint32_t>(XCB_BACK_PIXMAP_NONE);
    xcb_change_window_attributes(x11::connection(), id(), composited ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP, &clear);
  }
  veil_->setVisible(composited_ && veil_->alpha < 1);
  shape();
  update();
}

void PanelWindow::setAlpha(double alpha) {
  if (veil_->alpha == alpha) {
    return;
  }
  veil_->alpha = alpha;
  veil_->setVisible(composited_ && alpha < 1);
  update();
}

void PanelWindow::showOnAllDesktops() {
  if (x11::connection() == nullptr) {
    show();
    return;
  }
  setBypassesWindowManager(isBelowFullScreenWindow());
  announceStates();
  show();
  requestStates();
}

bool PanelWindow::isCovered() const {
  return isVisible() && !bypassesWindowManager_ && isBelowFullScreenWindow();
}

bool PanelWindow::isBelowFullScreenWindow() const {
  return x11::isCoveredByFullScreenWindow(x11::toPixels(geometry(), *screen()));
}

// For a window that is not shown. Not by Qt's flag, for which the window would have to be made anew.
void PanelWindow::setBypassesWindowManager(bool bypasses) {
  bypassesWindowManager_ = bypasses;
  const std::uint32_t value = bypasses ? 1 : 0;
  xcb_change_window_attributes(x11::connection(), id(), XCB_CW_OVERRIDE_REDIRECT, &value);
}

// For a window that is not shown: the window manager reads these when it is.
void PanelWindow::announceStates() {
  xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, id(), XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      sizeof kWindowClass, kWindowClass);
  replaceProperty(id(), "_MOTIF_WM_HINTS", x11::atom("_MOTIF_WM_HINTS"), kMotifHints.data(),
                  static_cast<std::uint32_t>(kMotifHints.size()));
  replaceProperty(id(), "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, &kAllDesktops, 1);
  const States states = panelStates();
  replaceProperty(id(), "_NET_WM_STATE", XCB_ATOM_ATOM, states.data(), static_cast<std::uint32_t>(states.size()));
}

// For a window that is shown. A panel that comes back right after it went may meet a window manager that is still
// tidying up after its going, and wipes what has just been announced; it reads these afterwards.
void PanelWindow::requestStates() {
  sendToWindowManager(id(), "_NET_WM_DESKTOP", {kAllDesktops, kFromApplication, 0, 0, 0});
  const States states = panelStates();
  sendToWindowManager(id(), "_NET_WM_STATE", {kAddState, states[0], states[1], kFromApplication, 0});
  sendToWindowManager(id(), "_NET_WM_STATE", {kAddState, states[2], states[3], kFromApplication, 0});
}

void PanelWindow::takeKeyboard() {
  if (!bypassesWindowManager_) {
    // Also when the window is said to be active: right after a hiding that is still the answer of before.
    activateWindow();
    return;
  }
  const xcb_window_t owner = x11::keyboardsOwner();
  if (owner != id()) {
    keyboardsOwner_ = owner;
    x11::giveKeyboard(id());
  }
}

void PanelWindow::giveKeyboardBack() {
  const xcb_window_t owner = std::exchange(keyboardsOwner_, static_cast<xcb_window_t>(XCB_NONE));
  if (owner != XCB_NONE && x11::keyboardsOwner() == id()) {
    x11::giveKeyboard(owner);
  }
}

void PanelWindow::orderOut() {
  giveKeyboardBack();
  hide();
}

void PanelWindow::setTakesMouse(bool takes) {
  if (x11::connection() == nullptr) {
    return;
  }
  if (takes) {
    xcb_shape_mask(x11::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, id(), 0, 0, XCB_PIXMAP_NONE);
  } else {
    xcb_shape_rectangles(x11::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, id(), 0,
                         0, 0, nullptr);
  }
}

void PanelWindow::shape() {
  if (composited_) {
    clearMask();
  } else {
    setMask(roundedRegion(size(), surface_.cornerRadius));
  }
}

void PanelWindow::paintEvent(QPaintEvent* event) {
  if (!composited_) {
    QPainter(this).fillRect(event->rect(), surface_.tone);
  }
}

void PanelWindow::resizeEvent(QResizeEvent* /*event*/) {
  if (content_ != nullptr) {
    content_->setGeometry(rect());
  }
  veil_->setGeometry(rect());
  if (!composited_) {
    shape();
  }
}

void PanelWindow::keyPressEvent(QKeyEvent* event) {
  // What is not consumed goes on nowhere: the window has no keys of its own.
  if (!onKeyDown_ || !onKeyDown_(keyEventFrom(*event))) {
    event->ignore();
  }
}

// A window that is closed is destroyed, and its panel would go on believing that it is shown.
void PanelWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (onClose_) {
    onClose_();
  }
}

// Of the window itself, which hears of a press before the view that it is on.
bool PanelWindow::eventFilter(QObject* /*object*/, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && bypassesWindowManager_) {
    takeKeyboard();
  }
  return false;
}

}  // namespace quenlio
