#include "desktop/views/preview/PreviewPalette.h"

namespace quenlio {
namespace {

QColor white(double opacity) {
  return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}
QColor black(double opacity) {
  return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
}

PreviewPalette dark(bool contrast) {
  return {.tone = QColor(0x1e, 0x20, 0x25),
          .bodyTop = QColor(0x2a, 0x2d, 0x34, contrast ? 252 : 242),
          .bodyBottom = QColor(0x18, 0x1a, 0x1e, contrast ? 252 : 246),
          .edgeTop = white(contrast ? 0.44 : 0.22),
          .edgeBottom = white(contrast ? 0.30 : 0.10),
          .name = white(contrast ? 0.98 : 0.92),
          .detail = white(contrast ? 0.86 : 0.66),
          .well = black(contrast ? 0.40 : 0.26),
          .checker = Checker::forAppearance(true),
          .outline = white(contrast ? 0.34 : 0.12),
          .controlFill = white(contrast ? 0.22 : 0.13),
          .glyph = white(contrast ? 0.97 : 0.78),
          .focus = QColor(0x4c, 0x8d, 0xff)};
}

PreviewPalette light(bool contrast) {
  return {.tone = QColor(0xf1, 0xf2, 0xf5),
          .bodyTop = QColor(0xfb, 0xfb, 0xfd, contrast ? 252 : 242),
          .bodyBottom = QColor(0xe9, 0xeb, 0xef, contrast ? 252 : 246),
          .edgeTop = black(contrast ? 0.30 : 0.12),
          .edgeBottom = black(contrast ? 0.42 : 0.20),
          .name = black(contrast ? 0.94 : 0.86),
          .detail = black(contrast ? 0.78 : 0.62),
          .well = black(contrast ? 0.10 : 0.055),
          .checker = Checker::forAppearance(false),
          .outline = black(contrast ? 0.32 : 0.12),
          .controlFill = black(contrast ? 0.15 : 0.08),
          .glyph = black(contrast ? 0.88 : 0.66),
          .focus = QColor(0x1f, 0x6f, 0xeb)};
}

}  // namespace

PreviewPalette PreviewPalette::forAppearance(bool isDark, bool increasesContrast) {
  return isDark ? dark(increasesContrast) : light(increasesContrast);
}

}  // namespace quenlio
