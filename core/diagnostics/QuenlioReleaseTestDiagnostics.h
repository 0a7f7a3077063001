// Two files for an outside observer of a scripted run: state.json, replaced whole on each change, and events.jsonl, a
// log that only grows. Call it from anywhere, on any thread, at any time: when diagnostics are off, a call costs one
// test and leaves no trace. Owned by the composition root.
//
// One serial queue guards the state and both files, and callers wait for the write; loadPersistedState() alone goes
// past it and reads what is in the file. No failure is ever reported: diagnostics must not disturb the product.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "core/diagnostics/QuenlioReleaseTestConfiguration.h"
#include "core/diagnostics/QuenlioReleaseTestState.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

class FileContents;
class FileManager;

class QuenlioReleaseTestDiagnostics {
 public:
  using Mutation = std::function<void(QuenlioReleaseTestState&)>;

  // When enabled, makes the folder and writes the first state.json.
  QuenlioReleaseTestDiagnostics(QuenlioReleaseTestConfiguration configuration, Scheduler& scheduler, const Clock& clock,
                                FileManager& files, FileContents& contents);

  // The one that the composition root has bound.
  [[nodiscard]] static QuenlioReleaseTestDiagnostics& shared();

  // Switched on, and with a folder to write to.
  [[nodiscard]] bool isEnabled() const { return isEnabled_; }
  [[nodiscard]] const QuenlioReleaseTestConfiguration& configuration() const { return configuration_; }

  // Changes the state and writes it. The mutation is not called when diagnostics are off.
  void update(const Mutation& mutate);

  // Appends one event: a pretty-printed JSON object and a new line.
  void record(std::string_view event, const EventMetadata& metadata = {});

  // What state.json holds now. Nothing when it cannot be read, or when diagnostics are off.
  [[nodiscard]] std::optional<QuenlioReleaseTestState> loadPersistedState() const;

 private:
  // Runs the work on the queue and waits for it; at once when already there.
  void performOnQueue(const Task& work);
  void persistState();
  void ensureDirectoryExists();

  const QuenlioReleaseTestConfiguration configuration_;
  const bool isEnabled_;
  const Clock& clock_;
  FileManager& files_;
  FileContents& contents_;
  QuenlioReleaseTestState state_;       // on the queue
  std::unique_ptr<SerialQueue> queue_;  // "Quenlio.ReleaseTestDiagnostics"
};

}  // namespace quenlio
