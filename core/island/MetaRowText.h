// The words of the name row under the preview. Pure functions; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quenlio {

struct MetaRowText {
  // With fewer than two selected, the selected file's name, or that there is none yet; with more, how many.
  [[nodiscard]] static std::string titleText(std::size_t selectedCount, const std::optional<std::string>& fileName);

  // The whole name of the one selected file, since the row may have cut it; empty for none and for several.
  [[nodiscard]] static std::string filenameTooltip(std::size_t selectedCount,
                                                   const std::optional<std::string>& fileName);

  static constexpr std::string_view kNoScreenshot = "No screenshot yet";
};

}  // namespace quenlio
