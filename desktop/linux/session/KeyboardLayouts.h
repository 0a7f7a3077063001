// The layouts of the keyboard, as the X server has them: what a key means in one that writes Latin letters, for
// shortcuts that are pressed while another one is active. Main thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace quenlio {

class KeyboardLayouts {
 public:
  // The symbols of one key in one layout: without and with Shift. The X server's numbers; 0 for none.
  using Symbols = std::array<std::uint32_t, 2>;

  // As they are now: one question to the server. Without an X server there are none.
  [[nodiscard]] static KeyboardLayouts current();

  // A layout with this key's symbols, by its code in the X server.
  void set(std::size_t layout, std::uint8_t keyCode, Symbols symbols);

  // The letter or sign of a key for shortcuts, where this layout is active; nothing when the layout writes Latin
  // letters itself, or the key means something of its own there. It comes from the first of the keyboard's layouts that
  // writes Latin letters, else from where the letters are on most keyboards.
  [[nodiscard]] std::optional<char> latinCharacter(std::size_t activeLayout, std::uint8_t keyCode,
                                                   bool isShifted) const;

 private:
  using Layout = std::array<Symbols, 256>;

  [[nodiscard]] static bool writesLatin(const Layout& layout);

  std::vector<Layout> layouts_;
};

}  // namespace quenlio
