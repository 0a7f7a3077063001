// The order of the end's steps. Timers make no calls: which of them still wait when a call is made tells where they end
// between the calls.
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

class TerminationOrder : public AppTest {
 protected:
  // A call, and how many tasks and timers waited on all queues when it was made.
  using Step = std::pair<std::string, std::size_t>;

  std::vector<Step> stepsOfTermination() {
    std::vector<Step> steps;
    platform.log.whenAdded = [&](const std::string& call) { steps.emplace_back(call, platform.time.pending()); };
    app->applicationWillTerminate();
    platform.log.whenAdded = nullptr;
    return steps;
  }
};

TEST_F(TerminationOrder, theWatcherStopsThenTheUpkeepEndsThenTheHotKeyGoesThenTheRequestsAreNoLongerHeard) {
  launch();
  // The watcher's poll, the upkeep of the library and the next look for a request.
  const std::size_t all = 3;
  const std::size_t requestsAlone = 1;
  ASSERT_EQ(platform.time.pending(), all);
  EXPECT_EQ(stepsOfTermination(),
            (std::vector<Step>{{"FSEventStreamStop /home/user/Desktop", all},
                               {"FSEventStreamInvalidate /home/user/Desktop", all},
                               {"FSEventStreamRelease /home/user/Desktop", all},
                               {"UnregisterEventHotKey", requestsAlone},
                               {"RemoveEventHandler", requestsAlone},
                               {"removeObserver com.quenlio.release-test.ingest-screenshot", requestsAlone}}));
}

}  // namespace
}  // namespace quenlio
