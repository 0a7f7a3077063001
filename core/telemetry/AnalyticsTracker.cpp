#include "core/telemetry/AnalyticsTracker.h"

#include "core/base/SharedBinding.h"

namespace quenlio {

AnalyticsTracker& AnalyticsTracker::shared() {
  return SharedBinding<AnalyticsTracker>::shared();
}

}  // namespace quenlio
