// Samples as RGB, and PNG files of them.
#pragma once

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "common/decoder.h"
#include "source.h"

namespace zvptool {

struct Rgb {
  std::uint8_t r, g, b;
};

inline Rgb toRgb(const video::Format& format, double y, double cb, double cr) {
  double kr = 0.299, kb = 0.114;
  if (format.matrix == video::Matrix::Bt709) kr = 0.2126, kb = 0.0722;
  if (format.matrix == video::Matrix::Bt2020) kr = 0.2627, kb = 0.0593;
  const double luma = format.fullRange ? y / 255 : (y - 16) / 219;
  const double scale = format.fullRange ? 127.5 : 112;
  const double blue = (cb - 128) / scale, red = (cr - 128) / scale;  // -1 .. 1
  const double r = luma + red * (1 - kr), b = luma + blue * (1 - kb), g = (luma - kr * r - kb * b) / (1 - kr - kb);
  const auto byte = [](double v) { return std::uint8_t(std::lround(std::clamp(v, 0.0, 1.0) * 255)); };
  return {byte(r), byte(g), byte(b)};
}

// width * height samples, row by row.
inline void writePng(const std::string& path, int width, int height, const std::vector<Rgb>& samples) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = png_uint_32(width);
  image.height = png_uint_32(height);
  image.format = PNG_FORMAT_RGB;
  if (!png_image_write_to_file(&image, path.c_str(), 0, samples.data(), 0, nullptr))
    throw ToolError("cannot write " + path + ": " + image.message);
}

}  // namespace zvptool
