// The desktop's dialog for choosing a file or a folder. Main thread; modal.
//
// The dialog knows names as text: a file or folder whose path is not UTF-8 cannot be chosen through it.
#pragma once

#include "core/platform/OpenPanel.h"

namespace quenlio {

class QtOpenPanel final : public OpenPanel {
 public:
  [[nodiscard]] std::optional<FileURL> runModal(const OpenPanelRequest& request) override;
};

}  // namespace quenlio
