// What the program and its decoding child say to each other. Both are of one build.
//
// The child is started as `quenlio-decoder KIND WIDTH HEIGHT MODE` with the file as its standard input. It answers on
// its standard output with one header and the rows of an ARGB32_Premultiplied picture without gaps, or not at all.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

#include "desktop/render/PictureFile.h"
#include "desktop/render/Placement.h"

namespace quenlio::decoder {

struct Header {
  static constexpr std::array<char, 8> kMagic{'Q', 'N', 'L', 'I', 'M', 'G', '0', '1'};
  std::array<char, 8> magic = kMagic;
  std::int32_t width = 0;  // pixels
  std::int32_t height = 0;
  double pointWidth = 0;  // of the picture in the file
  double pointHeight = 0;
};

struct NamedKind {
  std::string_view name;
  PictureKind kind;
};
inline constexpr std::array<NamedKind, 5> kKinds{{{"png", PictureKind::png},
                                                  {"jpeg", PictureKind::jpeg},
                                                  {"heic", PictureKind::heic},
                                                  {"tiff", PictureKind::tiff},
                                                  {"pdf", PictureKind::pdf}}};

struct NamedMode {
  std::string_view name;
  Fit::Mode mode;
};
inline constexpr std::array<NamedMode, 3> kModes{
    {{"within", Fit::Mode::within}, {"within-enlarging", Fit::Mode::withinEnlarging}, {"centred", Fit::Mode::centred}}};

// A whole number without anything around it.
[[nodiscard]] inline std::optional<int> parseNumber(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

}  // namespace quenlio::decoder
