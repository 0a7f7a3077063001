// What the product was called before.
#pragma once

#include <string_view>

namespace quenlio {

struct LegacyIdentifiers {
  static constexpr std::string_view previousAppSupportFolderName = "Velmarin";
  static constexpr std::string_view previousDefaultsSuiteName = "com.velmarin.app";
};

}  // namespace quenlio
