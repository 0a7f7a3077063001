// Whether a file is a screen capture, as far as the file itself can tell: the stand-in for the system's metadata query.
//
// No for what our own operations have just put there and for a camera's picture; yes when a tool left its mark in the
// file, when our own mark is on it, when its name is one that a tool gives, or when it lies in a folder kept for
// screenshots; else no opinion, and so for anything that is no regular file. The first of these that applies decides.
// Any thread; a bounded part of the file is read and no pixel decoded.
#pragma once

#include "core/platform/FileMetadata.h"

#include "desktop/linux/system/ByteSource.h"
#include "desktop/linux/system/OwnFiles.h"

namespace quenlio {

class ScreenshotMetadata final : public FileMetadata {
 public:
  explicit ScreenshotMetadata(const OwnFiles& own) : own_(own) {}

  [[nodiscard]] std::optional<MetadataValue> MDItemCopyAttribute(const FileURL& url,
                                                                 std::string_view attribute) const override;

 private:
  const OwnFiles& own_;
};

// The extended attribute that marks a file as a screenshot, whatever its value. Nothing here sets it yet.
inline constexpr const char* kScreenshotMark = "user.quenlio.screenshot";

// Whether a screenshot tool left its text in the PNG.
[[nodiscard]] bool hasScreenshotToolText(ByteSource& source);

}  // namespace quenlio
