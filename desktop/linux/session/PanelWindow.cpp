#include "desktop/linux/session/PanelWindow.h"

#include <QtGui/QBitmap>
#include <QtGui/QCloseEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <algorithm>
#include <utility>
#include <vector>
#include <xcb/shape.h>

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/PanelHints.h"
#include "desktop/linux/session/X11Windows.h"

namespace quenlio {
namespace {

// How long a window manager is given to let go of the window, before it is shown past it.
constexpr int kTryEvery = 5;  // milliseconds
constexpr int kMostTries = 100;

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
  const bool bypasses = isBelowFullScreenWindow();
  if (bypasses && isManaged()) {
    triesLeft_ = kMostTries;
    wait_.start(kTryEvery, this);
    return;
  }
  showNow(bypasses);
}

void PanelWindow::showNow(bool bypasses) {
  wait_.stop();
  setBypassesWindowManager(bypasses);
  announcePanel(id());
  show();
  requestPanelStates(id());
  if (std::exchange(wantsKeyboard_, false)) {
    takeKeyboard();
  }
}

void PanelWindow::timerEvent(QTimerEvent* event) {
  if (event->timerId() != wait_.timerId()) {
    QWidget::timerEvent(event);
  } else if (!isManaged() || --triesLeft_ == 0) {
    showNow(true);
    raise();
  }
}

// A window manager that learns late of the window's going puts it away once more by itself.
bool PanelWindow::isManaged() const {
  constexpr std::uint32_t withdrawn = 0;
  const std::vector<std::uint32_t> state = x11::numbers(id(), "WM_STATE");
  return !state.empty() && state.front() != withdrawn;
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

void PanelWindow::takeKeyboard() {
  if (wait_.isActive()) {
    wantsKeyboard_ = true;
    return;
  }
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
  wait_.stop();
  wantsKeyboard_ = false;
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
