// Letters with files attached, written in whatever mail program the user has. Main thread.
#pragma once

#include <vector>

#include "core/base/FileURL.h"

#include "desktop/linux/session/ProgramStarter.h"

namespace quenlio {

// Whether a letter with attachments can be begun: by xdg-email, or by the desktop's portal.
[[nodiscard]] bool canComposeMail(const DesktopEntries& programs);

// Begins one and returns at once.
void composeMail(const std::vector<FileURL>& attachments, ProgramStarter& starter);

}  // namespace quenlio
