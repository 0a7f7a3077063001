// A store of settings in a fresh folder that goes with the test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <system_error>

#include "desktop/linux/system/JsonUserDefaults.h"

namespace quenlio {

namespace fs = std::filesystem;

class JsonUserDefaultsTest : public testing::Test {
 protected:
  JsonUserDefaultsTest() {
    std::string pattern = fs::temp_directory_path() / "quenlio-defaults-XXXXXX";
    root_ = ::mkdtemp(pattern.data());
    folder_ = root_ / "config" / "quenlio";
  }
  ~JsonUserDefaultsTest() override {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }

  // A store as another process, or the next run, would have it.
  [[nodiscard]] JsonUserDefaults opened() const { return JsonUserDefaults(FileURL(folder_.string()), "suite"); }

  [[nodiscard]] fs::path file(const std::string& suffix = ".json") const { return folder_ / ("suite" + suffix); }
  [[nodiscard]] static std::string contents(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void writeFile(const std::string& text) const {
    fs::create_directories(folder_);
    std::ofstream(file(), std::ios::binary) << text;
  }
  fs::path root_;
  fs::path folder_;
};

}  // namespace quenlio
