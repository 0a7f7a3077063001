// Decodes a picture in a short-lived process of its own, for the formats whose libraries are large, rarely needed and a
// common way to attack a program. Whatever happens there costs that one picture. Immutable; any thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "core/base/FileURL.h"

#include "desktop/render/DecodedImage.h"
#include "desktop/render/PictureFile.h"
#include "desktop/render/Placement.h"

namespace quenlio {

class ChildDecoder {
 public:
  // The program, and how long it may take before it is killed.
  explicit ChildDecoder(FileURL program, std::chrono::milliseconds patience = std::chrono::seconds(15))
      : program_(std::move(program)), patience_(patience) {}

  // Starts the program on the open file, waits for its answer and holds it against what was asked for. Nothing when
  // there is no such program, it crashes, is too slow, or answers anything else than one whole picture.
  [[nodiscard]] std::optional<DecodedImage> decode(int descriptor, PictureKind kind, const Fit& fit) const;

 private:
  FileURL program_;
  std::chrono::milliseconds patience_;
};

}  // namespace quenlio
