// What stands under the preview while the library is empty. Owned by the root view. Main thread.
#pragma once

#include <QtWidgets/QLabel>

#include "core/island/IslandThemeTokens.h"
#include "core/settings/AppSettings.h"

namespace quenlio {

class EmptyStateDetails final : public QLabel {
 public:
  explicit EmptyStateDetails(QWidget* parent);
  void apply(const IslandThemeTokens& tokens, IslandSize size);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  // Makes all lines about equally long, in as few as there must be.
  void balance();
};

}  // namespace quenlio
