// The desktop's clipboard manager, which keeps what a program has copied when that program ends. Main thread.
#pragma once

#include <chrono>

namespace quenlio {

// Has the manager take over what this program has on the clipboard, and serves it meanwhile. False without a manager,
// when it declines, and when nothing is heard of it for so long. Some never answer, since they have read all there is
// as soon as it was copied, and take it over once nobody owns it.
[[nodiscard]] bool handOverClipboard(std::chrono::milliseconds patience = std::chrono::milliseconds(1000));

}  // namespace quenlio
