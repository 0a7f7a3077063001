#include "desktop/linux/session/PanelWindow.h"

#include <QtGui/QBitmap>
#include <QtGui/QCloseEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>
#include <xcb/shape.h>

#include "core/geometry/ContinuousCorner.h"

#include "desktop/linux/session/KeyTranslation.h"
#include "desktop/linux/session/PanelHints.h"
#include "desktop/linux/session/X11Windows.h"

namespace quenlio {
namespace {

// How long a window manager is given to let go of the window, before it is shown past it.
constexpr int kTryEvery = 5;  // milliseconds
constexpr int kMostTries = 100;

struct WindowPixels;

// The pixels whose centre is inside the rectangle with continuous corners.
QRegion roundedRegion(const QRect& rect, double radius) {
  QBitmap bits(rect.size());
  bits.clear();
  QPolygonF outline;
  for (const auto& at : continuousRectangle<WindowPixels>(
           {{0, 0}, {static_cast<double>(rect.width()), static_cast<double>(rect.height())}}, radius)) {
    outline.append({at.x, at.y});
  }
  QPainter painter(&bits);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::color1);
  painter.drawPolygon(outline);
  painter.end();
  return QRegion(bits).translated(rect.topLeft());
}

// Nothing: the whole window.
void setShape(xcb_window_t window, xcb_shape_sk_t kind, const std::optional<QRegion>& region) {
  if (!region) {
    xcb_shape_mask(x11::connection(), XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_PIXMAP_NONE);
    return;
  }
  std::vector<xcb_rectangle_t> rectangles;
  for (const QRect& rect : *region) {
    rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                          static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height())});
  }
  xcb_shape_rectangles(x11::connection(), XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                       static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

}  // namespace

// Lies over the content. Being the topmost widget it is painted last, once for every part of the window that is painted
// anew: puts the shadow under what has been painted, and takes away from all of it while the panel is not wholly
// opaque.
class PanelWindow::Cover final : public QWidget {
 public:
  explicit Cover(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
  }
  double alpha = 1;
  SoftShadow shadow;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    const QRect body = rect() - parentWidget()->contentsMargins();
    if (!shadow.look().layers.empty() && !isWellInside(event->rect(), body)) {
      painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
      shadow.paint(painter, body);
    }
    if (alpha < 1) {
      painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
      painter.fillRect(event->rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha)));
    }
  }

 private:
  // Where there is nothing but body.
  [[nodiscard]] bool isWellInside(const QRect& part, const QRect& body) const {
    const int corner = static_cast<int>(std::ceil(continuousCornerReach(shadow.look().cornerRadius)));
    return body.adjusted(1, corner, -1, -corner).contains(part) || body.adjusted(corner, 1, -corner, -1).contains(part);
  }
};

PanelWindow::PanelWindow(const QRect& frame, PanelLayer layer)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint), layer_(layer), cover_(new Cover(this)) {
  setWindowFlag(Qt::WindowStaysOnTopHint, layer == PanelLayer::aboveOthers);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(QStringLiteral("Quenlio Island"));
  setAccessibleName(QStringLiteral("Quenlio Island"));
  setFocusPolicy(Qt::StrongFocus);
  setGeometry(frame);  // before the window is made, so that nobody hears of another size
  winId();             // made now, so that the first showing need not wait for it
  windowHandle()->installEventFilter(this);
}

void PanelWindow::setContent(std::unique_ptr<QWidget> content) {
  delete content_;
  content_ = content.release();
  content_->setParent(this);
  content_->setGeometry(contentsRect());
  content_->show();
  setFocusProxy(content_);
  cover_->raise();
}

