// An end-to-end test that nobody registers would pass forever: every tests/endtoend/test_*.py is told to ctest.
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <string>

#include "tests/house/SourceTree.h"

namespace quenlio::house {
namespace {

const std::string kFolder = "tests/endtoend";

std::set<std::string> registered() {
  static const std::regex pattern(R"((?:^|\n)quenlio_endtoend\((\w+))");
  const std::string text = readSource(kFolder + "/CMakeLists.txt");
  std::set<std::string> names;
  for (std::sregex_iterator found(text.begin(), text.end(), pattern), end; found != end; ++found) {
    names.insert((*found)[1]);
  }
  return names;
}

std::set<std::string> written() {
  static const std::regex pattern(kFolder + R"(/(?:.*/)?test_(\w+)\.py)");
  std::set<std::string> names;
  for (const SourceFile& file : sourcesBelow(kFolder, {".py"})) {
    std::smatch parts;
    if (std::regex_match(file.path, parts, pattern)) {
      names.insert(parts[1]);
    }
  }
  return names;
}

TEST(EndToEndTests, everyFileIsRegistered) {
  EXPECT_TRUE(written().contains("pictures"));
  EXPECT_EQ(registered(), written());
}

}  // namespace
}  // namespace quenlio::house
