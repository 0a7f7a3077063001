"""The look at the screen itself: it knows a whole picture, and no other for it."""

import unittest

import pictures

WIDTH, HEIGHT = 200, 120
NOTHING = bytes((128, 128, 128)) * WIDTH


def rows(number, noise=0):
    return list(pictures.rows(WIDTH, HEIGHT, number, noise))


class Recognised(unittest.TestCase):
    def test_a_whole_picture_is_known_by_its_quarters(self):
        for number in range(len(pictures.COLOURS)):
            self.assertEqual(pictures.recognised(b"".join(rows(number, noise=7)), WIDTH, 0.9),
                             pictures.quarters(number))

    def test_neighbouring_numbers_share_no_quarter(self):
        for number in range(len(pictures.COLOURS)):
            same = [a for a, b in zip(pictures.quarters(number), pictures.quarters(number + 1)) if a == b]
            self.assertEqual(same, [])

    def test_a_picture_without_its_last_tenth_is_not_taken_for_whole(self):
        cut = rows(1)[:HEIGHT * 9 // 10]
        self.assertIsNone(pictures.recognised(b"".join(cut + [NOTHING] * (HEIGHT - len(cut))), WIDTH, 0.9))

    def test_half_a_picture_and_none_are_nothing(self):
        half = rows(1)[:HEIGHT // 2] + [NOTHING] * (HEIGHT // 2)
        self.assertIsNone(pictures.recognised(b"".join(half), WIDTH, 0.6))
        self.assertIsNone(pictures.recognised(NOTHING * HEIGHT, WIDTH, 0.6))


class Compared(unittest.TestCase):
    def farthest(self, one, other):
        return pictures.farthest(b"".join(one), b"".join(other), WIDTH, HEIGHT)

    def test_a_whole_picture_is_like_itself_with_a_little_noise(self):
        for number in range(len(pictures.COLOURS)):
            self.assertLessEqual(self.farthest(rows(number, noise=7), rows(number)), pictures.ALIKE)

    def test_another_picture_is_not(self):
        self.assertGreater(self.farthest(rows(1), rows(2)), pictures.ALIKE)

    def test_a_picture_without_its_last_twentieth_is_not(self):
        for number in range(len(pictures.COLOURS)):
            for fill in (0, 128, 255):
                missing = [bytes([fill]) * (WIDTH * 3)] * (HEIGHT // 20)
                cut = rows(number)[:-len(missing)] + missing
                self.assertGreater(self.farthest(cut, rows(number)), pictures.ALIKE, f"{number} {fill}")

    def test_a_veil_over_all_of_it_changes_nothing_but_one_over_a_part_does(self):
        def veiled(row):
            return bytes(value * 88 // 100 + 28 for value in row)
        for number in range(len(pictures.COLOURS)):
            whole = rows(number)
            self.assertLessEqual(self.farthest([veiled(row) for row in whole], whole), pictures.ALIKE)
            missing = [bytes([240]) * (WIDTH * 3)] * (HEIGHT // 20)
            self.assertGreater(self.farthest([veiled(row) for row in whole[:-len(missing)]] + missing, whole),
                               pictures.ALIKE)
        self.assertGreater(self.farthest([bytes(value // 2 for value in row) for row in rows(1)], rows(1)),
                           pictures.ALIKE)

    def test_a_crop_is_the_part_that_was_asked_for(self):
        data = bytes(range(4 * 3 * 3))  # four pixels wide, three rows high
        self.assertEqual(pictures.cropped(data, 4, 1, 1, 2, 2), bytes([*range(15, 21), *range(27, 33)]))


if __name__ == "__main__":
    unittest.main()
