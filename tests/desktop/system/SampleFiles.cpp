#include "tests/desktop/system/SampleFiles.h"

#include <libdeflate.h>
#include <stdexcept>

namespace quenlio::samples {
namespace {

std::string number(std::uint64_t value, int width, std::endian order = std::endian::big) {
  std::string bytes;
  for (int i = 0; i < width; ++i) {
    const int place = order == std::endian::big ? width - 1 - i : i;
    bytes += static_cast<char>(value >> (8 * place) & 0xFF);
  }
  return bytes;
}

// Bytes that are no text, no zero and no 0xFF.
std::string noise(std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) {
    bytes += static_cast<char>(1 + i * 37 % 250);
  }
  return bytes;
}

std::string jpegSegment(int marker, std::string_view payload) {
  return std::string("\xFF") + static_cast<char>(marker) + number(payload.size() + 2, 2) + std::string(payload);
}

struct Entry {
  std::uint16_t tag;
  std::uint16_t type;
  std::uint32_t count;
  std::string value;  // in the file's order of bytes
};

// A directory at the offset, with the values that do not fit right behind it.
std::string directory(const std::vector<Entry>& entries, std::uint32_t offset, std::uint32_t next, std::endian order) {
  std::string head = number(entries.size(), 2, order);
  std::string values;
  const std::size_t behind = offset + 2 + entries.size() * 12 + 4;
  for (const Entry& entry : entries) {
    head += number(entry.tag, 2, order) + number(entry.type, 2, order) + number(entry.count, 4, order);
    if (entry.value.size() <= 4) {
      head += entry.value + std::string(4 - entry.value.size(), '\0');
    } else {
      head += number(behind + values.size(), 4, order);
      values += entry.value;
    }
  }
  return head + number(next, 4, order) + values;
}

Entry text(std::uint16_t tag, const std::string& value) {
  return {tag, 2, static_cast<std::uint32_t>(value.size() + 1), value + std::string(1, '\0')};
}

std::string exif(const JPEGOptions& options, const std::string& preview) {
  const std::endian order = std::endian::big;
  std::vector<Entry> entries;
  if (!options.make.empty()) {
    entries.push_back(text(0x010F, options.make));
  }
  if (!options.model.empty()) {
    entries.push_back(text(0x0110, options.model));
  }
  entries.push_back({0x0112, 3, 1, number(1, 2, order)});
  std::string first = directory(entries, 8, 0, order);
  if (!preview.empty()) {
    const auto second = static_cast<std::uint32_t>(8 + first.size());
    first = directory(entries, 8, second, order);
    const std::uint32_t place = second + 2 + 2 * 12 + 4;
    first += directory({{513, 4, 1, number(place, 4)}, {514, 4, 1, number(preview.size(), 4)}}, second, 0, order);
    first += preview;
  }
  return std::string("Exif\0\0MM\0*", 10) + number(8, 4) + first;
}

std::string scan() {
  return jpegSegment(0xDA, std::string("\x01\x01\x00\x00\x3F\x00", 6)) + noise(90) + std::string("\xFF\0", 2) +
         noise(40);
}

std::string box(std::string_view type, std::string_view payload) {
  return number(payload.size() + 8, 4) + std::string(type) + std::string(payload);
}

std::string meta(std::uint32_t dataPlace, std::uint32_t dataLength) {
  // One item in two pieces: version 0, four bytes for place and length.
  const std::uint32_t half = dataLength / 2;
  const std::string table = std::string(4, '\0') + number(0x4400, 2) + number(1, 2) + number(1, 2) + number(0, 2) +
                            number(2, 2) + number(dataPlace, 4) + number(half, 4) + number(dataPlace + half, 4) +
                            number(dataLength - half, 4);
  return box("meta", std::string(4, '\0') + box("hdlr", std::string(24, 'p')) + box("iloc", table));
}

}  // namespace

std::string pngChunk(std::string_view type, std::string_view data) {
  const std::string body = std::string(type) + std::string(data);
  return number(data.size(), 4) + body + number(libdeflate_crc32(0, body.data(), body.size()), 4);
}

