// The order of the end's steps. Timers make no calls: which of them still wait when a call is made tells where they end
// between the calls.
#include "tests/core/app/AppTest.h"

namespace quenlio {
namespace {

using TerminationOrder = AppTest;

TEST_F(TerminationOrder, theWatcherStopsThenTheUpkeepEndsThenTheHotKeyGoesThenTheRequestsAreNoLongerHeard) {
  launch();
  // The watcher's poll, the upkeep of the library and the next look for a request.
  const std::size_t all = 3;
  const std::size_t requestsAlone = 1;
  ASSERT_EQ(platform.time.pending(), all);
  EXPECT_EQ(stepsOf([this] { app->applicationWillTerminate(); }),
            (std::vector<Step>{{"FSEventStreamStop /home/user/Desktop", all},
                               {"FSEventStreamInvalidate /home/user/Desktop", all},
                               {"FSEventStreamRelease /home/user/Desktop", all},
                               {"UnregisterEventHotKey", requestsAlone},
                               {"RemoveEventHandler", requestsAlone},
                               {"removeObserver com.quenlio.release-test.ingest-screenshot", requestsAlone}}));
}

}  // namespace
}  // namespace quenlio
