// The screens as Qt knows them. A screen's number is a hash of its connector and serial, so that it stays the same when
// screens are plugged in another order. Main thread.
#pragma once

#include <QtCore/QtGlobal>
#include <cstdint>
#include <string_view>

#include "core/platform/Screens.h"

QT_BEGIN_NAMESPACE
class QScreen;
QT_END_NAMESPACE

namespace quenlio {

class QtScreens final : public Screens {
 public:
  [[nodiscard]] std::vector<ScreenInfo> screens() const override;
  // The primary screen.
  [[nodiscard]] std::optional<ScreenInfo> mainScreen() const override;
  // The centre of the pixel that the pointer is on.
  [[nodiscard]] Point<Screen> mouseLocation() const override;

  [[nodiscard]] static ScreenInfo infoFor(const QScreen& screen);
  // FNV-1a over both, with a zero byte between them.
  [[nodiscard]] static std::uint32_t screenNumber(std::string_view connector, std::string_view serial);
};

}  // namespace quenlio