std::string deflated(std::string_view text) {
  libdeflate_compressor* packer = libdeflate_alloc_compressor(6);
  std::string packed(libdeflate_zlib_compress_bound(packer, text.size()), '\0');
  packed.resize(libdeflate_zlib_compress(packer, text.data(), text.size(), packed.data(), packed.size()));
  libdeflate_free_compressor(packer);
  if (packed.empty()) {
    throw std::runtime_error("the text could not be packed");
  }
  return packed;
}

std::string png(std::string_view chunks, std::uint32_t rows) {
  std::string pixels;
  std::uint32_t random = 1;  // pixels that cannot be packed, so that the file grows with its rows
  for (std::uint32_t row = 0; row < rows; ++row) {
    pixels += '\0';
    for (int i = 0; i < 16; ++i) {
      random = random * 1664525U + 1013904223U;
      pixels += static_cast<char>(random >> 24U);
    }
  }
  const std::string header = number(16, 4) + number(rows, 4) + std::string("\x08\0\0\0\0", 5);
  return std::string("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header) + std::string(chunks) +
         pngChunk("IDAT", deflated(pixels)) + pngChunk("IEND", "");
}

std::string jpeg(const JPEGOptions& options) {
  std::string bytes = "\xFF\xD8";
  bytes += jpegSegment(0xE0, std::string("JFIF\0\1\1\0\0\1\0\1\0\0", 14));
  const bool hasExif = options.hasPreview || !options.make.empty() || !options.model.empty();
  if (hasExif) {
    bytes += jpegSegment(0xE1, exif(options, options.hasPreview ? jpeg() : std::string{}));
  }
  bytes += jpegSegment(0xDB, std::string(1, '\0') + noise(64));
  bytes += jpegSegment(options.isProgressive ? 0xC2 : 0xC0, std::string("\x08\0\x10\0\x10\x01\x01\x11\0", 9));
  bytes += jpegSegment(0xC4, std::string(1, '\0') + noise(28));
  bytes += scan();
  if (options.isProgressive) {
    bytes += jpegSegment(0xC4, std::string(1, '\x10') + noise(28)) + scan();
  }
  return bytes + "\xFF\xD9";
}

std::string tiff(const TIFFOptions& options) {
  const std::endian order = options.order;
  const std::string strip = noise(64);
  const auto pages = static_cast<std::uint32_t>(options.pages);
  const auto build = [&](std::uint32_t page, std::uint32_t data, std::uint32_t offset, std::uint32_t next) {
    const std::uint32_t first = data + page * 128;
    std::vector<Entry> entries{{256, 3, 1, number(16, 2, order)}, {257, 3, 1, number(8, 2, order)}};
    if (!options.make.empty()) {
      entries.push_back(text(0x010F, options.make));
    }
    entries.push_back({273, 4, 2, number(first, 4, order) + number(first + 64, 4, order)});
    entries.push_back({278, 3, 1, number(4, 2, order)});
    entries.push_back({279, 4, 2, number(64, 4, order) + number(64, 4, order)});
    return directory(entries, offset, next, order);
  };
  const auto each = static_cast<std::uint32_t>(build(0, 0, 0, 0).size());
  const bool isBehind = options.place == DirectoryPlace::afterTheData;
  const std::uint32_t directories = isBehind ? 8 + pages * 128 : 8;
  const std::uint32_t data = isBehind ? 8 : 8 + pages * each;
  std::string strips;
  std::string listed;
  for (std::uint32_t page = 0; page < pages; ++page) {
    strips += strip + strip;
    const std::uint32_t offset = directories + page * each;
    listed += build(page, data, offset, page + 1 < pages ? offset + each : 0);
  }
  const std::string mark = order == std::endian::big ? "MM" : "II";
  return mark + number(42, 2, order) + number(directories, 4, order) + (isBehind ? strips + listed : listed + strips);
}

std::string pdf() {
  std::string bytes =
      "%PDF-1.4\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages >>\nendobj\n";
  const std::size_t table = bytes.size();
  return bytes + "xref\n0 1\n0000000000 65535 f \ntrailer\n<< /Size 3 /Root 1 0 R >>\nstartxref\n" +
         std::to_string(table) + "\n%%EOF";
}

std::string linearizedPdf() {
  const auto build = [](std::size_t length, std::size_t table) {
    std::string padded = std::to_string(length);
    padded.insert(0, 10 - padded.size(), '0');
    std::string place = std::to_string(table);
    place.insert(0, 10 - place.size(), '0');
    const std::string head = "%PDF-1.4\n1 0 obj\n<< /Linearized 1 /L " + padded + " /N 1 >>\nendobj\n";
    const std::string first = head + "xref\n0 1\n0000000000 65535 f \ntrailer\n<< /Size 3 >>\nstartxref\n0\n%%EOF\n";
    const std::string rest = first + "2 0 obj\n<< /Length 80 >>\nstream\n" + noise(80) + "\nendstream\nendobj\n";
    return std::pair(rest + "xref\n0 1\n0000000000 65535 f \ntrailer\n<< /Size 3 >>\nstartxref\n" + place + "\n%%EOF",
                     head.size());
  };
  const auto [draft, table] = build(0, 0);
  return build(draft.size(), table).first;
}

std::string heic(MetaPlace place) {
  const std::string head = box("ftyp", std::string("heic\0\0\0\0mif1heic", 16));
  const std::string data = noise(120);
  const auto metaLength = static_cast<std::uint32_t>(meta(0, 120).size());
  const auto headLength = static_cast<std::uint32_t>(head.size());
  if (place == MetaPlace::beforeTheData) {
    return head + meta(headLength + metaLength + 8, 120) + box("mdat", data);
  }
  return head + box("mdat", data) + meta(headLength + 8, 120);
}

std::string heicWithExif(std::string_view tiffData, std::uint32_t headLength) {
  const std::string head = box("ftyp", std::string("heic\0\0\0\0mif1heic", 16));
  const std::string picture = noise(120);
  const std::string exif = number(headLength, 4) + std::string(headLength, 'E') + std::string(tiffData);
  const auto item = [](std::uint64_t id, std::string_view type) {
    return box("infe", std::string("\2\0\0\0", 4) + number(id, 2) + number(0, 2) + std::string(type) + '\0');
  };
  const std::string list = box("iinf", std::string(4, '\0') + number(2, 2) + item(1, "hvc1") + item(2, "Exif"));
  const auto build = [&](std::uint64_t data) {
    // Two items of one piece each: version 1, four bytes for place and length.
    const auto place = [](std::uint64_t id, std::uint64_t offset, std::uint64_t length) {
      return number(id, 2) + number(0, 2) + number(0, 2) + number(1, 2) + number(offset, 4) + number(length, 4);
    };
    const std::string table = std::string("\1\0\0\0", 4) + number(0x4400, 2) + number(2, 2) +
                              place(1, data, picture.size()) + place(2, data + picture.size(), exif.size());
    return head + box("meta", std::string(4, '\0') + box("hdlr", std::string(24, 'p')) + list + box("iloc", table));
  };
  return build(build(0).size() + 8) + box("mdat", picture + exif);
}

std::vector<std::pair<std::string, std::string>> all() {
  return {
      {"png", png()},
      {"png with text", png(pngChunk("tEXt", std::string("Software\0gnome-screenshot", 25)))},
      {"jpeg", jpeg()},
      {"jpeg with a preview", jpeg({.make = "Maker", .hasPreview = true})},
      {"progressive jpeg", jpeg({.isProgressive = true})},
      {"little-endian tiff, directory last", tiff()},
      {"big-endian tiff, directory last", tiff({.order = std::endian::big})},
      {"little-endian tiff, directory first", tiff({.place = DirectoryPlace::beforeTheData})},
      {"big-endian tiff, directory first", tiff({.order = std::endian::big, .place = DirectoryPlace::beforeTheData})},
      {"tiff of three pages", tiff({.pages = 3})},
      {"pdf", pdf()},
      {"linearized pdf", linearizedPdf()},
      {"heic, description first", heic()},
      {"heic, description last", heic(MetaPlace::afterTheData)},
      {"heic of a camera", heicWithExif(tiff({.make = "Maker"}))},
  };
}

}  // namespace quenlio::samples
