// A callback that somebody keeps must not hold its maker by a bare pointer. A lambda in core/ or desktop/ that captures
// this may only be handed straight to an operation that is known to run it at once; one that captures everything around
// it may be anything but stored.
#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "tests/house/SourceTree.h"

namespace quenlio::house {
namespace {

// The operations that keep what they are given beyond the call.
bool keeps(const std::string& operation) {
  static const std::regex pattern(
      R"(subscribe|after|every|post|async|detached|bind|bindOr|connect|observe\w*|addObserver\w*|addLocalMonitor\w*|)"
      R"(runAnimationGroup|InstallEventHandler|FSEventStreamCreate|setOn[A-Z]\w*|)"
      R"(\w+_)");  // the last is a member that is being made
  return std::regex_match(operation, pattern);
}

// Those that run it before they return, and then let go of it.
bool runsAtOnce(const std::string& operation) {
  static const std::regex pattern(
      R"(sync|call_once|performOnQueue|update|mutate|wait|wait_for|wait_until|for_each|transform|)"
      R"((any|all|none)_of|(find|count|erase|remove)_if)");
  return std::regex_match(operation, pattern);
}

// The bracket that is open at this place and was opened last, if any.
std::optional<std::size_t> enclosing(const std::string& code, std::size_t at) {
  int depth = 0;
  while (at-- > 0) {
    const bool closes = std::string_view(")]}").find(code[at]) != std::string_view::npos;
    const bool opens = std::string_view("([{").find(code[at]) != std::string_view::npos;
    depth += closes ? 1 : opens ? -1 : 0;
    if (depth < 0) {
      return at;
    }
  }
  return std::nullopt;
}

// Where the bracket that opens here is closed.
std::size_t endOf(const std::string& code, std::size_t open) {
  int depth = 0;
  for (std::size_t at = open; at < code.size(); ++at) {
    depth += std::string_view("([{").find(code[at]) != std::string_view::npos   ? 1
             : std::string_view(")]}").find(code[at]) != std::string_view::npos ? -1
                                                                                : 0;
    if (depth == 0) {
      return at;
    }
  }
  return code.size();
}

// The word that ends right before this place: what is called, when a parenthesis opens here.
std::string wordBefore(const std::string& code, std::size_t at) {
  const std::size_t last = code.find_last_not_of(" \n", at == 0 ? 0 : at - 1);
  if (at == 0 || last == std::string::npos) {
    return "";
  }
  static constexpr const char* kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
  const std::size_t before = code.find_last_not_of(kLetters, last);
  return code.substr(before + 1, last - before);
}

// As much of it as tells what the thing that begins here is for.
std::string textBefore(const std::string& code, std::size_t at) {
  const std::size_t length = std::min<std::size_t>(at, 100);
  return code.substr(at - length, length);
}

enum class Fate { stored, run, unknown };

// What becomes of the lambda, or of a name for one, that begins here: the innermost call around it that is known
// decides.
Fate fateOf(const std::string& code, std::size_t lambda) {
  static const std::regex assignment(R"((?:\.\w+|\b\w+_)\s*=\s*$)");
  const std::string before = textBefore(code, lambda);
  if (std::regex_search(before, assignment)) {
    return Fate::stored;
  }
  for (auto open = enclosing(code, lambda); open; open = enclosing(code, *open)) {
    const std::string operation = wordBefore(code, *open);
    if (keeps(operation)) {
      return Fate::stored;
    }
    if (code[*open] == '(' && runsAtOnce(operation)) {
      return Fate::run;
    }
    if (code[*open] == '{') {
      break;  // a block, or the fields of a value
    }
  }
  return Fate::unknown;
}

// The name of the local variable that the lambda which begins here is kept in, if it is.
std::optional<std::string> localName(const std::string& code, std::size_t lambda) {
  static const std::regex declaration(R"(\bauto\s+(\w+)\s*=\s*$)");
  const std::string before = textBefore(code, lambda);
  std::smatch found;
  return std::regex_search(before, found, declaration) ? std::optional(found.str(1)) : std::nullopt;
}

// Whether the local variable is handed on to be stored, from here to the end of the block.
bool isLaterStored(const std::string& code, std::size_t from, const std::string& name) {
  const auto block = enclosing(code, from);
  const auto begin = code.begin() + static_cast<std::ptrdiff_t>(from);
  const auto end = code.begin() + static_cast<std::ptrdiff_t>(block ? endOf(code, *block) : code.size());
  const std::regex mention("\\b" + name + "\\b(?!\\s*\\()");  // and no call of it
  for (auto found = std::sregex_iterator(begin, end, mention); found != std::sregex_iterator(); ++found) {
    const std::size_t at = from + static_cast<std::size_t>(found->position());
    static const std::regex returned(R"(\breturn\s+$)");
    if (fateOf(code, at) == Fate::stored || std::regex_search(textBefore(code, at), returned)) {
      return true;
    }
  }
  return false;
}

bool isStored(const std::string& code, std::size_t lambda, bool holdsThis) {
  const Fate fate = fateOf(code, lambda);
  if (fate != Fate::unknown) {
    return fate == Fate::stored;
  }
  const auto name = localName(code, lambda);
  return name ? isLaterStored(code, lambda, *name) : holdsThis;
}

// Every lambda's capture list that holds this, *this or a default capture.
std::sregex_iterator wideCaptures(const std::string& code) {
  static const std::regex pattern(
      R"((?:^|[(,{=&|?:\s])(\[\s*(?:(=|&)\s*(?:,[^\]]*)?|(?:[^\]]*,\s*)?\*?this\s*(?:,[^\]]*)?)\]))");
  return {code.begin(), code.end(), pattern};
}

std::vector<std::string> complaintsAbout(const SourceFile& file) {
  std::vector<std::string> complaints;
  const std::string code = codeOnly(file.text);
  for (auto capture = wideCaptures(code); capture != std::sregex_iterator(); ++capture) {
    const auto lambda = static_cast<std::size_t>(capture->position(1));
    const bool isDefault = (*capture)[2].matched && capture->str(1).find("this") == std::string::npos;
    if (isStored(code, lambda, !isDefault)) {
      complaints.push_back(file.path + ":" + std::to_string(lineOf(code, lambda)) + ": " + capture->str(1));
    }
  }
  return complaints;
}

TEST(StoredCallbacks, noneOfTheProgramHoldsABareThis) {
  std::ptrdiff_t looked = 0;
  for (const char* folder : {"core", "desktop"}) {
    for (const SourceFile& file : sourcesBelow(folder, {".h", ".cpp"})) {
      EXPECT_EQ(complaintsAbout(file), std::vector<std::string>{});
      const std::string code = codeOnly(file.text);
      looked += std::distance(wideCaptures(code), std::sregex_iterator());
    }
  }
  EXPECT_GT(looked, 10) << "the check reads real lambdas";
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
           "x.post(wrap([other](int) {}, [&] {}));",
           "QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { run(); });",
           "weak_.bind([this](A& self) {});",
       }) {
    EXPECT_EQ(complaintsAbout({"core/A.cpp", line}).size(), 1U) << line;
  }
}

