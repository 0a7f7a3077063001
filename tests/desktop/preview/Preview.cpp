#include "tests/desktop/preview/Preview.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

namespace quenlio {

void Preview::open(std::size_t index) {
  (void)panel.sharedPreviewPanel();
  panel.setDataSource(*this);
  panel.makeKeyAndOrderFront();
  panel.setCurrentPreviewItemIndex(index);
  panel.reloadData();
}

void Preview::sync(std::size_t index) {
  panel.setDataSource(*this);
  panel.reloadData();
  panel.setCurrentPreviewItemIndex(index);
}

void Preview::settle() {
  work.finishAll(PreviewPictures::kTimeToPaint);
  paint();
}

void Preview::paint() {
  work.time.runReady();
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
}

QWidget* Preview::window() const {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QLatin1String(PreviewWindow::kObjectName)) {
      return widget;
    }
  }
  return nullptr;
}

QWidget* Preview::view() const {
  for (QObject* child : window()->children()) {
    if (auto* view = dynamic_cast<PreviewView*>(child)) {
      return view;
    }
  }
  return nullptr;
}

std::string Preview::title() const {
  return window()->windowTitle().toStdString();
}

std::vector<std::string> Preview::texts() const {
  std::vector<std::string> texts;
  for (const QLabel* label : view()->findChildren<QLabel*>()) {
    if (!label->isHidden()) {
      texts.push_back(label->text().toStdString());
    }
  }
  return texts;
}

QImage Preview::image() const {
  return view()->grab().toImage().convertToFormat(QImage::Format_ARGB32);
}

QColor Preview::middle() const {
  const QRectF area = preview::pictureArea(view()->size());
  return image().pixelColor(area.center().toPoint());
}

void Preview::press(int key, Qt::KeyboardModifiers modifiers, bool isRepeated) const {
  QKeyEvent event(QEvent::KeyPress, key, modifiers, QString(), isRepeated);
  QCoreApplication::sendEvent(view(), &event);
}

}  // namespace quenlio
