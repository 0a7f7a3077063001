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


if __name__ == "__main__":
    unittest.main()
