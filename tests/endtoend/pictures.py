"""Pictures with four coloured quarters, and the way to recognise them on the screen.

Each picture has its own order of colours. A picture of which only a part was read, or another picture in its place,
shows other quarters.
"""

import os
import struct
import zlib

from harness import wait_for

COLOURS = ((220, 30, 30), (30, 180, 30), (30, 60, 220), (230, 220, 30), (220, 40, 210), (30, 200, 220))
NEAR = 90  # the island lets a little of the desktop through, and shades its picture
# The island's preview in parts of the panel's side: below the toolbar, above the name.
PREVIEW = (0.03, 0.15, 0.94, 0.56)
# By the panel's side: the preview's distance from the panel's sides, its top, its height, and how far inside its edges
# the picture stays.
WELLS = {232: (10, 35, 128, 5), 266: (12, 40, 147, 6), 340: (12, 42, 209, 6), 420: (12, 45, 277, 6),
         500: (12, 48, 345, 6)}
# A picture on the screen is compared with its file in a grid of so many cells, by each cell's mean colour.
COLUMNS, ROWS = 10, 20
# The grid leaves out so many pixels at each side, where the picture has its outline and shades into its surroundings.
EDGE = 2
# How far a cell's mean may be off in one channel, of 255: the picture is a pixel larger or smaller by rounding. A
# missing row of cells, the twentieth part of the picture, is much farther off.
ALIKE = 16
# The picture has round corners: this many cells of the grid, across and down, are left out in each.
CORNER_COLUMNS, CORNER_ROWS = 1, 3
# The island lets through what is behind it, evenly: so much of the picture is seen at least.
OPACITY = 0.75


def quarters(number):
    """The four colours of a picture, by index: top left, top right, bottom left, bottom right."""
    return tuple((number + step) % len(COLOURS) for step in range(4))


def rows(width, height, number, noise):
    """The pixels, with noise in their lowest bits so that they do not compress to nothing."""
    top_left, top_right, bottom_left, bottom_right = (bytes(COLOURS[c]) for c in quarters(number))
    left, right = width // 2, width - width // 2
    upper = top_left * left + top_right * right
    lower = bottom_left * left + bottom_right * right
    mask = int.from_bytes(bytes([noise]) * (width * 3), "big")
    for y in range(height):
        row = upper if y < height // 2 else lower
        if noise:
            grain = int.from_bytes(os.urandom(width * 3), "big") & mask
            row = (int.from_bytes(row, "big") ^ grain).to_bytes(width * 3, "big")
        yield row


def _chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(number, width=640, height=400, noise=0, text=None):
    """A PNG file's bytes. `text` is a dictionary of text chunks."""
    packer = zlib.compressobj(1)
    packed = b"".join(packer.compress(b"\0" + row) for row in rows(width, height, number, noise)) + packer.flush()
    chunks = [_chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))]
    chunks += [_chunk(b"tEXt", f"{key}\0{value}".encode("latin-1")) for key, value in (text or {}).items()]
    chunks += [_chunk(b"IDAT", packed[at:at + 65536]) for at in range(0, len(packed), 65536)]
    return b"\x89PNG\r\n\x1a\n" + b"".join(chunks) + _chunk(b"IEND", b"")


def png_4k(number):
    return png(number, 3840, 2160, noise=7)


def converted(session, number, kind):
    """The same picture in another format."""
    source = session.write(session.root / f"convert-{number}.png", png(number))
    if kind == "pdf":
        return _pdf(converted(session, number, "jpeg"), 640, 400)
    if kind == "heic":
        target = session.root / "home" / f"convert-{number}.heic"
        session.run(["heif-enc", source, "-o", target])
        return target.read_bytes()
    return session.run(["convert", source, "-quality", "95", f"{kind}:-"], binary=True)


