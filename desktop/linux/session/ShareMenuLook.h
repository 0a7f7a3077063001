// How the share menu looks: rounded where a compositor blends, light or dark as the desktop is. Main thread.
#pragma once

#include <QtGui/QIcon>
#include <vector>

#include "desktop/linux/system/DesktopEntry.h"

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace quenlio {

struct ShareMenuLook {
  bool isDark = false;
  bool increasesContrast = false;
  bool isBlended = false;
};

// Before the menu is shown for the first time.
void dress(QMenu& menu, const ShareMenuLook& look);

// A program's own icon, from the icon theme or a file; its initial on a tile where there is none.
[[nodiscard]] QIcon iconOf(const DesktopEntry& entry, const std::vector<FileURL>& dataFolders);

}  // namespace quenlio
