// A callback that somebody keeps must not hold its maker by a bare pointer: in core/, no lambda that is given to be
// stored captures this, or everything around it.
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

#include "tests/house/SourceTree.h"

namespace quenlio::house {
namespace {

// The end of the argument list that opens at this parenthesis.
std::size_t endOfArguments(const std::string& code, std::size_t open) {
  int depth = 0;
  for (std::size_t at = open; at < code.size(); ++at) {
    depth += code[at] == '(' ? 1 : code[at] == ')' ? -1 : 0;
    if (depth == 0) {
      return at;
    }
  }
  return code.size();
}

// The operations that keep what they are given beyond the call. "sync" and the like run it at once.
const std::regex& storingCall() {
  static const std::regex pattern(
      R"((?:\.|->)(subscribe|after|every|post|async|detached|observe\w*|addObserver\w*|addLocalMonitor\w*|)"
      R"(runAnimationGroup|InstallEventHandler|FSEventStreamCreate|setOn[A-Z]\w*)\s*\()");
  return pattern;
}

std::vector<std::string> complaintsAbout(const SourceFile& file) {
  // A capture list: this, *this or a default capture in it.
  static const std::regex capture(
      R"((?:^|[(,{=&|?:\s])\[\s*(?:(?:=|&)\s*(?:,[^\]]*)?|(?:[^\]]*,\s*)?\*?this\s*(?:,[^\]]*)?)\])");
  std::vector<std::string> complaints;
  const std::string code = codeOnly(file.text);
  for (auto call = std::sregex_iterator(code.begin(), code.end(), storingCall()); call != std::sregex_iterator();
       ++call) {
    const auto open = static_cast<std::size_t>(call->position() + call->length() - 1);
    const std::string arguments = code.substr(open, endOfArguments(code, open) - open);
    if (std::regex_search(arguments, capture)) {
      complaints.push_back(file.path + ":" + std::to_string(lineOf(code, open)) + ": " + (*call)[1].str());
    }
  }
  return complaints;
}

TEST(StoredCallbacks, noneInTheCoreHoldsABareThis) {
  std::size_t calls = 0;
  for (const SourceFile& file : sourcesBelow("core", {".h", ".cpp"})) {
    EXPECT_EQ(complaintsAbout(file), std::vector<std::string>{});
    const std::string code = codeOnly(file.text);
    calls += static_cast<std::size_t>(
        std::distance(std::sregex_iterator(code.begin(), code.end(), storingCall()), std::sregex_iterator()));
  }
  EXPECT_GT(calls, 10U) << "the check reads real calls";
}

TEST(StoredCallbacksCheck, findsABareThisInWhateverPlace) {
  for (const char* line : {
           "timer_ = scheduler_.after(1s, [this] { hide(); });",
           "a_.subscribe([this](int) {});",
           "queue_->async([x, this] {});",
           "scheduler_.every(1s, 0s,\n    [this, x = f(1, (2))] {});",
           "scheduler_.post([=] {});",
           "scheduler_.post([&] { f(); });",
           "scheduler_.post([&, x] {});",
           "scheduler_.detached(q, [*this] {});",
           "panel_->setOnKeyDown([this](auto&) {});",
           "x.post(wrap([other](int) {}, [this] {}));",
       }) {
    EXPECT_EQ(complaintsAbout({"core/A.cpp", line}).size(), 1U) << line;
  }
}

TEST(StoredCallbacksCheck, takesWeakOwnersAndCallsThatKeepNothing) {
  for (const char* line : {
           "timer_ = scheduler_.after(1s, weak_.bind([](A& self) { self.hide(); }));",
           "queue_->async([weak = std::weak_ptr(a_)] {});",
           "queue_->sync([this] { work(); });",
           "queue_->sync([&] { work(); });",
           "std::ranges::find_if(list, [this](int) { return true; });",
           "scheduler_.post([found, url] { found(url); });",
           "scheduler_.post([&scheduler = x_] {});",
           "scheduler_.post(tasks_[this->index_]);",
           "// scheduler_.post([this] {});",
       }) {
    EXPECT_TRUE(complaintsAbout({"core/A.cpp", line}).empty()) << line;
  }
}

}  // namespace
}  // namespace quenlio::house