def _pdf(jpeg, width, height):
    """A document of one page that a JPEG fills."""
    drawing = f"{width} 0 0 {height} 0 0 cm /Picture Do".encode()
    objects = (
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 {width} {height}] /Contents 4 0 R "
        "/Resources << /XObject << /Picture 5 0 R >> >> >>".encode(),
        b"<< /Length %d >>\nstream\n%s\nendstream" % (len(drawing), drawing),
        b"<< /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace /DeviceRGB /BitsPerComponent 8 "
        b"/Filter /DCTDecode /Length %d >>\nstream\n%s\nendstream" % (width, height, len(jpeg), jpeg),
    )
    data, places = b"%PDF-1.4\n", []
    for index, content in enumerate(objects, 1):
        places.append(len(data))
        data += b"%d 0 obj\n%s\nendobj\n" % (index, content)
    table = b"".join(b"%010d 00000 n \n" % place for place in places)
    end = b"xref\n0 %d\n0000000000 65535 f \n%strailer\n<< /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n"
    return data + end % (len(objects) + 1, table, len(objects) + 1, len(data))


def camera_jpeg(session, number):
    """A JPEG that says which camera took it."""
    plain = converted(session, number, "jpeg")
    make, model = b"Lumenworks\0", b"LX 400\0"
    heap = 8 + 2 + 2 * 12 + 4  # where the two texts lie, after the header and the directory
    entries = struct.pack(">HHII", 0x010F, 2, len(make), heap) + struct.pack(">HHII", 0x0110, 2, len(model),
                                                                             heap + len(make))
    exif = b"Exif\0\0" + b"MM\0\x2a" + struct.pack(">I", 8) + struct.pack(">H", 2) + entries + struct.pack(">I", 0)
    exif += make + model
    return plain[:2] + b"\xff\xe1" + struct.pack(">H", len(exif) + 2) + exif + plain[2:]


def pixels(session, box):
    """The screen's pixels in this box, row by row, three bytes each."""
    x, y, width, height = box
    return session.run(["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "+repage",
                        "-depth", "8", "rgb:-"], binary=True)


