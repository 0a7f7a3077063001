#include "core/island/IslandLayoutMetrics.h"

#include <array>
#include <cstddef>

namespace quenlio {
namespace {

constexpr std::size_t kSizes = 5;

// clang-format off
// One column a size, from extraSmall to xLarge.
constexpr std::array<std::array<double, kSizes>, 23> kLengths{{
    {10, 12, 12, 12, 12},       // horizontalPadding
    {3, 4, 5, 7, 9},            // topPadding
    {0, 1, 2, 3, 4},            // bottomPadding
    {2, 2, 3, 4, 5},            // toolbarToPreviewSpacing
    {4, 4, 5, 5, 6},            // previewToMetaSpacing
    {2, 2, 3, 4, 4},            // metaToTraySpacing
    {22, 24, 24, 24, 24},       // cornerRadius
    {17, 18, 18, 18, 18},       // previewCornerRadius
    {30, 34, 34, 34, 34},       // toolbarHeight
    {128, 147, 209, 277, 345},  // previewHeight
    {0, 0, 0, 0, 0},            // previewHorizontalInset
    {24, 30, 34, 38, 42},       // thumbSize
    {9, 10, 10, 10, 10},        // thumbRadius
    {8, 10, 12, 12, 12},        // thumbSpacing
    {0, 0, 1, 2, 2},            // trayVerticalInset
    {26, 30, 34, 40, 45},       // trayHeight
    {24, 28, 30, 32, 34},       // metadataHeight
    {16, 18, 18, 18, 18},       // toolbarIconSize
    {24, 28, 30, 32, 32},       // toolbarControlSize
    {7, 12, 14, 18, 20},        // toolbarZoneSpacing
    {9, 14, 14, 14, 14},        // toolbarIconSpacing
    {0, 0, 0, 0, 0},            // toolbarContentInset
    {5, 6, 6, 6, 6},            // previewContentInset
}};
// clang-format on

constexpr std::array<double, kSizes> kPanelSides{232, 266, 340, 420, 500};

constexpr IslandLayoutMetrics column(std::size_t size) {
  const auto at = [size](std::size_t row) { return kLengths[row][size]; };
  return {.horizontalPadding = at(0),
          .topPadding = at(1),
          .bottomPadding = at(2),
          .toolbarToPreviewSpacing = at(3),
          .previewToMetaSpacing = at(4),
          .metaToTraySpacing = at(5),
          .cornerRadius = at(6),
          .previewCornerRadius = at(7),
          .toolbarHeight = at(8),
          .previewHeight = at(9),
          .previewHorizontalInset = at(10),
          .thumbSize = at(11),
          .thumbRadius = at(12),
          .thumbSpacing = at(13),
          .trayVerticalInset = at(14),
          .trayHeight = at(15),
          .metadataHeight = at(16),
          .toolbarIconSize = at(17),
          .toolbarControlSize = at(18),
          .toolbarZoneSpacing = at(19),
          .toolbarIconSpacing = at(20),
          .toolbarContentInset = at(21),
          .previewContentInset = at(22)};
}

constexpr std::array<IslandLayoutMetrics, kSizes> kMetrics{column(0), column(1), column(2), column(3), column(4)};

constexpr std::size_t indexOf(IslandSize size) {
  switch (size) {
    case IslandSize::extraSmall:
      return 0;
    case IslandSize::small:
      return 1;
    case IslandSize::medium:
      return 2;
    case IslandSize::large:
      return 3;
    case IslandSize::xLarge:
      return 4;
  }
  return 0;
}

}  // namespace

const IslandLayoutMetrics& IslandLayoutMetrics::forSize(IslandSize size) {
  return kMetrics[indexOf(size)];
}

double IslandLayoutMetrics::panelSide(IslandSize size) {
  return kPanelSides[indexOf(size)];
}

}  // namespace quenlio
