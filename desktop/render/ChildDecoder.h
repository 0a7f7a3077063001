// Decodes a picture in a short-lived process of its own, for the formats whose libraries are large, rarely needed and a
// common way to attack a program. Whatever happens there costs that one picture. Any thread, and several at once;
// copies share their children.
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>

#include "core/base/FileURL.h"

#include "desktop/render/DecodedImage.h"
#include "desktop/render/PictureFile.h"
#include "desktop/render/Placement.h"

namespace quenlio {

class ChildProcess;

class ChildDecoder {
 public:
  // The program, and how long it may take before it is killed.
  explicit ChildDecoder(FileURL program, std::chrono::milliseconds patience = std::chrono::seconds(15))
      : program_(std::move(program)), patience_(patience), children_(std::make_shared<Children>()) {}

  // Starts the program on the open file, waits for its answer and holds it against what was asked for. Nothing when
  // there is no such program, it crashes, is too slow, or answers anything else than one whole picture. A stop kills
  // it.
  [[nodiscard]] std::optional<DecodedImage> decode(int descriptor, PictureKind kind, const Fit& fit,
                                                   const std::stop_token& stop = {}) const;

  // For the end of the program: kills the children that run, and starts no more. Who waits for one has nothing, at
  // once.
  void stop() const;

 private:
  class Running;
  struct Children {
    std::mutex mutex;
    bool isStopped = false;                 // guarded by mutex
    std::set<const ChildProcess*> running;  // guarded by mutex
  };

  FileURL program_;
  std::chrono::milliseconds patience_;
  std::shared_ptr<Children> children_;
};

}  // namespace quenlio
