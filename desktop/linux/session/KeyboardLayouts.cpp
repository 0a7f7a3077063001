#include "desktop/linux/session/KeyboardLayouts.h"

#include <algorithm>
#include <string_view>

// Its header has a field of a name that C++ keeps for itself.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include "desktop/linux/session/X11.h"

namespace quenlio {
namespace {

// The three rows of letters, on the keyboards of most countries: the first key's code, and what the row holds.
struct Row {
  std::uint8_t first;
  std::string_view letters;
};
constexpr std::array kRows{Row{24, "qwertyuiop"}, Row{38, "asdfghjkl"}, Row{52, "zxcvbnm"}};

bool isLetter(std::uint32_t symbol) {
  return (symbol >= 'a' && symbol <= 'z') || (symbol >= 'A' && symbol <= 'Z');
}

bool isASCII(std::uint32_t symbol) {
  return symbol > 0x20 && symbol < 0x7f;
}

std::optional<char> usualLetter(std::uint8_t keyCode, bool isShifted) {
  for (const Row& row : kRows) {
    if (keyCode >= row.first && keyCode < row.first + row.letters.size()) {
      const char letter = row.letters[static_cast<std::size_t>(keyCode - row.first)];
      return isShifted ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
  }
  return std::nullopt;
}

bool useExtension() {
  const auto cookie = xcb_xkb_use_extension(x11::connection(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
  const x11::Reply<xcb_xkb_use_extension_reply_t> reply(
      xcb_xkb_use_extension_reply(x11::connection(), cookie, nullptr));
  return reply && reply->supported != 0;
}

x11::Reply<xcb_xkb_get_map_reply_t> askForSymbols() {
  const auto cookie = xcb_xkb_get_map(x11::connection(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0, 0, 0, 0,
                                      0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  return x11::Reply<xcb_xkb_get_map_reply_t>(xcb_xkb_get_map_reply(x11::connection(), cookie, nullptr));
}

}  // namespace

KeyboardLayouts KeyboardLayouts::current() {
  KeyboardLayouts layouts;
  const auto reply = x11::connection() != nullptr && useExtension() ? askForSymbols() : nullptr;
  if (!reply) {
    return layouts;
  }
  xcb_xkb_get_map_map_t map{};
  xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(reply.get()), reply->nTypes, reply->nKeySyms, reply->nKeyActions,
                             reply->totalActions, reply->totalKeyBehaviors, reply->virtualMods, reply->totalKeyExplicit,
                             reply->totalModMapKeys, reply->totalVModMapKeys, reply->present, &map);
  auto keys = xcb_xkb_get_map_map_syms_rtrn_iterator(reply.get(), &map);
  for (std::uint32_t keyCode = reply->firstKeySym; keys.rem > 0; xcb_xkb_key_sym_map_next(&keys), ++keyCode) {
    constexpr unsigned groups = 0xf;  // the other bits tell what lies beyond the last one
    const std::uint32_t* symbols = xcb_xkb_key_sym_map_syms(keys.data);
    const std::size_t width = keys.data->width;
    for (std::size_t layout = 0; layout < (keys.data->groupInfo & groups) && width > 0; ++layout) {
      const std::uint32_t plain = symbols[layout * width];
      layouts.set(layout, static_cast<std::uint8_t>(keyCode), {plain, width > 1 ? symbols[layout * width + 1] : plain});
    }
  }
  return layouts;
}

void KeyboardLayouts::set(std::size_t layout, std::uint8_t keyCode, Symbols symbols) {
  if (layouts_.size() <= layout) {
    layouts_.resize(layout + 1);
  }
  layouts_[layout].at(keyCode) = symbols;
}

std::optional<char> KeyboardLayouts::latinCharacter(std::size_t activeLayout, std::uint8_t keyCode,
                                                    bool isShifted) const {
  if (activeLayout >= layouts_.size() || writesLatin(layouts_[activeLayout])) {
    return std::nullopt;
  }
  const std::size_t level = isShifted ? 1 : 0;
  const std::uint32_t own = layouts_[activeLayout].at(keyCode).at(level);
  const auto latin = std::ranges::find_if(layouts_, writesLatin);
  if (latin == layouts_.end()) {
    return isASCII(own) ? std::nullopt : usualLetter(keyCode, isShifted);
  }
  const std::uint32_t symbol = latin->at(keyCode).at(level);
  return isLetter(symbol) || (isASCII(symbol) && !isASCII(own)) ? std::optional(static_cast<char>(symbol))
                                                                : std::nullopt;
}

// Some layouts lack a letter or two.
bool KeyboardLayouts::writesLatin(const Layout& layout) {
  constexpr std::ptrdiff_t most = 20;
  return std::ranges::count_if(
             layout, [](const Symbols& symbols) { return symbols.front() >= 'a' && symbols.front() <= 'z'; }) >= most;
}

}  // namespace quenlio
