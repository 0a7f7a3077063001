// The tooltips that are visible just then, and the one of them that is drawn: there is one bubble. Owned by the host.
// Main thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/Uuid.h"
#include "core/geometry/Geometry.h"
#include "core/tooltip/TooltipPlacement.h"

namespace quenlio {

struct TooltipEntry {
  Uuid id;
  std::string text;
  Rect<TooltipHostSpace> rect;  // the anchor's frame
  // Wins over those that are not, for as long as it is there: it tells why something was not done.
  bool isUrgent = false;
  bool operator==(const TooltipEntry&) const = default;
};

class TooltipEntries {
 public:
  // One more, or another text or place of one that is there.
  void report(TooltipEntry entry);
  void withdraw(const Uuid& id);
  // All but the urgent ones.
  void withdrawHelp();

  [[nodiscard]] bool contains(const Uuid& id) const;
  // The last one that came, of the urgent ones if there are any.
  [[nodiscard]] std::optional<TooltipEntry> active() const;

 private:
  std::vector<TooltipEntry> entries_;
};

}  // namespace quenlio
