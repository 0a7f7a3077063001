"""The ring around the close glyph, read off the screen."""

import math

import pictures

# The ring's radius in parts of the button's side: the glyph's size is two thirds of it in the smallest island.
RADIUS = 16 * 0.62 / 24
DIRECTIONS = 90
# A place on the ring is what is left of the countdown when it is so much darker than the panel, in parts of its tone,
# and only the track that it runs on when it is a little darker.
LEFT, TRACK = 0.65, 0.96


def ring(session, box):
    """How much of the ring is left, from 0 to 1; nothing when there is no ring. `box` is the button's."""
    side = box[2]
    data = pictures.pixels(session, box)
    tone = [sum(data[at:at + 3]) / 3 for at in range(0, len(data), 3)]
    panel = max(tone)

    def darkest(angle):
        spots = []
        for radius in (RADIUS * side - 1, RADIUS * side, RADIUS * side + 1):
            column = int(side / 2 + radius * math.sin(angle))
            row = int(side / 2 - radius * math.cos(angle))
            spots.append(tone[row * side + column] / panel)
        return min(spots)

    around = [darkest(2 * math.pi * (index + 0.5) / DIRECTIONS) for index in range(DIRECTIONS)]
    if sum(spot < TRACK for spot in around) < 0.9 * DIRECTIONS:
        return None
    return sum(spot < LEFT for spot in around) / DIRECTIONS
