// A fresh folder that is removed with this object, and plain file operations that throw on failure, made with the
// system's own calls and not with the code under test.
#pragma once

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "core/base/FileURL.h"
#include "core/platform/Scheduler.h"

#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

inline void check(bool isGood, const std::string& what) {
  if (!isGood) {
    throw std::system_error(errno, std::generic_category(), what);
  }
}

inline FileURL operator/(const FileURL& folder, std::string_view name) {
  return folder.appending(name);
}

class TemporaryFolder {
 public:
  explicit TemporaryFolder(std::string parent = std::filesystem::temp_directory_path().string()) {
    std::string path = std::move(parent) + "/quenlio-test-XXXXXX";
    check(::mkdtemp(path.data()) != nullptr, path);
    url_ = FileURL(path);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(url_.path(), ignored);
  }

  [[nodiscard]] const FileURL& url() const { return url_; }
  [[nodiscard]] FileURL operator/(std::string_view name) const { return url_.appending(name); }

 private:
  FileURL url_;
};

inline void writeFile(const FileURL& url, std::string_view bytes) {
  const UniqueFd fd(::open(url.path().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
  check(static_cast<bool>(fd), url.path());
  check(::write(fd.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), url.path());
}

inline std::string contents(const FileURL& url) {
  std::ifstream stream(url.path(), std::ios::binary);
  check(stream.good(), url.path());
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline bool exists(const FileURL& url) {
  struct stat status {};
  return ::lstat(url.path().c_str(), &status) == 0;
}

inline std::size_t entryCount(const FileURL& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

// A wall clock that stands where it is put.
class StandingClock final : public Clock {
 public:
  explicit StandingClock(Date now) : now_(now) {}
  [[nodiscard]] Date now() const override { return now_; }
  [[nodiscard]] std::chrono::nanoseconds monotonic() const override { return now_.time_since_epoch(); }
  void set(Date now) { now_ = now; }

 private:
  Date now_;
};

}  // namespace quenlio