TEST(StoredCallbacksCheck, findsWhatIsGivenToAMemberThatIsBeingMade) {
  for (const char* line : {
           "A::A() : saved(true, [this] { save(); }) {}",
           "A::A() : saved_(true, [&] { save(); }) {}",
           "A::A() : saved_{[=] { save(); }} {}",
           "A::A() : arrival_({.log = log, .show = [this](int display) { show(display); }}) {}",
           "A::A() : arrival_({.log = log, .show = [&] { show(); }}) {}",
           "class A { std::function<void()> run_ = [this] { run(); }; };",
           "void A::b() { run_ = [&] { run(); }; }",
           "void A::b() { const auto run = [this] { c(); }; timer_ = scheduler_.after(1s, run); }",
           "auto A::runner() { return [this] { run(); }; }",
           "auto A::runner() { auto run = [this] { b(); }; return run; }",
           "void A::b() { const auto run = [&] { c(); }; d(); scheduler_.post(run); }",
           "void A::b() { std::function<void()> run = [this] { c(); }; }",
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
           "idle_.wait(lock, [this] { return running_ == 0; });",
           "const bool any = std::ranges::any_of(list, [this](int) { return true; });",
           "scheduler_.post([found, url] { found(url); });",
           "scheduler_.post([found] { std::ranges::find_if(found, [&](int) { return true; }); });",
           "scheduler_.post([&scheduler = x_] {});",
           "scheduler_.post(tasks_[this->index_]);",
           "const auto after = [&](int end) { return end; };",
           "void A::b() { const auto pen = [this](int w) { return width(w); }; paint(pen(1)); after(1s, pen(2)); }",
           "void A::b() { const auto run = [this] { c(); }; for_each(list, run); } void A::d() { post(run); }",
           "std::ranges::sort(list, [&](int a, int b) { return a < b; });",
           "A::A() : run_(weak_.bind([](A& self) { self.run(); })) {}",
           "// scheduler_.post([this] {});",
       }) {
    EXPECT_TRUE(complaintsAbout({"core/A.cpp", line}).empty()) << line;
  }
}

}  // namespace
}  // namespace quenlio::house
