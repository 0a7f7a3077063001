// The connection to the X server that Qt holds, and the few things that are asked of it again and again. Main thread.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace quenlio::x11 {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
// What an xcb_..._reply() gives; the caller owns it.
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;

// What tells an event's kind in its response_type: the bit above tells whether another program has sent it.
inline constexpr std::uint8_t kEventNumber = 0x7f;

// As the number of a window's desktop.
inline constexpr std::uint32_t kAllDesktops = 0xffffffff;

// Null when the program does not run on X11 (the offscreen platform of some tests); every caller then leaves out what
// only a window manager or a compositor would see.
[[nodiscard]] xcb_connection_t* connection();

// Of the first screen: displays with several X screens, each its own desktop, are long gone. Only with a connection.
[[nodiscard]] xcb_window_t rootWindow();

// One round trip at the first use of a name, none later. Only with a connection.
[[nodiscard]] xcb_atom_t atom(const char* name);

}  // namespace quenlio::x11
