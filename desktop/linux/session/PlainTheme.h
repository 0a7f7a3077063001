// Keeps Qt from loading another toolkit for the look of its dialogs: on desktops made with GTK it would take in the
// whole of that, which is more memory than all of this program. Made before the application object and gone right after
// it; main thread.
#pragma once

#include <QtCore/QByteArray>
#include <array>
#include <optional>

namespace quenlio {

class PlainTheme {
 public:
  // Has the desktop's own dialogs come through its portal instead, unless the user has chosen a theme. Qt tells the
  // desktop by its name, which is out of the environment meanwhile.
  PlainTheme();
  PlainTheme(const PlainTheme&) = delete;
  PlainTheme& operator=(const PlainTheme&) = delete;
  ~PlainTheme();

 private:
  bool isSet_ = false;
  std::array<std::optional<QByteArray>, 3> hidden_;
};

}  // namespace quenlio
