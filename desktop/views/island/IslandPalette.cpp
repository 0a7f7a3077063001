#include "desktop/views/island/IslandPalette.h"

#include <array>

namespace quenlio {
namespace {

constexpr std::array kColours{
    &IslandPalette::tone,          &IslandPalette::bodyTop,         &IslandPalette::bodyBottom,
    &IslandPalette::edgeTop,       &IslandPalette::edgeBottom,      &IslandPalette::textPrimary,
    &IslandPalette::textSecondary, &IslandPalette::wellFill,        &IslandPalette::wellStroke,
    &IslandPalette::plateFill,     &IslandPalette::thumbnailStroke, &IslandPalette::selectedStroke,
    &IslandPalette::controlFill,   &IslandPalette::glyph,           &IslandPalette::grip,
    &IslandPalette::accent,        &IslandPalette::accentText};
static_assert(sizeof(IslandPalette) == kColours.size() * sizeof(QColor), "a colour would not be mixed");

QColor mixed(const QColor& from, const QColor& to, double share) {
  const auto channel = [share](float a, float b) { return static_cast<float>(a + (b - a) * share); };
  return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                          channel(from.blueF(), to.blueF()), channel(from.alphaF(), to.alphaF()));
}

QColor white(double opacity) {
  return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}
QColor black(double opacity) {
  return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
}

IslandPalette dark(bool contrast) {
  return {.tone = QColor(0x22, 0x24, 0x2a),
          .bodyTop = QColor(0x2c, 0x2f, 0x37, contrast ? 252 : 240),
          .bodyBottom = QColor(0x1b, 0x1d, 0x22, contrast ? 252 : 244),
          .edgeTop = white(contrast ? 0.44 : 0.24),
          .edgeBottom = white(contrast ? 0.30 : 0.10),
          .textPrimary = white(contrast ? 0.98 : 0.94),
          .textSecondary = white(contrast ? 0.84 : 0.66),
          .wellFill = black(contrast ? 0.40 : 0.28),
          .wellStroke = white(contrast ? 0.24 : 0.10),
          .plateFill = white(contrast ? 0.14 : 0.08),
          .thumbnailStroke = white(contrast ? 0.34 : 0.18),
          .selectedStroke = white(contrast ? 1.0 : 0.92),
          .controlFill = white(contrast ? 0.22 : 0.14),
          .glyph = white(contrast ? 0.97 : 0.80),
          .grip = white(contrast ? 0.50 : 0.24),
          .accent = QColor(0x4c, 0x8d, 0xff),
          .accentText = white(1)};
}

IslandPalette light(bool contrast) {
  return {.tone = QColor(0xf3, 0xf4, 0xf7),
          .bodyTop = QColor(0xfd, 0xfd, 0xfe, contrast ? 252 : 240),
          .bodyBottom = QColor(0xec, 0xee, 0xf2, contrast ? 252 : 244),
          .edgeTop = black(contrast ? 0.30 : 0.12),
          .edgeBottom = black(contrast ? 0.42 : 0.20),
          .textPrimary = black(contrast ? 0.92 : 0.84),
          .textSecondary = black(contrast ? 0.74 : 0.58),
          .wellFill = black(contrast ? 0.09 : 0.055),
          .wellStroke = black(contrast ? 0.22 : 0.08),
          .plateFill = black(contrast ? 0.09 : 0.05),
          .thumbnailStroke = black(contrast ? 0.32 : 0.16),
          .selectedStroke = black(contrast ? 0.92 : 0.78),
          .controlFill = black(contrast ? 0.14 : 0.08),
          .glyph = black(contrast ? 0.86 : 0.66),
          .grip = black(contrast ? 0.44 : 0.20),
          .accent = QColor(0x1f, 0x6f, 0xeb),
          .accentText = white(1)};
}

}  // namespace

IslandPalette IslandPalette::forAppearance(IslandAppearanceStyle style, bool increaseContrast) {
  return style == IslandAppearanceStyle::dark ? dark(increaseContrast) : light(increaseContrast);
}

IslandPalette IslandPalette::between(const IslandPalette& from, const IslandPalette& to, double share) {
  IslandPalette result = to;
  if (share < 1) {
    for (const auto colour : kColours) {
      result.*colour = mixed(from.*colour, to.*colour, share);
    }
  }
  return result;
}

}  // namespace quenlio
