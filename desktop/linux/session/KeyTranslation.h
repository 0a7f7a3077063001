// Physical keys and modifiers between this desktop and the virtual key codes that the program speaks. Main thread, but
// for the tables of codes, which are pure.
//
// Letters come from the active layout where that has Latin ones, else from the first layout that has.
// Control is the command bit, Super the control bit and Alt the option bit, so that Control-C copies, as everyone here
// expects.
#pragma once

#include <QtCore/Qt>
#include <QtCore/QtGlobal>
#include <cstdint>
#include <optional>

#include "core/platform/Panel.h"

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace quenlio {

// What a key without a virtual key code of its own is given; no key has this one.
inline constexpr std::uint16_t kUnknownKeyCode = 0xffff;

// By the kernel's code of the key, which an X11 key code exceeds by eight.
[[nodiscard]] std::uint16_t virtualKeyCodeFromEvdev(std::uint32_t evdevCode);
[[nodiscard]] std::optional<std::uint32_t> evdevCodeFromVirtualKeyCode(std::uint32_t virtualKeyCode);

inline constexpr std::uint32_t kX11KeyCodeOffset = 8;

[[nodiscard]] ModifierFlags modifierFlagsFrom(Qt::KeyboardModifiers modifiers);

// The characters are those of the key with Shift alone; keys without a character give the control or function-key
// character that goes with these key codes.
[[nodiscard]] KeyEvent keyEventFrom(const QKeyEvent& event);

}  // namespace quenlio
