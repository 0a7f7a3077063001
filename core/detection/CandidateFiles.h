// The files of the watched folder that have been seen, and those that are being looked at until they prove to be
// finished screenshots. Owned by ScreenshotWatcher; lives on the watcher's queue alone.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/base/Date.h"
#include "core/base/FileURL.h"
#include "core/detection/ScreenshotFileClassifier.h"
#include "core/platform/FSEventStream.h"

namespace quenlio {

class FileManager;
class FileMetadata;
class SerialQueue;

class CandidateFiles : public std::enable_shared_from_this<CandidateFiles> {
 public:
  struct Dependencies {
    SerialQueue& queue;
    const FileManager& files;
    const FileMetadata& metadata;
    std::function<void(const FileURL&)> emit;  // called on the queue
  };

  explicit CandidateFiles(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

  // Starts over on a folder: all images that lie in it now count as seen.
  void watch(const FileURL& folder, Date startupDate);
  void handleFileEvents(const FSEventBatch& batch);
  void scanDirectory();

 private:
  void processCandidatePath(const FileURL& url);
  [[nodiscard]] std::vector<std::string> existingImagePaths() const;
  [[nodiscard]] bool wasCreatedRecently(const FileURL& url) const;
  [[nodiscard]] std::optional<std::int64_t> fileSize(const FileURL& url) const;

  // One series of looks at a file. There is one at a time for each path.
  struct Looks {
    FileURL url;
    std::uint64_t id;
  };
  void emitWhenFileExists(const Looks& looks, int attempt);
  void look(const Looks& looks, int attempt);
  void stopLooking(const std::string& path);

  Dependencies dependencies_;
  std::optional<FileURL> folder_;
  Date startupDate_{};
  std::set<std::string> knownPaths_;
  std::map<std::string, ScreenshotFileReadinessState> pendingPaths_;
  // The series of looks under way. A later one for the same path takes the place of the earlier one, a removal ends it,
  // and a restart lets it run to its end: otherwise a file could be emitted twice, or a rewritten one half-written.
  std::map<std::string, std::uint64_t> looksUnderWay_;
  std::uint64_t lastLooksID_ = 0;
};

}  // namespace quenlio
