// Hears of each change of the screens: one that comes or goes, another size, place or scale, another primary one. Owned
// by who wants to know. Main thread, between the making and the end of the application object.
#pragma once

#include <QtCore/QObject>
#include <functional>

#include "core/base/WeakOwner.h"

QT_BEGIN_NAMESPACE
class QScreen;
QT_END_NAMESPACE

namespace quenlio {

class ScreenChanges final : private QObject {
 public:
  // The callback may come several times for one change, each time after Qt knows the new state.
  explicit ScreenChanges(std::function<void()> changed);

 private:
  void watch(const QScreen& screen);

  std::function<void()> changed_;
  WeakOwner<ScreenChanges> weak_{this};
};

}  // namespace quenlio
