// Opens a path for reading only when a regular file is there. Fifos, sockets and devices are never opened, since
// opening one can block or set something off. Links are followed.
#pragma once

#include <cstdint>
#include <optional>
#include <sys/stat.h>

#include "core/base/Date.h"

#include "desktop/linux/system/ByteSource.h"
#include "desktop/linux/system/UniqueFd.h"

namespace quenlio {

// Which file it is and which state of its contents: two equal stamps mean that nothing was written in between.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  Date modified{};
  Date changed{};  // of the contents, the name or the attributes; no program can set it
  bool operator==(const FileStamp&) const = default;
};

[[nodiscard]] Date dateFromTimespec(const timespec& time);
[[nodiscard]] FileStamp stampOf(const struct stat& status);

// The path relative to the folder's descriptor, or to the working directory for AT_FDCWD. Nothing (an invalid
// descriptor) with errno set when it cannot be opened; EINVAL for what is no regular file.
[[nodiscard]] UniqueFd openRegularFile(int folder, const char* path);

// An open file. Its size is what it was at construction. The descriptor must outlive it.
class FileSource final : public ByteSource {
 public:
  FileSource(int fd, std::int64_t size) : fd_(fd), size_(size < 0 ? 0 : static_cast<std::uint64_t>(size)) {}
  [[nodiscard]] std::uint64_t size() const override { return size_; }

 private:
  bool readBytes(std::uint64_t offset, std::string& bytes) override;

  int fd_;
  std::uint64_t size_;
};

}  // namespace quenlio
