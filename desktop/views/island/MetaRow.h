// The row under the preview that names what is selected. Owned by the root view. Main thread.
#pragma once

#include <QtWidgets/QLabel>
#include <cstddef>
#include <optional>
#include <string>

#include "core/island/IslandLayoutMetrics.h"

#include "desktop/views/island/IslandPalette.h"

namespace quenlio {

class MetaRow final : public QLabel {
 public:
  explicit MetaRow(QWidget* parent);
  void apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics);
  void show(std::size_t selectedCount, const std::optional<std::string>& fileName);

 protected:
  // The text as it fits, cut in the middle: a capture's name differs at its end.
  void paintEvent(QPaintEvent* event) override;

 private:
  IslandPalette palette_;
};

}  // namespace quenlio
