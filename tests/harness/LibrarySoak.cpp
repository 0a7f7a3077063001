#include "tests/harness/LibrarySoak.h"

#include <algorithm>
#include <charconv>

#include "core/platform/Image.h"

namespace quenlio {
namespace {

constexpr std::size_t kLongestPath = 1024;
constexpr std::string_view kCapture = "capture ";
constexpr std::string_view kForeign = "somebody else's ";

// A first line that tells whose it is, and up to some hundred bytes of any value that no other file has.
std::string bytesOf(std::string_view kind, std::size_t number) {
  std::string bytes = std::string(kind) + std::to_string(number) + "\n";
  std::mt19937 random(static_cast<std::uint32_t>(number));
  for (std::size_t left = number * 37 % 600; left > 0; --left) {
    bytes.push_back(static_cast<char>(random() & 0xffU));
  }
  return bytes;
}

// Which capture this is, whole; nothing when it is none.
std::optional<std::size_t> captureNumber(const std::string& bytes, std::size_t arrived) {
  std::size_t number = 0;
  if (!bytes.starts_with(kCapture)) {
    return std::nullopt;
  }
  const char* end = bytes.data() + bytes.size();
  const bool isNumber = std::from_chars(bytes.data() + kCapture.size(), end, number).ec == std::errc();
  return isNumber && number < arrived && bytes == bytesOf(kCapture, number) ? std::optional(number) : std::nullopt;
}

class CountedImage final : public Image {
 public:
  CountedImage(Size size, std::shared_ptr<const bool> counted) : size_(size), counted_(std::move(counted)) {}
  [[nodiscard]] Size size() const override { return size_; }

