// The desktop's dialog for choosing a file or a folder. Main thread; modal.
#pragma once

#include "core/platform/OpenPanel.h"

namespace quenlio {

class QtOpenPanel final : public OpenPanel {
 public:
  [[nodiscard]] std::optional<FileURL> runModal(const OpenPanelRequest& request) override;
};

}  // namespace quenlio
