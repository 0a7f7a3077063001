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


def shown(quenlio, evenness=0.9):
    """The quarters of the picture in the island's preview, or nothing."""
    island = quenlio.island()
    if not island:
        return None
    x, y, width, height = (round(part * island.width) for part in PREVIEW)
    return recognised(pixels(quenlio.session, (island.x + x, island.y + y, width, height)), width, evenness)


def wait_until_shown(quenlio, number, evenness=0.9, deadline=10.0):
    """Until the island shows the whole of this picture."""
    wait_for(lambda: shown(quenlio, evenness) == quarters(number) or quenlio.must_run(),
             f"picture {number} whole in the island", deadline)


def paint_desktop(session, number):
    """Makes the picture the desktop's background, so that a capture of the screen shows its quarters."""
    source = session.write(session.root / "desktop.png", png(number, 1280, 800))
    session.run(["hsetroot", "-fill", source])
    wait_for(lambda: recognised(pixels(session, (0, 0, 1280, 800)), 1280, 0.5, step=97) == quarters(number),
             "the painted desktop")
