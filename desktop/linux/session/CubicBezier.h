// How far an animation has come after a share of its time, by a cubic timing function. Pure; any thread.
#pragma once

#include "core/platform/Panel.h"

namespace quenlio {

// time and result from 0 to 1; what lies outside is clamped to the ends. The control points' x must lie in 0 to 1, as
// with any function of time.
[[nodiscard]] double progress(const TimingCurve& curve, double time);

}  // namespace quenlio
