#include "desktop/views/common/LocalWording.h"

#include <QtCore/QStringList>
#include <algorithm>
#include <array>
#include <iterator>

namespace quenlio {
namespace {

struct Key {
  char16_t glyph;
  QLatin1String name;
};

// In the order that this desktop writes them in, whatever the order of the glyphs.
constexpr std::array kModifiers{
    Key{u'⌘', QLatin1String("Ctrl")},
    Key{u'⌃', QLatin1String("Super")},
    Key{u'⌥', QLatin1String("Alt")},
    Key{u'⇧', QLatin1String("Shift")},
};
constexpr std::array kKeys{
    Key{u'↩', QLatin1String("Enter")},  Key{u'⌅', QLatin1String("Enter")}, Key{u'⌫', QLatin1String("Backspace")},
    Key{u'⌦', QLatin1String("Delete")}, Key{u'⎋', QLatin1String("Esc")},   Key{u'⇥', QLatin1String("Tab")},
};

template <class Keys>
const Key* find(const Keys& keys, QChar glyph) {
  const auto* found = std::ranges::find(keys, glyph.unicode(), &Key::glyph);
  return found != std::end(keys) ? found : nullptr;
}

// What a modifier may be held together with.
bool isKey(QChar character) {
  return !character.isSpace() && character != u')' && character != u',' && character != u'.';
}

}  // namespace

QString localWording(std::string_view wording) {
  const QString text = QString::fromUtf8(wording);
  QString result;
  for (auto at = text.begin(); at != text.end();) {
    std::array<bool, kModifiers.size()> held{};
    for (const Key* modifier = nullptr; at != text.end() && (modifier = find(kModifiers, *at)) != nullptr; ++at) {
      held.at(static_cast<std::size_t>(modifier - kModifiers.data())) = true;
    }
    QStringList keys;
    for (std::size_t index = 0; index < kModifiers.size(); ++index) {
      if (held.at(index)) {
        keys += kModifiers.at(index).name;
      }
    }
    if (at != text.end() && (keys.isEmpty() || isKey(*at))) {
      const Key* key = find(kKeys, *at);
      keys += key != nullptr ? QString(key->name) : QString(*at);
      ++at;
    }
    result += keys.join(u'+');
  }
  return result;
}

}  // namespace quenlio
