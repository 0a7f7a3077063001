#include "desktop/linux/session/KeyTranslation.h"

#include <QtGui/QKeyEvent>
#include <algorithm>
#include <array>
#include <string>

#include "desktop/linux/session/KeyboardLayouts.h"

namespace quenlio {
namespace {

struct KeyPair {
  std::uint16_t evdev;
  std::uint16_t virtualKey;
};

// clang-format off
constexpr KeyPair kKeys[] = {
    // Escape and the digits' row.
    {1, 53}, {2, 18}, {3, 19}, {4, 20}, {5, 21}, {6, 23}, {7, 22}, {8, 26}, {9, 28}, {10, 25}, {11, 29},
    {12, 27}, {13, 24}, {14, 51},
    // Tab and the upper letters' row.
    {15, 48}, {16, 12}, {17, 13}, {18, 14}, {19, 15}, {20, 17}, {21, 16}, {22, 32}, {23, 34}, {24, 31}, {25, 35},
    {26, 33}, {27, 30}, {28, 36},
    // Left Control, which is this desktop's command key, and the middle letters' row.
    {29, 55}, {30, 0}, {31, 1}, {32, 2}, {33, 3}, {34, 5}, {35, 4}, {36, 38}, {37, 40}, {38, 37}, {39, 41},
    {40, 39}, {41, 50}, {42, 56}, {43, 42},
    // The lower letters' row, Alt, Space, Caps Lock.
    {44, 6}, {45, 7}, {46, 8}, {47, 9}, {48, 11}, {49, 45}, {50, 46}, {51, 43}, {52, 47}, {53, 44}, {54, 60},
    {56, 58}, {57, 49}, {58, 57}, {86, 10},
    // Function keys.
    {59, 122}, {60, 120}, {61, 99}, {62, 118}, {63, 96}, {64, 97}, {65, 98}, {66, 100}, {67, 101}, {68, 109},
    {87, 103}, {88, 111}, {183, 105}, {184, 107}, {185, 113}, {186, 106}, {187, 64}, {188, 79}, {189, 80}, {190, 90},
    // Keypad.
    {55, 67}, {69, 71}, {71, 89}, {72, 91}, {73, 92}, {74, 78}, {75, 86}, {76, 87}, {77, 88}, {78, 69}, {79, 83},
    {80, 84}, {81, 85}, {82, 82}, {83, 65}, {96, 76}, {98, 75}, {117, 81},
    // Right-hand modifiers, and Super, which is this desktop's control key.
    {97, 54}, {100, 61}, {125, 59}, {126, 62},
    // Moving and editing.
    {102, 115}, {103, 126}, {104, 116}, {105, 123}, {106, 124}, {107, 119}, {108, 125}, {109, 121}, {110, 114},
    {111, 117},
};
// clang-format on

struct NamedKey {
  int key;
  const char* characters;
};

// UTF-8; the function keys' characters stand from U+F700 on.
constexpr NamedKey kNamedKeys[] = {
    {Qt::Key_Return, "\r"},
    {Qt::Key_Enter, "\x03"},
    {Qt::Key_Tab, "\t"},
    {Qt::Key_Backtab, "\x19"},
    {Qt::Key_Escape, "\x1b"},
    {Qt::Key_Backspace, "\x7f"},
    {Qt::Key_Space, " "},
    {Qt::Key_Up, "\xef\x9c\x80"},
    {Qt::Key_Down, "\xef\x9c\x81"},
    {Qt::Key_Left, "\xef\x9c\x82"},
    {Qt::Key_Right, "\xef\x9c\x83"},
    {Qt::Key_Insert, "\xef\x9c\xa7"},
    {Qt::Key_Delete, "\xef\x9c\xa8"},
    {Qt::Key_Home, "\xef\x9c\xa9"},
    {Qt::Key_End, "\xef\x9c\xab"},
    {Qt::Key_PageUp, "\xef\x9c\xac"},
    {Qt::Key_PageDown, "\xef\x9c\xad"},
};

// The X server's name of a character is the character itself in Latin-1, or lies by this much above its code point.
constexpr quint32 kUnicodeKeysym = 0x01000000;

std::optional<QString> characterOfKeysym(quint32 keysym) {
  const bool latin = (keysym >= 0x20 && keysym < 0x7f) || (keysym >= 0xa0 && keysym <= 0xff);
  if (latin) {
    return QString(QChar(static_cast<char16_t>(keysym)));
  }
  if (keysym > kUnicodeKeysym && keysym <= kUnicodeKeysym + 0x10ffff) {
    const char32_t codePoint = keysym - kUnicodeKeysym;
    return QString::fromUcs4(&codePoint, 1);
  }
  return std::nullopt;
}

// What the key gives in a layout of Latin letters, where the active one has none.
std::optional<std::string> latinCharacterOf(const QKeyEvent& event) {
  constexpr quint32 lock = 2;
  constexpr quint32 layoutShift = 13;  // of the two bits that tell the active layout
  const quint32 state = event.nativeModifiers();
  const quint32 keyCode = event.nativeScanCode();
  if (keyCode <= kX11KeyCodeOffset || keyCode > 0xff) {
    return std::nullopt;
  }
  const bool isShifted = event.modifiers().testFlag(Qt::ShiftModifier) != ((state & lock) != 0);
  const auto character = KeyboardLayouts::current().latinCharacter(state >> layoutShift & 3U,
                                                                   static_cast<std::uint8_t>(keyCode), isShifted);
  return character ? std::optional(std::string(1, *character)) : std::nullopt;
}

std::optional<std::string> charactersOf(const QKeyEvent& event) {
  const auto* named = std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys),
                                   [&event](const NamedKey& key) { return key.key == event.key(); });
  if (named != std::end(kNamedKeys)) {
    return named->characters;
  }
  if (auto latin = latinCharacterOf(event)) {
    return latin;
  }
  // The text itself holds what Control made of the key, such as U+0003 for C.
  if (const auto character = characterOfKeysym(event.nativeVirtualKey())) {
    return character->toStdString();
  }
  if (!event.text().isEmpty() && event.text().at(0).isPrint()) {
    return event.text().toStdString();
  }
  const int key = event.key();
  if (key > 0x20 && key < 0x7f) {
    const QString letter = QString(QChar(static_cast<char16_t>(key)));
    return (event.modifiers().testFlag(Qt::ShiftModifier) ? letter : letter.toLower()).toStdString();
  }
  return std::nullopt;
}

}  // namespace

