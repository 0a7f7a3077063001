// The one global key of the program, which toggles the island. Main thread; owned by the composition root.
#pragma once

#include <functional>

#include "core/platform/HotKeys.h"

namespace quenlio {

class SystemLog;

class IslandHotKey {
 public:
  IslandHotKey(HotKeys& hotKeys, SystemLog& log) : hotKeys_(hotKeys), log_(log) {}
  IslandHotKey(const IslandHotKey&) = delete;
  IslandHotKey& operator=(const IslandHotKey&) = delete;
  ~IslandHotKey() { unregister(); }

  // Registers anew. When the key or its handler cannot be had, the reason is logged and there is neither: never a key
  // that leads nowhere. The handler answers with a status.
  void registerIslandOpenHotKey(std::function<OSStatus()> pressed);
  void unregister();

 private:
  HotKeys& hotKeys_;
  SystemLog& log_;
  EventHotKeyRef islandHotKeyRef_ = 0;
  EventHandlerRef islandHotKeyHandlerRef_ = 0;
};

}  // namespace quenlio
