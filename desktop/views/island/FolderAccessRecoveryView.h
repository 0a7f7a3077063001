// Takes the preview's place while the screenshot folder cannot be read: says so and offers the way out. Owned by the
// root view. Main thread.
#pragma once

#include <QtWidgets/QLabel>
#include <functional>
#include <string>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"

#include "desktop/views/island/IslandPalette.h"

namespace quenlio {

class FolderAccessRecoveryView final : public QWidget {
 public:
  FolderAccessRecoveryView(QWidget* parent, std::function<void()> action);

  void apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics);
  void setFolderPath(const std::string& path);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Button;
  void layOut();

  std::function<void()> action_;
  IslandPalette palette_;
  double cornerRadius_ = 17;
  QLabel title_;
  QLabel text_;
  Button* button_;  // a child
  WeakOwner<FolderAccessRecoveryView> weak_{this};
};

}  // namespace quenlio
