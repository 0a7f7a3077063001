// The kinds of pictures that are shown, told by a file's contents: a name's extension proves nothing. Any thread.
#pragma once

#include <optional>
#include <string_view>

namespace quenlio {

enum class PictureKind { png, jpeg, heic, tiff, pdf };

// The signature that opens every PNG.
inline constexpr std::string_view kPNGSignature{"\x89PNG\r\n\x1a\n", 8};

// As much of a file as tells its kind.
inline constexpr std::size_t kPictureHead = 1024;

// The kind by the first bytes of a file, of which no more than that are looked at.
[[nodiscard]] std::optional<PictureKind> pictureKind(std::string_view head);

}  // namespace quenlio
