#include "desktop/linux/system/CompleteFormats.h"

#include <charconv>

#include "desktop/linux/system/JPEGSegments.h"
#include "desktop/linux/system/PictureKind.h"

namespace quenlio {
namespace {

// The end chunk: no data, its name and the checksum of the name.
constexpr std::string_view kPNGEnd{"\0\0\0\0IEND\xAE\x42\x60\x82", 12};
// The least: signature, header chunk, end chunk.
constexpr std::uint64_t kLeastPNG = 8 + 25 + 12;

constexpr std::string_view kJPEGEnd{"\xFF\xD9", 2};
// Some writers round the file up with a few zero bytes.
constexpr std::size_t kMostJPEGPadding = 16;

constexpr std::size_t kPDFTail = 1024;

bool isBlank(char c) {
  return c == '\0' || c == '\t' || c == '\n' || c == '\f' || c == '\r' || c == ' ';
}

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) {
    text.remove_prefix(1);
  }
  return text;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

// The decimal number that the text begins with, after blanks.
std::optional<std::uint64_t> leadingNumber(std::string_view text) {
  text = withoutLeadingBlanks(text);
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc{} ? std::optional(value) : std::nullopt;
}

// A document that is laid out for the web ends a first section early on, with an end mark of its own, and tells the
// length of the whole in its first object.
std::optional<std::uint64_t> linearizedLength(std::string_view head) {
  const std::size_t mark = head.find("/Linearized");
  if (mark == std::string_view::npos) {
    return 0;
  }
  std::size_t key = head.find("/L", mark + 1);
  while (key != std::string_view::npos && !leadingNumber(head.substr(key + 2))) {
    key = head.find("/L", key + 1);
  }
  return key == std::string_view::npos ? std::nullopt : leadingNumber(head.substr(key + 2));
}

// A cross-reference table, or the object that holds one: "xref" or "12 0 obj".
bool isCrossReference(std::string_view text) {
  text = withoutLeadingBlanks(text);
  if (text.starts_with("xref")) {
    return true;
  }
  const std::size_t object = text.find_first_not_of("0123456789 \r\n");
  return object != 0 && object != std::string_view::npos && text.substr(object).starts_with("obj");
}

}  // namespace

bool isCompleteByFormat(ByteSource& source) {
  const std::string head = source.readUpTo(0, kPictureHead);
  const auto kind = pictureKind(head);
  if (!kind) {
    return false;
  }
  switch (*kind) {
    case PictureKind::png:
      return isCompletePNG(source);
    case PictureKind::jpeg:
      return isCompleteJPEG(source);
    case PictureKind::heic:
      return isCompleteHEIC(source);
    case PictureKind::tiff:
      return isCompleteTIFF(source);
    case PictureKind::pdf:
      // Behind other bytes the document's own places and lengths prove nothing.
      return head.starts_with("%PDF-") && isCompletePDF(source);
  }
  return false;
}

bool isCompletePNG(ByteSource& source) {
  const std::string header = source.readUpTo(8, 8);
  return source.size() >= kLeastPNG && header == std::string_view("\0\0\0\rIHDR", 8) &&
         source.readTail(kPNGEnd.size()) == kPNGEnd;
}

bool isCompleteJPEG(ByteSource& source) {
  const std::string tail = source.readTail(kJPEGEnd.size() + kMostJPEGPadding);
  const std::size_t last = tail.find_last_not_of('\0');
  if (last == std::string::npos || !std::string_view(tail).substr(0, last + 1).ends_with(kJPEGEnd)) {
    return false;
  }
  // An embedded preview ends with the same two bytes: the end counts only behind the picture's own data.
  const auto data = walkJPEGSegments(source, [](const JPEGSegment&) { return true; });
  const std::uint64_t end = source.size() - (tail.size() - (last + 1));
  return data && *data + kJPEGEnd.size() <= end;
}

bool isCompletePDF(ByteSource& source) {
  const std::string tail = source.readTail(kPDFTail);
  std::string_view end = withoutTrailingBlanks(tail);
  if (!end.ends_with("%%EOF")) {
    return false;
  }
  const auto whole = linearizedLength(source.readUpTo(0, kPDFTail));
  if (!whole || source.size() < *whole) {
    return false;
  }
  // The end mark follows the place of the cross-reference table. An attached document has both too, but tells places
  // in itself, where this document has something else.
  const std::size_t mark = end.rfind("startxref");
  if (mark == std::string_view::npos) {
    return false;
  }
  const auto table = leadingNumber(end.substr(mark + 9));
  return table && isCrossReference(source.readUpTo(*table, 32));
}

}  // namespace quenlio
