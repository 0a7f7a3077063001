// Which folder of core/ may know which: every #include is held against cmake/layers.txt.
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/house/SourceTree.h"

namespace quenlio::house {
namespace {

using Layers = std::map<std::string, std::set<std::string>>;

// "name: one two" a line; a line that begins otherwise is a comment. What it says against its own order is told too.
Layers readLayers(const std::string& text, std::vector<std::string>& complaints) {
  Layers layers;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos || line.starts_with('#')) {
      continue;
    }
    const std::string name = line.substr(0, colon);
    std::set<std::string> allowed;
    std::istringstream words(line.substr(colon + 1));
    for (std::string word; words >> word;) {
      if (!layers.contains(word)) {
        complaints.push_back(name + " names " + word + ", which does not stand above it");
      }
      allowed.insert(word);
    }
    layers[name] = allowed;
  }
  return layers;
}

// Why core/ may not include this system header, or nothing. Headers of the standard library have neither a slash nor
// an ending; those that reach the system behind the platform's interfaces are not for core/ either.
std::string complaintAboutSystemHeader(const std::string& folder, const std::string& header) {
  static const std::set<std::string> reachTheSystem{"filesystem", "fstream", "thread", "future", "iostream", "csignal"};
  if (header == "nlohmann/json.hpp" && folder == "base") {
    return "";
  }
  if (!std::regex_match(header, std::regex("[a-z_]+"))) {
    return "no header of the standard library";
  }
  return reachTheSystem.contains(header) ? "reaches the system past the platform's interfaces" : "";
}

std::string complaintAboutOwnHeader(const Layers& layers, const std::string& folder, const std::string& header) {
  std::smatch parts;
  if (!std::regex_match(header, parts, std::regex("core/([a-z]+)/[A-Za-z]+\\.h"))) {
    return "core/ includes only headers of core/, by their whole path";
  }
  const std::string other = parts[1];
  return other == folder || layers.at(folder).contains(other) ? "" : "a step upward";
}

std::vector<std::string> complaintsAbout(const SourceFile& file, const Layers& layers) {
  std::vector<std::string> complaints;
  const std::string folder = file.path.substr(5, file.path.find('/', 5) - 5);
  if (!layers.contains(folder)) {
    return {file.path + ": its folder is not in the list of layers"};
  }
  static const std::regex include(R"(^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"])", std::regex::multiline);
  for (auto found = std::sregex_iterator(file.text.begin(), file.text.end(), include); found != std::sregex_iterator();
       ++found) {
    const std::string header = (*found)[2];
    const std::string complaint = (*found)[1] == "<" ? complaintAboutSystemHeader(folder, header)
                                                     : complaintAboutOwnHeader(layers, folder, header);
    if (!complaint.empty()) {
      complaints.push_back(file.path + ": " + header + ": " + complaint);
    }
  }
  return complaints;
}

Layers projectLayers() {
  std::vector<std::string> complaints;
  Layers layers = readLayers(readSource("cmake/layers.txt"), complaints);
  EXPECT_EQ(complaints, std::vector<std::string>{});
  return layers;
}

TEST(IncludeLayers, everyIncludeOfTheCoreStepsDownward) {
  const Layers layers = projectLayers();
  const auto files = sourcesBelow("core", {".h", ".cpp"});
  ASSERT_GT(files.size(), 50U);
  for (const SourceFile& file : files) {
    EXPECT_EQ(complaintsAbout(file, layers), std::vector<std::string>{});
  }
}

TEST(IncludeLayers, everyLayerIsAFolderOfTheCore) {
  std::set<std::string> folders;
  for (const SourceFile& file : sourcesBelow("core", {".h", ".cpp"})) {
    folders.insert(file.path.substr(5, file.path.find('/', 5) - 5));
  }
  for (const auto& [name, allowed] : projectLayers()) {
    EXPECT_TRUE(folders.contains(name)) << name;
  }
}

std::size_t complaintsAboutText(const std::string& path, const std::string& text) {
  return complaintsAbout({path, text}, {{"base", {}}, {"library", {"base"}}, {"island", {"base", "library"}}}).size();
}

TEST(IncludeLayersCheck, takesWhatIsAllowed) {
  EXPECT_EQ(complaintsAboutText("core/island/A.h",
                                "#include \"core/island/B.h\"\n#include \"core/library/C.h\"\n#include <vector>\n"),
            0U);
  EXPECT_EQ(complaintsAboutText("core/base/A.cpp", "#include <nlohmann/json.hpp>\n"), 0U);
}

TEST(IncludeLayersCheck, findsAStepUpward) {
  EXPECT_EQ(complaintsAboutText("core/base/A.h", "#include \"core/library/B.h\"\n"), 1U);
  EXPECT_EQ(complaintsAboutText("core/library/A.h", "#pragma once\n  #  include \"core/island/B.h\"\n"), 1U);
}

TEST(IncludeLayersCheck, findsToolkitAndSystemHeaders) {
  for (const char* header : {"QString", "QtCore/QTimer", "X11/Xlib.h", "xcb/xcb.h", "sys/inotify.h", "unistd.h",
                             "pthread.h", "time.h", "thread", "filesystem", "nlohmann/json.hpp", "rapidcheck.h"}) {
    EXPECT_EQ(complaintsAboutText("core/island/A.cpp", "#include <" + std::string(header) + ">\n"), 1U) << header;
  }
}

TEST(IncludeLayersCheck, findsTheShellTheTestsAndRelativePaths) {
  for (const char* header :
       {"desktop/views/A.h", "tests/fakes/CallLog.h", "B.h", "../library/B.h", "core/island/../library/B.h"}) {
    EXPECT_EQ(complaintsAboutText("core/island/A.cpp", "#include \"" + std::string(header) + "\"\n"), 1U) << header;
  }
}

TEST(IncludeLayersCheck, findsAFolderThatIsInNoList) {
  EXPECT_EQ(complaintsAboutText("core/other/A.h", ""), 1U);
}

TEST(IncludeLayersCheck, findsAListThatNamesAFolderBelowIt) {
  std::vector<std::string> complaints;
  (void)readLayers("# order\nbase:\nlibrary: base island\nisland: base\n", complaints);
  EXPECT_EQ(complaints.size(), 1U);
}

}  // namespace
}  // namespace quenlio::house
