// The preview panel with a list of files, on virtual time, and what a person sees of it and does to it.
#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QWidget>
#include <string>
#include <vector>

#include "desktop/views/preview/QtPreviewPanel.h"

#include "tests/desktop/preview/FakePictures.h"
#include "tests/desktop/preview/HeldWork.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeHandOut.h"

namespace quenlio {

class Preview final : private PreviewPanelDataSource {
 public:
  // As the list's owner does when the user asks for a preview, and when the selection moves meanwhile.
  void open(std::size_t index);
  void sync(std::size_t index);
  // Whatever is on its way arrives and is painted.
  void settle();
  // Paints what is to be painted now.
  void paint();

  // The window; nullptr when there is none.
  [[nodiscard]] QWidget* window() const;
  [[nodiscard]] bool isUp() const { return window() != nullptr && window()->isVisible(); }
  // Without its shadow, on the screen.
  [[nodiscard]] QRect frame() const { return {view()->mapToGlobal(QPoint()), view()->size()}; }
  [[nodiscard]] QSize size() const { return view()->size(); }
  // What is in it.
  [[nodiscard]] QWidget* view() const;
  [[nodiscard]] std::string title() const;
  // Every text that is to be seen, in the order of the views.
  [[nodiscard]] std::vector<std::string> texts() const;
  // As it is painted, one pixel a point.
  [[nodiscard]] QImage image() const;
  [[nodiscard]] QColor middle() const;

  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, bool isRepeated = false) const;

  FakePictures files;
  std::vector<FileURL> list;
  HeldWork work;
  CompositorWatch compositor;
  FakeAppearance appearance;
  FakeWindows windows;
  QtPreviewPanel panel{{.scheduler = work,
                        .compositor = compositor,
                        .appearance = appearance,
                        .windows = windows,
                        .pictures = files.source()}};

 private:
  [[nodiscard]] std::size_t numberOfPreviewItems() const override { return list.size(); }
  [[nodiscard]] FileURL previewItemAtIndex(std::size_t index) const override { return list.at(index); }
};

}  // namespace quenlio
