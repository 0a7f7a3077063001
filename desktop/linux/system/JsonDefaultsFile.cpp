#include "desktop/linux/system/JsonDefaultsFile.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

#include "desktop/linux/system/FileTransfer.h"

namespace quenlio {
namespace {

// Settings may be private, so nobody else reads them.
constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// A change holds the lock for a few milliseconds. A process that was stopped while it held it must not stop us too: the
// main thread waits for it once, and not again before the pause is over.
constexpr std::chrono::milliseconds kPatience(200);
constexpr std::chrono::seconds kPause(5);

void makeFolder(const FileURL& folder) {
  std::error_code ignored;
  std::filesystem::create_directories(folder.parent().path(), ignored);
  ::mkdir(folder.path().c_str(), S_IRWXU);
}

std::optional<std::string> contentsOf(int fd) {
  std::string text;
  std::array<char, 16384> piece{};
  while (true) {
    const ssize_t got = ::read(fd, piece.data(), piece.size());
    if (got == 0) {
      return text;
    }
    if (got < 0 && errno != EINTR) {
      return std::nullopt;
    }
    text.append(piece.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
  }
}

}  // namespace

JsonDefaultsFile::JsonDefaultsFile(FileURL folder, std::string_view name)
    : folder_(std::move(folder)),
      file_(folder_.appending(std::string(name) + ".json")),
      lock_(folder_.appending(std::string(name) + ".lock")) {}

const json::Value& JsonDefaultsFile::entries() {
  const auto before = stamp_;
  refresh();
  if (condition_ == Condition::damaged && stamp_ != before) {
    // Looked at once more under the lock: another process may have put it aside and written a good one meanwhile.
    if (const UniqueFd lock = locked()) {
      refreshAndPutDamagedAside();
    }
  }
  return entries_;
}

bool JsonDefaultsFile::update(const std::function<void(json::Value&)>& edit) {
  // Without the lock first, so that a change that changes nothing leaves no trace.
  json::Value next = entries();
  edit(next);
  if (next == entries_ && condition_ != Condition::unreadable) {
    return true;
  }
  makeFolder(folder_);
  const UniqueFd lock = locked();
  if (!lock) {
    return false;
  }
  refreshAndPutDamagedAside();
  if (condition_ == Condition::damaged || condition_ == Condition::unreadable) {
    return false;
  }
  next = entries_;
  edit(next);
  return next == entries_ || replace(next);
}

void JsonDefaultsFile::refresh() {
  struct stat status {};
  if (::stat(file_.path().c_str(), &status) != 0) {
    stamp_.reset();
    held_.reset();
    const bool isAbsent = errno == ENOENT || errno == ENOTDIR;
    condition_ = isAbsent ? Condition::absent : Condition::unreadable;
    if (isAbsent) {
      entries_ = json::Value::object();
    }
    return;
  }
  if (!stamp_ || *stamp_ != stampOf(status)) {
    read();
  }
}

void JsonDefaultsFile::refreshAndPutDamagedAside() {
  refresh();
  if (condition_ == Condition::damaged && putAside()) {
    refresh();
  }
}

void JsonDefaultsFile::read() {
  condition_ = Condition::unreadable;
  stamp_.reset();
  held_ = openRegularFile(AT_FDCWD, file_.path().c_str());
  struct stat status {};
  if (!held_ || ::fstat(held_.get(), &status) != 0) {
    return;
  }
  const auto text = contentsOf(held_.get());
  if (!text) {
    return;
  }
  // The stamp is of before the reading: what is written in place meanwhile makes it differ.
  stamp_ = stampOf(status);
  auto value = json::read(*text);
  const bool isGood = value && value->is_object();
  condition_ = isGood ? Condition::good : Condition::damaged;
  entries_ = isGood ? std::move(*value) : json::Value::object();
}

bool JsonDefaultsFile::putAside() {
  constexpr int mostKept = 1000;
  const std::string aside = file_.path() + ".damaged";
  for (int number = 1; number <= mostKept; ++number) {
    const int error = renameWithoutReplacing(file_.path(), number == 1 ? aside : aside + "-" + std::to_string(number));
    if (error != EEXIST) {
      return error == 0;
    }
  }
  return false;
}

// Waits a little while another process holds it. Nothing when it cannot be had.
UniqueFd JsonDefaultsFile::locked() {
  UniqueFd lock(::open(lock_.path().c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kOwnerOnly));
  const auto start = std::chrono::steady_clock::now();
  while (lock && ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    const auto now = std::chrono::steady_clock::now();
    if ((errno != EWOULDBLOCK && errno != EINTR) || now < nextWait_) {
      return {};
    }
    if (now - start > kPatience) {
      nextWait_ = now + kPause;
      return {};
    }
    // Looks often: a process that writes again and again leaves the lock free for moments only.
    std::this_thread::sleep_for(std::chrono::microseconds(20));
  }
  return lock;
}

// Under the lock, so that one name is enough for the file that takes the old one's place, and what a killed process has
// left there is simply written over.
bool JsonDefaultsFile::replace(const json::Value& entries) {
  std::error_code error;
  // Where a link stands for the file, the file that it leads to is replaced.
  const auto target = std::filesystem::canonical(file_.path(), error);
  const std::string place = error ? file_.path() : target.string();
  const FileURL fresh = FileURL(place).parent().appending("." + file_.lastPathComponent() + ".new");
  UniqueFd out(::open(fresh.path().c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, kOwnerOnly));
  struct stat status {};
  if (!out || writeAll(out.get(), json::write(entries, json::Style::pretty) + "\n") != 0 ||
      ::rename(fresh.path().c_str(), place.c_str()) != 0 || ::fstat(out.get(), &status) != 0) {
    return false;
  }
  held_ = std::move(out);
  stamp_ = stampOf(status);
  entries_ = entries;
  condition_ = Condition::good;
  return true;
}

}  // namespace quenlio
