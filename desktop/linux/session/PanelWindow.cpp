#include "desktop/linux/session/PanelWindow.h"

#include <QtGui/QBitmap>
#include <QtGui/QKeyEvent>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <array>
#include <xcb/shape.h>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/X11.h"

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
  if (x11::connection() != nullptr) {
    xcb_change_property(x11::connection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(winId()), XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, sizeof kWindowClass, kWindowClass);
  }
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
    xcb_change_window_attributes(x11::connection(), static_cast<xcb_window_t>(winId()),
                                 composited ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP, &clear);
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
  announceStates();
  show();
  requestStates();
}

// For a window that is not shown: the window manager reads these when it is.
void PanelWindow::announceStates() {
  const auto window = static_cast<xcb_window_t>(winId());
  replaceProperty(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, &kAllDesktops, 1);
  const States states = panelStates();
  replaceProperty(window, "_NET_WM_STATE", XCB_ATOM_ATOM, states.data(), static_cast<std::uint32_t>(states.size()));
}

// For a window that is shown. A panel that comes back right after it went may meet a window manager that is still
// tidying up after its going, and wipes what has just been announced; it reads these afterwards.
void PanelWindow::requestStates() {
  const auto window = static_cast<xcb_window_t>(winId());
  sendToWindowManager(window, "_NET_WM_DESKTOP", {kAllDesktops, kFromApplication, 0, 0, 0});
  const States states = panelStates();
  sendToWindowManager(window, "_NET_WM_STATE", {kAddState, states[0], states[1], kFromApplication, 0});
  sendToWindowManager(window, "_NET_WM_STATE", {kAddState, states[2], states[3], kFromApplication, 0});
}

void PanelWindow::setTakesMouse(bool takes) {
  if (x11::connection() == nullptr) {
    return;
  }
  const auto window = static_cast<xcb_window_t>(winId());
  if (takes) {
    xcb_shape_mask(x11::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, window, 0, 0, XCB_PIXMAP_NONE);
  } else {
    xcb_shape_rectangles(x11::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window, 0,
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

}  // namespace quenlio
