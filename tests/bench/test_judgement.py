"""What the benchmarks make of what they have measured: each goal is judged by its own figure, and one that is missed is
told and makes the status 1."""

import contextlib
import io
import sys
import unittest
from pathlib import Path
from types import SimpleNamespace

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "bench"))

import arrival  # noqa: E402
import idle  # noqa: E402
import island  # noqa: E402
from support.goals import Goals, median, percentile  # noqa: E402


def judged(judge, *measured):
    """The status, and which goals were met."""
    printed = io.StringIO()
    with contextlib.redirect_stdout(printed):
        status = judge(*measured)
    lines = [line.removeprefix("goal ").split(": ") for line in printed.getvalue().splitlines()]
    return status, {name: told.endswith(", met") for name, told in lines}


def by_goals(tell):
    """A judge of what it is that tells its goals to somebody."""
    def judge(*measured):
        goals = Goals()
        tell(goals, *measured)
        return goals.status()
    return judge


class Judgement(unittest.TestCase):
    def assert_missed(self, judge, measured, *names):
        status, met = judged(judge, *measured)
        self.assertEqual({name for name, is_met in met.items() if not is_met}, set(names))
        self.assertEqual(status, 1 if names else 0)


class Figures(Judgement):
    def test_a_goal_is_met_up_to_its_limit(self):
        at_most = by_goals(lambda goals, figure: goals.at_most("some", figure, 75, "ms"))
        self.assertEqual(judged(at_most, 75.0), (0, {"some": True}))
        self.assertEqual(judged(at_most, 75.001), (1, {"some": False}))
        at_least = by_goals(lambda goals, figure: goals.at_least("some", figure, 54, "/s"))
        self.assertEqual(judged(at_least, 54.0), (0, {"some": True}))
        self.assertEqual(judged(at_least, 53.999), (1, {"some": False}))

    def test_one_missed_goal_is_not_made_up_for(self):
        def tell(goals):
            goals.at_most("first", 2, 1, "ms")
            goals.at_most("second", 1, 2, "ms")
        self.assertEqual(judged(by_goals(tell)), (1, {"first": False, "second": True}))

    def test_a_line_tells_the_figure_the_limit_and_the_judgement(self):
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            Goals().at_most("named", 71.234, 75, "ms")
        self.assertEqual(printed.getvalue(), "goal named: 71.23 ms of 75.00 ms, met\n")

    def test_percentiles(self):
        self.assertEqual(median([3, 1, 2]), 2)
        self.assertEqual(median([4, 1, 2, 3]), 2.5)
        self.assertEqual(percentile(range(101), 95), 95)
        self.assertEqual(percentile([7], 95), 7)


# Of a hundred, so that the first value is also the median and the second the 95th percentile.
def mostly(value, sometimes=None):
    return [value] * 90 + [value if sometimes is None else sometimes] * 10


