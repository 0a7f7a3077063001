#include "desktop/linux/system/FolderReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

#include "desktop/linux/system/OpenDirectory.h"

namespace quenlio {
namespace {

constexpr std::size_t kBufferBytes = 64 * 1024;
// A folder that never stops changing must not keep the looks from being made.
constexpr int kMostReads = 64;
// Only while the system refuses every watch.
constexpr std::chrono::milliseconds kRetry{5000};

FinishedState lookAt(const FileURL& url, Date now) {
  struct stat status {};
  // A link is no file of its own: a tool that points "latest.png" at its newest file has not taken two screenshots.
  if (::lstat(url.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return {};
  }
  return finishedState(url, now);
}

// Signals belong to the main thread: one that starts with all of them blocked never takes any.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;
  ~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

std::unique_ptr<FolderReader> FolderReader::start(const FileURL& folder, const FSEventStreamOptions& options,
                                                  const Clock& clock, Deliver deliver) {
  std::unique_ptr<FolderReader> reader(new FolderReader(folder, options, clock, std::move(deliver)));
  const FolderWatch::State state = reader->ending_ ? reader->watch_.start() : FolderWatch::State::failed;
  if (state != FolderWatch::State::watching && state != FolderWatch::State::waiting) {
    return nullptr;
  }
  const BlockedSignals blocked;
  try {
    reader->thread_ = std::thread(&FolderReader::run, reader.get());
  } catch (const std::system_error&) {
    return nullptr;
  }
  return reader;
}

FolderReader::FolderReader(const FileURL& folder, const FSEventStreamOptions& options, const Clock& clock,
                           Deliver deliver)
    : folder_(folder),
      clock_(clock),
      deliver_(std::move(deliver)),
      watch_(folder),
      changes_(folder, options,
               [folder, &clock](const std::string& name) { return lookAt(folder.appending(name), clock.now()); }),
      ending_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      buffer_(kBufferBytes, '\0') {}

FolderReader::~FolderReader() {
  if (thread_.joinable()) {
    const std::uint64_t one = 1;
    (void)!::write(ending_.get(), &one, sizeof one);
    thread_.join();
  }
}

void FolderReader::run() {
  ::pthread_setname_np(::pthread_self(), "folder-events");
  findUnfinished();
  while (sleep()) {
    readEvents();
    followFolder();
    if (FSEventBatch batch = changes_.collect(clock_.monotonic()); batch.numEvents > 0) {
      deliver_(std::move(batch));
    }
  }
}

int FolderReader::timeout() const {
  if (watch_.state() == FolderWatch::State::failed) {
    return static_cast<int>(kRetry.count());
  }
  const auto next = changes_.nextLook();
  if (!next) {
    return -1;
  }
  const auto rest = std::chrono::ceil<std::chrono::milliseconds>(*next - clock_.monotonic());
  return static_cast<int>(std::clamp<std::int64_t>(rest.count(), 0, kRetry.count()));
}

bool FolderReader::sleep() {
  std::array<pollfd, 3> sources{pollfd{.fd = ending_.get(), .events = POLLIN, .revents = 0},
                                pollfd{.fd = watch_.descriptor(), .events = POLLIN, .revents = 0},
                                pollfd{.fd = watch_.mountsDescriptor(), .events = POLLPRI, .revents = 0}};
  const int ready = ::poll(sources.data(), sources.size(), timeout());
  if (ready > 0 && sources[2].revents != 0) {
    hasPlaceChanged_ = true;
  }
  return !(ready > 0 && sources[0].revents != 0);
}

void FolderReader::readEvents() {
  // All that is there before any look: a file that was made, removed and made again is looked at once.
  for (int i = 0; i < kMostReads; ++i) {
    const ssize_t got = ::read(watch_.descriptor(), buffer_.data(), buffer_.size());
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got <= 0) {
      return;
    }
    for (const InotifyEvent& event : parseInotifyEvents({buffer_.data(), static_cast<std::size_t>(got)})) {
      take(event);
    }
  }
}

void FolderReader::take(const InotifyEvent& event) {
  switch (watch_.meaning(event)) {
    case FolderWatch::Meaning::nothing:
      break;
    case FolderWatch::Meaning::entryChanged:
      changes_.note(event, clock_.monotonic());
      break;
    case FolderWatch::Meaning::lost:
      hasLost_ = true;
      break;
    case FolderWatch::Meaning::placeChanged:
      hasPlaceChanged_ = true;
      break;
  }
}

void FolderReader::followFolder() {
  if (std::exchange(hasPlaceChanged_, false) || watch_.state() == FolderWatch::State::failed) {
    hasLost_ = watch_.refresh() || hasLost_;
  }
  if (std::exchange(hasLost_, false)) {
    changes_.noteLost();
    findUnfinished();
  }
}

void FolderReader::findUnfinished() {
  const OpenDirectory directory(::opendir(folder_.path().c_str()));
  if (directory == nullptr) {
    return;
  }
  const Date now = clock_.now();
  while (const dirent* entry = nextEntry(directory)) {
    struct stat status {};
    if (entry->d_name[0] == '.' ||
        ::fstatat(::dirfd(directory.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
      continue;
    }
    // The old ones are finished, or empty and heard of when they are written: a look at each would take its time.
    const FileStamp stamp = stampOf(status);
    if (untilSettled(stamp.modified, stamp.changed, now) > Seconds::zero()) {
      changes_.noteFound(entry->d_name, clock_.monotonic());
    }
  }
}

}  // namespace quenlio