 private:
  Size size_;
  std::shared_ptr<const bool> counted_;
};

std::vector<std::string> roomForPaths() {
  std::vector<std::string> paths(LibrarySoak::kOperations + 2 * LibrarySoak::kMaxHistory);
  for (std::string& path : paths) {
    path.reserve(kLongestPath);
  }
  return paths;
}

}  // namespace

ImageRef LibrarySoak::Thumbnails::render(const FileURL& /*url*/, Size canvas) {
  return std::make_shared<CountedImage>(canvas, counted_);
}

LibrarySoak::LibrarySoak(TestPlatform& platform, SoakDisk disk, std::uint32_t seed)
    : platform_(platform),
      disk_(std::move(disk)),
      random_(seed),
      captures_(roomForPaths()),
      isGone_(captures_.size()),
      foreign_(roomForPaths()),
      found_(captures_.size()) {
  settings_.maxHistory.set(kMaxHistory);
}

ScreenshotStore::Dependencies LibrarySoak::storeDependencies() {
  return {.settings = settings_,
          .diagnostics = diagnostics_,
          .analytics = platform_.analytics,
          .paths = paths_,
          .files = files_,
          .contents = disk_.contents,
          .clock = disk_.clock,
          .scheduler = platform_.time,
          .thumbnails = thumbnails_,
          .handOut = handOut_,
          .log = platform_.systemLog};
}

// Of few names, so that they meet; with all that a name may hold.
std::string LibrarySoak::anyStem() {
  static const std::vector<std::string> kStems{
      "Screenshot", ".hidden",  "two\nlines",          "\xFF\xFE",
      "a/b:c",      " padded ", std::string(251, 'l'), std::string(83, 'x') + "\xF0\x9F\x93\xB7"};
  if (isOneIn(6)) {
    return anyItem().fileURL.stem();
  }
  return kStems[below(kStems.size())] + (isOneIn(2) ? std::to_string(below(30)) : "");
}

void LibrarySoak::arrive() {
  const FileURL url = disk_.captures.appending("Screenshot " + std::to_string(nextName_++) + ".png");
  if (disk_.read(url.path())) {
    return;  // renamed to just this
  }
  disk_.write(url.path(), bytesOf(kCapture, day_.arrived));
  captures_[day_.arrived++] = url.path();
  store_.ingestScreenshot(url, std::nullopt);
}

void LibrarySoak::vanish() {
  const std::string path = anyItem().fileURL.path();
  const auto bytes = disk_.read(path);
  if (const auto number = bytes ? captureNumber(*bytes, day_.arrived) : std::nullopt) {
    disk_.remove(path);
    captures_[*number] = path;
    isGone_[*number] = 1;
    ++day_.vanished;
  }
}

bool LibrarySoak::isVanished(const std::string& path) const {
  for (std::size_t number = 0; number < day_.arrived; ++number) {
    if (isGone_[number] != 0 && captures_[number] == path) {
      return true;
    }
  }
  return false;
}

void LibrarySoak::takeName(const FileURL& url) {
  // Where an item is still listed, what is put there would be taken for its file.
  if (isOneIn(10) && !isVanished(url.path()) && !disk_.read(url.path()) && url.lastPathComponent().size() <= 255) {
    disk_.write(url.path(), bytesOf(kForeign, day_.foreign));
    foreign_[day_.foreign++] = url.path();
  }
}

void LibrarySoak::operate() {
  const std::size_t dice = below(100);
  if (dice < 28 || store_.items.get().empty()) {
    arrive();
  } else if (dice < 30) {
    vanish();
  } else if (dice < 45) {
    store_.moveToTrash(anyItem());
  } else if (dice < 48) {
    store_.moveSelectedToTrash();
  } else if (dice < 62) {
    day_.undone += store_.undoLastDeletion() ? 1 : 0;
  } else if (dice < 78) {
    day_.renamed += store_.rename(anyItem(), anyStem()) ? 1 : 0;
  } else if (dice < 95) {
    operateOnSelection();
  } else if (dice < 97) {
    store_.removeMissingFiles();
  } else {
    platform_.time.runReady();
  }
  count();
}

void LibrarySoak::operateOnSelection() {
  const std::size_t dice = below(17);
  if (dice < 6) {
    (void)store_.moveSelection(isOneIn(2) ? 1 : -1, isOneIn(2));
  } else if (dice < 10) {
    store_.selectRange(anyItem(), isOneIn(2));
  } else if (dice < 14) {
    store_.toggleSelection(anyItem());
  } else {
    store_.select(anyItem().id);
  }
}

void LibrarySoak::fillUp() {
  while (store_.items.get().size() < kMaxHistory) {
    arrive();
  }
  platform_.time.runReady();
  count();
}

// What the platform has been told, which would become longer and longer.
void LibrarySoak::count() {
  day_.deleted += platform_.analytics.count(AnalyticsEventName::screenshotDeleted);
  day_.failed += platform_.systemLog.lines.size();
  platform_.analytics.events.clear();
  platform_.systemLog.lines.clear();
  platform_.log.clear();
}

std::string LibrarySoak::problem() {
  if (std::string problem = followItems(); !problem.empty()) {
    return problem;
  }
  if (std::string problem = problemOfCaptures(); !problem.empty()) {
    return problem;
  }
  for (std::size_t number = 0; number < day_.foreign; ++number) {
    if (disk_.read(foreign_[number]) != bytesOf(kForeign, number)) {
      return foreign_[number] + " of the other program is no longer what it was";
    }
  }
  return {};
}

// Items know where their files went: the bytes tell which file it is.
std::string LibrarySoak::followItems() {
  for (const ScreenshotItem& item : store_.items.get()) {
    if (std::ranges::count(store_.items.get(), item.fileURL, &ScreenshotItem::fileURL) != 1) {
      return item.fileURL.path() + " is listed twice";
    }
    const auto bytes = disk_.read(item.fileURL.path());
    const auto number = bytes ? captureNumber(*bytes, day_.arrived) : std::nullopt;
    if (!bytes && isVanished(item.fileURL.path())) {
      continue;
    }
    if (!number) {
      return item.fileURL.path() + (bytes ? " is listed and no capture" : " is listed and not there");
    }
    captures_[*number] = item.fileURL.path();
  }
  return {};
}

std::string LibrarySoak::problemOfCaptures() {
  std::ranges::fill(found_, 0);
  for (const std::string& path : disk_.trashed()) {
    const auto number = captureNumber(disk_.read(path).value_or(""), day_.arrived);
    if (!number) {
      return path + " is in the trash and no capture";
    }
    ++found_[*number];
  }
  for (std::size_t number = 0; number < day_.arrived; ++number) {
    found_[number] += disk_.read(captures_[number]) == bytesOf(kCapture, number) ? 1 : 0;
    if (found_[number] != (isGone_[number] != 0 ? 0 : 1)) {
      return captures_[number] + (found_[number] == 0 ? " is lost" : " is there too often");
    }
  }
  return {};
}

}  // namespace quenlio