std::uint16_t virtualKeyCodeFromEvdev(std::uint32_t evdevCode) {
  const auto* found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                   [evdevCode](const KeyPair& pair) { return pair.evdev == evdevCode; });
  return found != std::end(kKeys) ? found->virtualKey : kUnknownKeyCode;
}

std::optional<std::uint32_t> evdevCodeFromVirtualKeyCode(std::uint32_t virtualKeyCode) {
  const auto* found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                   [virtualKeyCode](const KeyPair& pair) { return pair.virtualKey == virtualKeyCode; });
  return found != std::end(kKeys) ? std::optional<std::uint32_t>(found->evdev) : std::nullopt;
}

ModifierFlags modifierFlagsFrom(Qt::KeyboardModifiers modifiers) {
  ModifierFlags flags = 0;
  flags |= modifiers.testFlag(Qt::ShiftModifier) ? kModifierShift : 0;
  flags |= modifiers.testFlag(Qt::ControlModifier) ? kModifierCommand : 0;
  flags |= modifiers.testFlag(Qt::MetaModifier) ? kModifierControl : 0;
  flags |= modifiers.testFlag(Qt::AltModifier) ? kModifierOption : 0;
  return flags;
}

KeyEvent keyEventFrom(const QKeyEvent& event) {
  const quint32 native = event.nativeScanCode();
  return {.modifierFlags = modifierFlagsFrom(event.modifiers()),
          .keyCode = native > kX11KeyCodeOffset ? virtualKeyCodeFromEvdev(native - kX11KeyCodeOffset) : kUnknownKeyCode,
          .charactersIgnoringModifiers = charactersOf(event),
          .isARepeat = event.isAutoRepeat()};
}

}  // namespace quenlio
