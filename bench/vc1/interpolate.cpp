// The VC-1 interpolation: blocks at positions of each kind, and blocks of a plane that are read in place, mapped or
// padded.
#include "reference/vc1/interpolate.h"

#include <cstring>
#include <string>
#include <vector>

#include "support/bench.h"

namespace {

using namespace reference::vc1;
using std::int32_t;
using std::uint8_t;

std::string nameOf(zvpSize size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

bool sameBlocks(const uint8_t* a, const uint8_t* b, int rows, int bytes, int step) {
  for (int y = 0; y < rows; ++y)
    if (std::memcmp(a + y * step, b + y * step, std::size_t(bytes)) != 0) return false;
  return true;
}

void addBlocks(bench::Add add, const InterpolationMember& m, zvpSize size) {
  constexpr int fractions[][2] = {{0, 0}, {1, 0}, {2, 0}, {0, 3}, {0, 2}, {1, 3}, {2, 2}, {2, 1}};
  for (const auto& f : fractions) {
    auto* scene = bench::keep<bench::Scene>(83);
    const auto block = [=](int i, uint8_t* dst) {
      return zvpInterpolationBlock{scene->source(i), scene->step, dst, scene->step, f[0], f[1], size, i & 1};
    };
    add(
        m.name, nameOf(size) + " " + std::to_string(f[0]) + "," + std::to_string(f[1]),
        [=](int i) {
          const auto b = block(i, scene->destination(i));
          m.qp(&b);
        },
        [=] {
          for (int i = 0; i < 32; ++i) {
            std::vector<uint8_t> expected(scene->step * 16);
            interpolate(m, block(i, expected.data()));
            const auto b = block(i, scene->destination(i));
            m.qp(&b);
            if (!sameBlocks(b.pDst, expected.data(), size.height, size.width * m.channels, scene->step)) return false;
          }
          return true;
        });
  }
}

// A frame of 96 x 80 samples at most, and places in it or around it.
void addPlanes(bench::Add add, const InterpolationMember& m, zvpSize size) {
  struct Plane {
    uint8_t samples[96 * 80], map[256], dst[96 * 16];
  };
  auto* plane = bench::keep<Plane>();
  zvptest::Rng rng(84);
  for (auto& value : plane->samples) value = uint8_t(rng.next());
  for (auto& value : plane->map) value = uint8_t(rng.next());
  enum { Inside, Mapped, Corner, Parity };
  for (const auto& [kind, name] : {std::pair(Inside, "inside"), std::pair(Mapped, "inside, mapped"),
                                   std::pair(Corner, "over a corner"), std::pair(Parity, "over a corner, by parity")}) {
    const auto block = [=, kind = kind](int i, uint8_t* dst) {
      zvpInterpolationICBlock b{};
      b.pSrc = plane->samples;
      b.srcStep = 96;
      b.pDst = dst;
      b.dstStep = 96;
      if (kind == Mapped) b.pLUTTop = b.pLUTBottom = plane->map;
      b.frameSize = {96 / m.channels, 80};
      b.blockSize = size;
      const int behindX = b.frameSize.width - size.width, behindY = 80 - size.height;
      b.blockPos = kind >= Corner ? zvpPoint{i & 1 ? behindX + (i >> 2 & 7) : -(i >> 2 & 7), i & 2 ? behindY + 3 : -4}
                                  : zvpPoint{1 + i * 7 % (behindX - 3), 1 + i * 11 % (behindY - 3)};
      b.blockPos.x *= m.channels;
      b.dx = 1 + i % 3;
      b.dy = 1 + i / 3 % 3;
      b.oppositePadding = kind == Parity;
      return b;
    };
    add(
        m.icName, nameOf(size) + " " + name,
        [=](int i) {
          const auto b = block(i, plane->dst);
          m.ic(&b);
        },
        [=] {
          for (int i = 0; i < 32; ++i) {
            std::vector<uint8_t> expected(sizeof plane->dst);
            interpolateInPlane(m, block(i, expected.data()));
            const auto b = block(i, plane->dst);
            m.ic(&b);
            if (!sameBlocks(plane->dst, expected.data(), size.height, size.width * m.channels, 96)) return false;
          }
          return true;
        });
  }
}

const bench::Rows rows = [](bench::Add add) {
  for (const auto& m : interpolationMembers())
    for (const zvpSize size : sizesOf(m)) {
      addBlocks(add, m, size);
      addPlanes(add, m, size);
    }
};

}  // namespace
