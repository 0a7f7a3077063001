#include "core/detection/CandidateFiles.h"

#include <algorithm>
#include <chrono>

#include "core/base/ImageExtensions.h"
#include "core/platform/FileManager.h"
#include "core/platform/Scheduler.h"

namespace quenlio {
namespace {

using namespace std::chrono_literals;

constexpr auto kCreationDateTolerance = 4s;
constexpr Seconds kLookInterval = 0.03s;
constexpr int kLastAttemptWithoutFile = 19;  // a later look that finds no file gives up
constexpr int kLastAttempt = 39;             // a later look that is not satisfied gives up

}  // namespace

void CandidateFiles::watch(const FileURL& folder, Date startupDate) {
  folder_ = folder;
  startupDate_ = startupDate;
  const auto existing = existingImagePaths();
  knownPaths_ = {existing.begin(), existing.end()};
  pendingPaths_.clear();
}

void CandidateFiles::scanDirectory() {
  for (const std::string& path : existingImagePaths()) {
    processCandidatePath(FileURL(path));
  }
}

std::vector<std::string> CandidateFiles::existingImagePaths() const {
  std::vector<std::string> paths;
  if (!folder_) {
    return paths;
  }
  const auto contents = dependencies_.files.contentsOfDirectoryAtURL(*folder_, HiddenFiles::skip);
  if (!contents.ok()) {
    return paths;
  }
  for (const DirectoryEntry& entry : contents.value()) {
    if (hasImageExtension(entry.url) && entry.isRegularFile.value_or(false)) {
      paths.push_back(entry.url.path());
    }
  }
  return paths;
}

void CandidateFiles::handleFileEvents(const FSEventBatch& batch) {
  if (batch.numEvents < 1) {
    return;
  }
  const auto count = static_cast<std::size_t>(batch.numEvents);
  // Paths and flags cannot be matched up then: the listing tells what is there.
  if (!batch.paths || batch.paths->size() < count) {
    scanDirectory();
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    const auto& path = (*batch.paths)[i];
    if (!path) {
      continue;
    }
    const FileURL url(*path);
    const FSEventFlags flags = batch.flags && i < batch.flags->size() ? (*batch.flags)[i] : 0;
    if ((flags & kFSEventStreamEventFlagMustScanSubDirs) != 0) {
      scanDirectory();
    } else if ((flags & kFSEventStreamEventFlagItemRemoved) != 0) {
      knownPaths_.erase(url.path());
      stopLooking(url.path());
    } else {
      processCandidatePath(url);
    }
  }
}

void CandidateFiles::processCandidatePath(const FileURL& url) {
  if (!hasImageExtension(url)) {
    return;
  }
  // Nearly every path of a listing has been seen, which is cheaper to find out than whether it lies in the folder.
  if (knownPaths_.contains(url.path())) {
    return;
  }
  if (!folder_ || url.parent().standardized() != folder_->standardized()) {
    return;
  }
  // From here on the path counts as seen, whatever follows: one candidate is judged once.
  knownPaths_.insert(url.path());
  if (!wasCreatedRecently(url) || pendingPaths_.contains(url.path())) {
    return;
  }
  pendingPaths_[url.path()] = {};
  looksUnderWay_[url.path()] = ++lastLooksID_;
  emitWhenFileExists({url, lastLooksID_}, 0);
}

bool CandidateFiles::wasCreatedRecently(const FileURL& url) const {
  const auto attributes = dependencies_.files.attributesOfItemAtPath(url);
  const auto created = attributes.ok() ? attributes.value().creationDate : std::nullopt;
  return !created || *created >= startupDate_ - kCreationDateTolerance;
}

std::optional<std::int64_t> CandidateFiles::fileSize(const FileURL& url) const {
  const auto attributes = dependencies_.files.attributesOfItemAtPath(url);
  return attributes.ok() ? attributes.value().size : std::nullopt;
}

void CandidateFiles::stopLooking(const std::string& path) {
  pendingPaths_.erase(path);
  looksUnderWay_.erase(path);
}

void CandidateFiles::emitWhenFileExists(const Looks& looks, int attempt) {
  dependencies_.queue.after(kLookInterval, [weak = weak_from_this(), looks, attempt] {
    if (const auto self = weak.lock()) {
      self->look(looks, attempt);
    }
  });
}

void CandidateFiles::look(const Looks& looks, int attempt) {
  using Answer = ScreenshotFileClassifier::Answer;
  const FileURL& url = looks.url;
  const auto underWay = looksUnderWay_.find(url.path());
  if (underWay == looksUnderWay_.end() || underWay->second != looks.id) {
    return;  // the file was removed, or is looked at anew
  }
  const auto lookAgainUnless = [&](bool isOver) {
    if (isOver) {
      stopLooking(url.path());
    } else {
      emitWhenFileExists(looks, attempt + 1);
    }
  };
  if (!dependencies_.files.fileExistsAtPath(url)) {
    return lookAgainUnless(attempt > kLastAttemptWithoutFile);
  }
  const auto size = fileSize(url);
  if (!size) {
    return lookAgainUnless(attempt > kLastAttempt);
  }
  ScreenshotFileReadinessState& state = pendingPaths_[url.path()];
  state.observe(*size);
  if (!state.isStable()) {
    return lookAgainUnless(attempt > kLastAttempt);
  }
  const Answer answer = ScreenshotFileClassifier::isScreenshot(dependencies_.metadata, url);
  if (answer != Answer::yes) {
    return lookAgainUnless(answer == Answer::no || attempt > kLastAttempt);
  }
  stopLooking(url.path());
  knownPaths_.insert(url.path());  // a restart may have forgotten it meanwhile
  dependencies_.emit(url);
}

}  // namespace quenlio