def recognised(data, width, evenness, step=1):
    """The four quarters in every step-th of these pixels; nothing when there are not four of about the same size."""
    spots = {}
    for at in range(0, len(data), 3 * step):
        r, g, b = data[at], data[at + 1], data[at + 2]
        for index, colour in enumerate(COLOURS):
            if abs(r - colour[0]) < NEAR and abs(g - colour[1]) < NEAR and abs(b - colour[2]) < NEAR:
                count, xs, ys = spots.get(index, (0, 0, 0))
                y, x = divmod(at // 3, width)
                spots[index] = (count + 1, xs + x, ys + y)
                break
    largest = sorted(spots.items(), key=lambda item: -item[1][0])[:4]
    if len(largest) < 4 or largest[3][1][0] < max(largest[0][1][0] * evenness, len(data) / 3 / step * 0.04):
        return None
    middles = [(ys / count, xs / count, index) for index, (count, xs, ys) in largest]
    middles.sort()
    upper, lower = sorted(middles[:2], key=lambda m: m[1]), sorted(middles[2:], key=lambda m: m[1])
    return tuple(index for _, _, index in upper + lower)


def preview(quenlio):
    """The pixels of the island's preview and how many of them are in a row, or nothing."""
    island = quenlio.island()
    if not island:
        return None
    x, y, width, height = (round(part * island.width) for part in PREVIEW)
    return pixels(quenlio.session, (island.x + x, island.y + y, width, height)), width


def shown(quenlio, evenness=0.9):
    """The quarters of the picture in the island's preview, or nothing."""
    seen = preview(quenlio)
    return recognised(*seen, evenness) if seen else None


def shows_colours(quenlio):
    """Whether the island's preview shows any part of a picture. Before a grey desktop nothing else in it has colour."""
    data, _ = preview(quenlio)
    return any(max(data[at:at + 3]) - min(data[at:at + 3]) > NEAR for at in range(0, len(data), 3))


def wait_until_shown(quenlio, number, evenness=0.9, deadline=10.0):
    """Until the island shows the whole of this picture."""
    wait_for(lambda: shown(quenlio, evenness) == quarters(number) or quenlio.must_run(),
             f"picture {number} whole in the island", deadline)


def cells(data, width, height):
    """The mean colour of each cell of a grid over these pixels."""
    means = []
    for row in range(ROWS):
        lines = range(row * height // ROWS, (row + 1) * height // ROWS)
        for column in range(COLUMNS):
            left, right = column * width // COLUMNS, (column + 1) * width // COLUMNS
            count = len(lines) * (right - left)
            means.append(tuple(
                sum(sum(data[(y * width + left) * 3 + channel:(y * width + right) * 3:3]) for y in lines) / count
                for channel in range(3)))
    return means


def cropped(data, row, left, top, width, height):
    """A part of these pixels, of which each row has so many."""
    return b"".join(data[(y * row + left) * 3:(y * row + left + width) * 3] for y in range(top, top + height))


def is_corner(cell):
    row, column = divmod(cell, COLUMNS)
    return min(row, ROWS - 1 - row) < CORNER_ROWS and min(column, COLUMNS - 1 - column) < CORNER_COLUMNS


def veil(seen, whole):
    """The opacity and the tone behind it with which these values are most like those."""
    count = len(whole)
    middle, seen_middle = sum(whole) / count, sum(seen) / count
    spread = sum((value - middle) ** 2 for value in whole)
    common = sum((value - middle) * (other - seen_middle) for value, other in zip(whole, seen))
    opacity = min(max(common / spread if spread else 1, OPACITY), 1)
    tone = seen_middle - opacity * middle
    return opacity, min(max(tone, 0), (1 - opacity) * 255)


def farthest(data, other, width, height):
    """How far the first picture is from the second, of the same size, where they differ most: in one cell and one
    channel, when the first is seen before some even tone."""
    grids = [[mean for cell, mean in enumerate(cells(pixels_of, width, height)) if not is_corner(cell)]
             for pixels_of in (data, other)]
    distances = []
    for seen, whole in zip(zip(*grids[0]), zip(*grids[1])):
        opacity, tone = veil(seen, whole)
        distances += [abs(a - opacity * b - tone) for a, b in zip(seen, whole)]
    return max(distances)


class Expected:
    """What the island's preview has to show for a file: all of its picture, as large as fits, in the middle."""

    def __init__(self, quenlio, path):
        self.quenlio, self.path = quenlio, path
        size = quenlio.session.run(["convert", "-ping", f"{path}[0]", "-format", "%w %h", "info:"])
        self.shape = tuple(map(int, size.split()))
        self.renditions = {}

    def box(self):
        """Where the picture stands on the screen, or nothing while there is no island."""
        island = self.quenlio.island()
        if not island:
            return None
        padding, top, well_height, inset = WELLS[island.width]
        room_width, room_height = island.width - 2 * (padding + inset), well_height - 2 * inset
        wide, high = self.shape
        width, height = min(room_width, wide * room_height // high), min(room_height, high * room_width // wide)
        return (island.x + (island.width - width) // 2, island.y + top + (well_height - height) // 2, width, height)

    def rendition(self, width, height):
        """The file's picture in this size, by another program."""
        if (width, height) not in self.renditions:
            self.renditions[width, height] = self.quenlio.session.run(
                ["convert", f"{self.path}[0]", "-filter", "box", "-resize", f"{width}x{height}!", "-alpha", "off",
                 "-depth", "8", "rgb:-"], binary=True)
        return self.renditions[width, height]

    def difference(self):
        """How far the screen is from it, of 255. By rounding it may stand a pixel to any side."""
        box = self.box()
        if not box:
            return 255
        x, y, width, height = box
        inner = (width - 2 * EDGE, height - 2 * EDGE)
        wanted = cropped(self.rendition(width, height), width, EDGE, EDGE, *inner)
        seen = pixels(self.quenlio.session, box)
        return min(farthest(cropped(seen, width, EDGE + right, EDGE + down, *inner), wanted, *inner)
                   for down in (-1, 0, 1) for right in (-1, 0, 1))


def wait_until_whole(quenlio, path, deadline=10.0):
    """Until the island's preview is this file's picture from its first row to its last."""
    expected = Expected(quenlio, path)
    wait_for(lambda: expected.difference() <= ALIKE or quenlio.must_run(),
             f"all of {os.path.basename(path)} in the island", deadline)


def paint_desktop(session, number):
    """Makes the picture the desktop's background, so that a capture of the screen shows its quarters."""
    source = session.write(session.root / "desktop.png", png(number, 1280, 800))
    session.run(["hsetroot", "-fill", source])
    wait_for(lambda: recognised(pixels(session, (0, 0, 1280, 800)), 1280, 0.5, step=97) == quarters(number),
             "the painted desktop")
