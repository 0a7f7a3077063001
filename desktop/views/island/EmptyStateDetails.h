// What stands under the preview while the library is empty. Owned by the root view. Main thread.
#pragma once

#include <QtWidgets/QLabel>

#include "core/island/IslandLayoutMetrics.h"

#include "desktop/views/island/IslandPalette.h"

namespace quenlio {

class EmptyStateDetails final : public QLabel {
 public:
  explicit EmptyStateDetails(QWidget* parent);
  void apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics);
};

}  // namespace quenlio