void PanelWindow::setSurface(const PanelSurface& surface) {
  if (surface != surface_) {
    surface_ = surface;
    useShadow();
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
  useShadow();
  shape();
  update();
}

void PanelWindow::setBlursBehind(bool blursBehind) {
  blursBehind_ = blursBehind;
  shape();
}

// Nothing can be blended without a compositor, so there is no shadow either.
void PanelWindow::useShadow() {
  const QRect stands = frame();
  cover_->shadow.setLook(
      {.cornerRadius = surface_.cornerRadius, .layers = composited_ ? surface_.shadow : std::vector<ShadowLayer>{}});
  cover_->setVisible(composited_ && (cover_->alpha < 1 || !cover_->shadow.look().layers.empty()));
  if (cover_->shadow.margins() != contentsMargins()) {
    setContentsMargins(cover_->shadow.margins());
    setFrame(stands);
    layOut();
  }
}

void PanelWindow::setFrame(const QRect& frame) {
  setGeometry(frame + contentsMargins());
}

void PanelWindow::setAlpha(double alpha) {
  if (cover_->alpha == alpha) {
    return;
  }
  cover_->alpha = alpha;
  useShadow();
  update();
}

void PanelWindow::showOnAllDesktops() {
  if (x11::connection() == nullptr) {
    show();
    return;
  }
  const bool bypasses = isKeptFromSight();
  if (bypasses && isManaged()) {
    triesLeft_ = kMostTries;
    wait_.start(kTryEvery, this);
    return;
  }
  showNow(bypasses);
}

void PanelWindow::showNow(bool bypasses) {
  wait_.stop();
  setWindowState(windowState() & ~Qt::WindowMinimized);
  setBypassesWindowManager(bypasses);
  announcePanel(id(), layer_);
  shape();
  show();
  requestPanelStates(id(), layer_);
  if (const auto reason = std::exchange(wantsKeyboard_, std::nullopt)) {
    takeKeyboard(*reason);
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

bool PanelWindow::isOutOfSight() const {
  return isVisible() && (isMinimized() || (!bypassesWindowManager_ && isKeptFromSight()));
}

bool PanelWindow::isKeptFromSight() const {
  return x11::isShowingDesktop() || x11::isCoveredByFullScreenWindow(x11::toPixels(frame(), *screen()));
}

// For a window that is not shown. Not by Qt's flag, for which the window would have to be made anew.
void PanelWindow::setBypassesWindowManager(bool bypasses) {
  bypassesWindowManager_ = bypasses;
  const std::uint32_t value = bypasses ? 1 : 0;
  xcb_change_window_attributes(x11::connection(), id(), XCB_CW_OVERRIDE_REDIRECT, &value);
}

void PanelWindow::takeKeyboard(PanelKeyboard::Reason reason) {
  if (wait_.isActive()) {
    wantsKeyboard_ = reason;
  } else {
    keyboard_.take(reason, bypassesWindowManager_);
  }
}

void PanelWindow::orderOut() {
  wait_.stop();
  wantsKeyboard_.reset();
  if (bypassesWindowManager_) {
    keyboard_.giveBack();
  }
  hide();
}

void PanelWindow::setTakesMouse(bool takes) {
  takesMouse_ = takes;
  shapeInput();
}

// By the server and not by Qt, which counts a window's shape in points.
void PanelWindow::shape() {
  if (x11::connection() == nullptr) {
    return;
  }
  const QRegion body = bodyInPixels();
  setShape(id(), XCB_SHAPE_SK_BOUNDING, composited_ ? std::nullopt : std::optional(body));
  announceShadow(id(), (QMarginsF(contentsMargins()) * devicePixelRatioF()).toMargins());
  announceBlurBehind(id(), composited_ && blursBehind_ ? body : QRegion());
  shapeInput();
}

void PanelWindow::shapeInput() {
  if (x11::connection() == nullptr) {
    return;
  }
  if (!takesMouse_) {
    setShape(id(), XCB_SHAPE_SK_INPUT, QRegion());
  } else {
    setShape(id(), XCB_SHAPE_SK_INPUT, contentsMargins().isNull() ? std::nullopt : std::optional(bodyInPixels()));
  }
}

QRegion PanelWindow::bodyInPixels() const {
  const double scale = devicePixelRatioF();
  const QRectF body(QPointF(contentsRect().topLeft()) * scale, QSizeF(contentsRect().size()) * scale);
  return roundedRegion(body.toRect(), surface_.cornerRadius * scale);
}

void PanelWindow::paintEvent(QPaintEvent* event) {
  if (!composited_) {
    QPainter(this).fillRect(event->rect(), surface_.tone);
  }
}

void PanelWindow::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
  shape();
}

void PanelWindow::layOut() {
  if (content_ != nullptr) {
    content_->setGeometry(contentsRect());
  }
  cover_->setGeometry(rect());
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

bool PanelWindow::nativeEvent(const QByteArray& eventType, void* message, qintptr* /*result*/) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if (eventType == "xcb_generic_event_t" && (event->response_type & x11::kEventNumber) == XCB_FOCUS_IN) {
    keyboard_.keyboardCame();
  }
  return false;
}

// Of the window itself, which hears of a press before the view that it is on.
bool PanelWindow::eventFilter(QObject* /*object*/, QEvent* event) {
  keyboard_.heard(event->type());
  if (event->type() == QEvent::MouseButtonPress && bypassesWindowManager_) {
    takeKeyboard(PanelKeyboard::Reason::user);
  }
  return false;
}

}  // namespace quenlio
