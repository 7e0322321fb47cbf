#include "reference/dv/store.h"

#include <algorithm>

namespace reference::dv {
namespace {

struct Plane {
  int width, height;
  std::vector<int> samples;
  Plane(int w, int h) : width(w), height(h), samples(std::size_t(w * h)) {}
  int& at(int x, int y) { return samples[std::size_t(y * width + x)]; }
};

// The part of a block from a column on, size samples a row, columns wide.
void paste(Plane& plane, int x, int y, const std::int16_t* block, int size, int column, int columns) {
  for (int r = 0; r < size; ++r)
    for (int c = 0; c < columns; ++c) plane.at(x + c, y + r) = block[size * r + column + c];
}

Plane reduce(Plane& plane, int factor) {
  Plane small(plane.width / factor, plane.height / factor);
  for (int y = 0; y < small.height; ++y)
    for (int x = 0; x < small.width; ++x) {
      int sum = 0;
      for (int i = 0; i < factor * factor; ++i) sum += plane.at(factor * x + i % factor, factor * y + i / factor);
      small.at(x, y) = sum / (factor * factor);
    }
  return small;
}

int factorOf(Size size) { return size == Size::Half ? 2 : size == Size::Quarter ? 4 : 1; }
int blockSizeOf(Size size) { return size == Size::Eighth ? 1 : size == Size::From4x4 ? 4 : 8; }

Plane lumaOf(Chroma chroma, Size size, const std::int16_t* src) {
  const int n = blockSizeOf(size);
  const auto block = [&](Plane& plane, int column, int row, int at) {
    paste(plane, n * column, n * row, src + at, n, 0, n);
  };
  Plane wide(4 * n, n), square(2 * n, 2 * n), flat(2 * n, n);
  switch (chroma) {
    case Chroma::C411:
      for (int i = 0; i < 4; ++i) block(wide, i, 0, 64 * i);
      return wide;
    case Chroma::C411Edge:
    case Chroma::C420:
      for (int i = 0; i < 4; ++i) block(square, i % 2, i / 2, 64 * i);
      return square;
    case Chroma::C422:
      block(flat, 0, 0, 0);
      block(flat, 1, 0, 128);
      return flat;
    default:
      block(flat, 0, 0, chroma == Chroma::EvenHalf100 ? 0 : 128);
      block(flat, 1, 0, chroma == Chroma::EvenHalf100 ? 64 : 192);
      return flat;
  }
}

// As the samples lie in the picture: for 4:1:1 at the edge 4 columns of 16 rows. A block of one sample is that sample.
Plane chromaOf(Chroma chroma, Size size, const std::int16_t* src, bool red) {
  const int n = blockSizeOf(size);
  int at = red ? 256 : 320;
  if (chroma == Chroma::EvenHalf100) at = red ? 256 : 384;
  if (chroma == Chroma::OddHalf100) at = red ? 320 : 448;
  if (chroma == Chroma::C411Edge && n > 1) {
    Plane tall(n / 2, 2 * n);
    paste(tall, 0, 0, src + at, n, 0, n / 2);
    paste(tall, 0, n, src + at, n, n / 2, n / 2);
    return tall;
  }
  Plane plane(n, n);
  paste(plane, 0, 0, src + at, n, 0, n);
  return plane;
}

// A column between each sample and the next; the last one has itself for a neighbour.
Plane interpolated(Plane& plane) {
  Plane wide(2 * plane.width, plane.height);
  for (int y = 0; y < plane.height; ++y)
    for (int x = 0; x < plane.width; ++x) {
      wide.at(2 * x, y) = plane.at(x, y);
      wide.at(2 * x + 1, y) = (plane.at(x, y) + plane.at(std::min(x + 1, plane.width - 1), y)) / 2;
    }
  return wide;
}

std::uint8_t sampleRule(int v) { return std::uint8_t(std::clamp(v + 128, 0, 255)); }

}  // namespace

int storedWidth(Chroma chroma, Size size) {
  return (chroma == Chroma::C411 ? 4 : 2) * blockSizeOf(size) / factorOf(size);
}
int storedHeight(Chroma chroma, Size size) {
  return (chroma == Chroma::C420 || chroma == Chroma::C411Edge ? 2 : 1) * blockSizeOf(size) / factorOf(size);
}

std::vector<std::uint8_t> store(Chroma chroma, Size size, const std::int16_t* src) {
  Plane luma = lumaOf(chroma, size, src), cb = chromaOf(chroma, size, src, false),
        cr = chromaOf(chroma, size, src, true);
  if (factorOf(size) > 1) {
    luma = reduce(luma, factorOf(size));
    cb = reduce(cb, factorOf(size));
    cr = reduce(cr, factorOf(size));
  }
  if (size == Size::Full && (chroma == Chroma::C411 || chroma == Chroma::C411Edge)) {
    cb = interpolated(cb);
    cr = interpolated(cr);
  }
  std::vector<std::uint8_t> bytes;
  for (int y = 0; y < luma.height; ++y)
    for (int x = 0; x < luma.width; ++x) {
      Plane& plane = x % 2 ? cr : cb;
      bytes.push_back(sampleRule(luma.at(x, y)));
      bytes.push_back(sampleRule(plane.at(x / 2 * plane.width / (luma.width / 2), y * plane.height / luma.height)));
    }
  return bytes;
}

}  // namespace reference::dv