class Arrival(Judgement):
    PLACES = [f"{size}-{up}" for size in arrival.SIZES for up in arrival.ISLANDS]

    def measured(self, crowded, **figures):
        """The same in every series but for these figures, which the plain ones have, or those with other files."""
        def series(is_crowded):
            values = {"named": mostly(70), "pixels": mostly(120), "decoding": mostly(40)}
            values |= figures if is_crowded == crowded else {}
            lines = zip(values["named"], values["pixels"], values["decoding"])
            return arrival.Series([f"{named} {pixels} {decoding}" for named, pixels, decoding in lines])
        return ({(size, up, is_crowded): series(is_crowded)
                 for size in arrival.SIZES for up in arrival.ISLANDS for is_crowded in (False, True)},)

    def assert_missed_everywhere(self, measured, *names):
        self.assert_missed(arrival.judge, measured, *(f"{name}-{place}" for name in names for place in self.PLACES))

    def test_all_goals_can_be_met(self):
        self.assert_missed_everywhere(self.measured(False))

    def test_names_come_in_75_ms_and_nearly_always_in_100(self):
        self.assert_missed_everywhere(self.measured(False, named=mostly(76)), "named-median")
        self.assert_missed_everywhere(self.measured(False, named=mostly(70, 101)), "named-95")

    def test_pictures_come_25_ms_after_two_looks_and_their_decoding(self):
        self.assert_missed_everywhere(self.measured(False, pixels=mostly(125.5)), "pixels-median", "pixels-95")
        self.assert_missed_everywhere(self.measured(False, pixels=mostly(120, 125.5)), "pixels-95")
        self.assert_missed_everywhere(self.measured(False, pixels=mostly(126), decoding=mostly(40, 60)),
                                      "pixels-median")

    def test_other_files_cost_a_tenth_at_most(self):
        self.assert_missed_everywhere(self.measured(True, named=mostly(77), pixels=mostly(132)))
        self.assert_missed_everywhere(self.measured(True, named=mostly(78)), "named-crowded-median", "named-crowded-95")
        self.assert_missed_everywhere(self.measured(True, named=mostly(70, 78)), "named-crowded-95")
        self.assert_missed_everywhere(self.measured(True, pixels=mostly(133)), "pixels-crowded-median",
                                      "pixels-crowded-95")
        self.assert_missed_everywhere(self.measured(True, pixels=mostly(120, 133)), "pixels-crowded-95")


class Idle(Judgement):
    def measured(self, pss=30, processor=0.05, flameshot=60, ksnip=50):
        return ({"quenlio": SimpleNamespace(pss=pss, processor=processor), "flameshot": SimpleNamespace(pss=flameshot),
                 "ksnip": SimpleNamespace(pss=ksnip)},)

    def test_each_goal_is_judged(self):
        self.assert_missed(idle.judge, self.measured())
        self.assert_missed(idle.judge, self.measured(pss=35.5, ksnip=60), "idle-memory")
        self.assert_missed(idle.judge, self.measured(ksnip=42), "idle-memory-beside-others")
        self.assert_missed(idle.judge, self.measured(flameshot=42), "idle-memory-beside-others")
        self.assert_missed(idle.judge, self.measured(processor=0.11), "idle-processor")


class Island(Judgement):
    def steps(self, painted, decoding=100):
        return island.Steps([f"{shown} {decoding}" for shown in painted])

    def test_a_prefetched_step_is_painted_in_33_ms_and_a_cold_one_25_after_its_decoding(self):
        judge = by_goals(island.preview_goals)
        good = {("4K", "prefetched", "island"): self.steps(mostly(33)),
                ("4K", "cold", "island"): self.steps(mostly(125))}
        self.assert_missed(judge, (good,))
        self.assert_missed(judge, (good | {("4K", "prefetched", "island"): self.steps(mostly(34))},),
                           "preview-4K-prefetched-island-median")
        self.assert_missed(judge, (good | {("4K", "cold", "island"): self.steps(mostly(126))},),
                           "preview-4K-cold-island-median", "preview-4K-cold-island-95")
        self.assert_missed(judge, (good | {("4K", "cold", "island"): self.steps(mostly(125, 126))},),
                           "preview-4K-cold-island-95")

    def test_no_picture_is_kept_that_is_not_on_the_screen_or_next_to_it(self):
        judge = by_goals(island.library_goals)
        picture = 3840 * 2160 * 4 / 1e6
        closed, up = 40, 42
        self.assert_missed(judge, (closed, up, up + 10, up, closed))
        self.assert_missed(judge, (closed, up, up + picture, up, closed), "memory-preview-open")
        self.assert_missed(judge, (closed, up, up + 10, up + picture, closed), "memory-preview-closed")
        self.assert_missed(judge, (closed, up, up + 10, up, closed + picture), "memory-closed-again")
        self.assert_missed(judge, (60, 62, 72, 62, 60), "memory-library")


if __name__ == "__main__":
    unittest.main()
