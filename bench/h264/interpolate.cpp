// Luma and chroma interpolation: a row for each position of a 16x16 luma and an 8x8 chroma block, and the members that
// go by a vector or repair an edge at the position that costs most.
#include "reference/h264/interpolate.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

using reference::h264::SampleAt;

// A plane with a margin around its 64x64 samples, and a destination. Planes of chroma pairs are 128 wide.
template <class T>
class Planes {
 public:
  static constexpr int side = 64, margin = 16, step = 2 * side + 2 * margin;

  Planes() : source_(std::size_t(step * (side + 2 * margin))), destination_(source_.size()) {
    zvptest::Rng rng(7);
    zvptest::fill(source_.data(), source_.size(), rng, zvptest::Style::Smooth, 0, sizeof(T) == 1 ? 255 : 1023);
  }
  const T* source() const { return source_.data() + margin * step + margin; }
  // Places of all alignments from which a block of 16x16 reads within the plane.
  static int x(int i) { return 8 + i * 5 % 31; }
  static int y(int i) { return 8 + i * 3 % 31; }
  const T* source(int i) const { return source() + y(i) * step + x(i); }
  T* destination(int plane = 0) { return destination_.data() + margin * step + plane * side; }
  T result(int x, int y, int plane) { return destination(plane)[y * step + x]; }

 private:
  std::vector<T> source_, destination_;
};

enum class Kind { Luma, Chroma, Pairs };

// One export at one position: how it is called, and which sample it reads for a column and row of the block.
template <class T>
struct Row {
  const char* name;
  std::string caseName;
  Kind kind;
  int dx, dy;
  std::function<void(Planes<T>&, int i)> call;
  std::function<int(int y)> rowRead = [](int y) { return y; };
  int outputs = 1;
};

template <class T>
void addRow(bench::Add add, const Row<T>& row) {
  auto* planes = bench::keep<Planes<T>>();
  add(
      row.name, row.caseName, [=, call = row.call](int i) { call(*planes, i); },
      [=] {
        const int side = row.kind == Kind::Luma ? 16 : 8, high = sizeof(T) == 1 ? 255 : 1023;
        for (int i = 0; i < bench::callsPerTurn; ++i) {
          row.call(*planes, i);
          for (int plane = 0; plane < row.outputs; ++plane) {
            const SampleAt at = [&](int x, int y) -> std::int64_t {
              const T* src = planes->source(i) + row.rowRead(y) * Planes<T>::step;
              return row.kind == Kind::Pairs ? src[2 * x + plane] : src[x];
            };
            for (int y = 0; y < side; ++y)
              for (int x = 0; x < side; ++x)
                if (planes->result(x, y, plane) !=
                    (row.kind == Kind::Luma ? reference::h264::lumaSample(at, x, y, row.dx, row.dy, high)
                                            : reference::h264::chromaSample(at, x, y, row.dx, row.dy)))
                  return false;
          }
        }
        return true;
      });
}

template <class T> constexpr zvpSize blockSize(Kind kind) {
  return kind == Kind::Luma ? zvpSize{16, 16} : zvpSize{8, 8};
}

std::string position(int dx, int dy) { return "dx" + std::to_string(dx) + " dy" + std::to_string(dy); }

H264Interpolate16u record(Planes<std::uint16_t>& p, int i, Kind kind, int dx, int dy) {
  return {p.source(i), p.step, p.destination(), p.step, dx, dy, blockSize<std::uint16_t>(kind), 10};
}

// The records of the Block members: the block's place and vector such that it reads at source(i).
template <class Record, class T>
Record blockRecord(Planes<T>& p, int i, Kind kind, int dx, int dy) {
  const int fractions = kind == Kind::Luma ? 4 : 8, unit = kind == Kind::Pairs ? 2 : 1;
  const int x = p.x(i) / unit * unit, vectorX = 3, vectorY = -2;  // whole samples
  Record r{};
  r.pSrc[0] = r.pSrc[1] = p.source() + p.x(i) - x;
  r.srcStep = r.dstStep = p.step;
  r.pDst[0] = p.destination(0);
  r.pDst[1] = p.destination(1);
  r.frameSize = {p.side, p.side};
  r.blockSize = blockSize<T>(kind);
  r.blockPos = {x / unit - vectorX, p.y(i) - vectorY};
  r.motionVector = {fractions * vectorX + dx, fractions * vectorY + dy};
  if constexpr (sizeof(T) == 2) r.bitDepth = 10;
  return r;
}

template <class Record, class T>
void addBlock(bench::Add add, const char* name, zvpStatus (*member)(const Record*), Kind kind, int dx, int dy) {
  // The records are made beforehand.
  auto* records = bench::keep<std::vector<Record>>();
  Row<T> row{name, position(dx, dy), kind, dx, dy, {}, [](int y) { return y; }, kind == Kind::Luma ? 1 : 2};
  row.call = [=](Planes<T>& p, int i) {
    if (records->empty())
      for (int k = 0; k < bench::callsPerTurn; ++k) records->push_back(blockRecord<Record>(p, k, kind, dx, dy));
    member(&(*records)[std::size_t(i & (bench::callsPerTurn - 1))]);
  };
  addRow<T>(add, row);
}

const bench::Rows positions = [](bench::Add add) {
  for (int dy = 0; dy < 4; ++dy)
    for (int dx = 0; dx < 4; ++dx) {
      addRow<std::uint8_t>(add, {"zvpiInterpolateLuma_H264_8u_C1R", position(dx, dy), Kind::Luma, dx, dy,
                                 [=](Planes<std::uint8_t>& p, int i) {
                                   zvpiInterpolateLuma_H264_8u_C1R(p.source(i), p.step, p.destination(), p.step, dx, dy,
                                                                   {16, 16});
                                 }});
      addRow<std::uint16_t>(add, {"zvpiInterpolateLuma_H264_16u_C1R", position(dx, dy), Kind::Luma, dx, dy,
                                  [=](Planes<std::uint16_t>& p, int i) {
                                    const auto r = record(p, i, Kind::Luma, dx, dy);
                                    zvpiInterpolateLuma_H264_16u_C1R(&r);
                                  }});
    }
  for (const auto& [dx, dy] : {std::array{0, 0}, std::array{3, 0}, std::array{0, 3}, std::array{3, 5}}) {
    addRow<std::uint8_t>(add, {"zvpiInterpolateChroma_H264_8u_C1R", position(dx, dy), Kind::Chroma, dx, dy,
                               [=, dx = dx, dy = dy](Planes<std::uint8_t>& p, int i) {
                                 zvpiInterpolateChroma_H264_8u_C1R(p.source(i), p.step, p.destination(), p.step, dx, dy,
                                                                   {8, 8});
                               }});
    addRow<std::uint16_t>(add, {"zvpiInterpolateChroma_H264_16u_C1R", position(dx, dy), Kind::Chroma, dx, dy,
                                [=, dx = dx, dy = dy](Planes<std::uint16_t>& p, int i) {
                                  const auto r = record(p, i, Kind::Chroma, dx, dy);
                                  zvpiInterpolateChroma_H264_16u_C1R(&r);
                                }});
    addRow<std::uint8_t>(add, {"zvpiInterpolateChroma_H264_8u_C2P2R", position(dx, dy), Kind::Pairs, dx, dy,
                               [=, dx = dx, dy = dy](Planes<std::uint8_t>& p, int i) {
                                 zvpiInterpolateChroma_H264_8u_C2P2R(p.source(i), p.step, p.destination(0),
                                                                     p.destination(1), p.step, dx, dy, {8, 8});
                               },
                               [](int y) { return y; }, 2});
  }
};

#define NAMED(MEMBER) #MEMBER, MEMBER
const bench::Rows blocks = [](bench::Add add) {
  using Record8 = H264InterpolateBlock8u;
  using Record16 = H264InterpolateBlock16u;
  addBlock<Record8, std::uint8_t>(add, NAMED(zvpiInterpolateLumaBlock_H264_8u_P1R), Kind::Luma, 2, 2);
  addBlock<Record16, std::uint16_t>(add, NAMED(zvpiInterpolateLumaBlock_H264_16u_P1R), Kind::Luma, 2, 2);
  addBlock<Record8, std::uint8_t>(add, NAMED(zvpiInterpolateChromaBlock_H264_8u_P2R), Kind::Chroma, 3, 5);
  addBlock<Record16, std::uint16_t>(add, NAMED(zvpiInterpolateChromaBlock_H264_16u_P2R), Kind::Chroma, 3, 5);
  addBlock<Record8, std::uint8_t>(add, NAMED(zvpiInterpolateChromaBlock_H264_8u_C2P2R), Kind::Pairs, 3, 5);
};

const bench::Rows edges = [](bench::Add add) {
  static constexpr int beyond = 3;
  using Call8 = zvpStatus (*)(const std::uint8_t*, std::int32_t, std::uint8_t*, std::int32_t, std::int32_t,
                              std::int32_t, std::int32_t, zvpSize);
  using Call16 = zvpStatus (*)(const H264Interpolate16u*, std::int32_t);
  const auto rowRead = [](bool top, Kind kind) -> std::function<int(int)> {
    const int last = (kind == Kind::Luma ? 16 : 8) - beyond - 1;
    if (top) return [](int y) { return std::max(y, beyond); };
    return [=](int y) { return std::min(y, last); };
  };
  const auto add8 = [&](const char* name, Call8 member, Kind kind, bool top, int dx, int dy) {
    addRow<std::uint8_t>(add, {name, "3 rows beyond", kind, dx, dy,
                               [=](Planes<std::uint8_t>& p, int i) {
                                 member(p.source(i), p.step, p.destination(), p.step, dx, dy, beyond,
                                        blockSize<std::uint8_t>(kind));
                               },
                               rowRead(top, kind)});
  };
  const auto add16 = [&](const char* name, Call16 member, Kind kind, bool top, int dx, int dy) {
    addRow<std::uint16_t>(add, {name, "3 rows beyond", kind, dx, dy,
                                [=](Planes<std::uint16_t>& p, int i) {
                                  const auto r = record(p, i, kind, dx, dy);
                                  member(&r, beyond);
                                },
                                rowRead(top, kind)});
  };
  add8(NAMED(zvpiInterpolateLumaTop_H264_8u_C1R), Kind::Luma, true, 2, 2);
  add8(NAMED(zvpiInterpolateLumaBottom_H264_8u_C1R), Kind::Luma, false, 2, 2);
  add8(NAMED(zvpiInterpolateChromaTop_H264_8u_C1R), Kind::Chroma, true, 3, 5);
  add8(NAMED(zvpiInterpolateChromaBottom_H264_8u_C1R), Kind::Chroma, false, 3, 5);
  add16(NAMED(zvpiInterpolateLumaTop_H264_16u_C1R), Kind::Luma, true, 2, 2);
  add16(NAMED(zvpiInterpolateLumaBottom_H264_16u_C1R), Kind::Luma, false, 2, 2);
  add16(NAMED(zvpiInterpolateChromaTop_H264_16u_C1R), Kind::Chroma, true, 3, 5);
  add16(NAMED(zvpiInterpolateChromaBottom_H264_16u_C1R), Kind::Chroma, false, 3, 5);
};
#undef NAMED

const bench::Rows expansion = [](bench::Add add) {
  static constexpr int width = 64, height = 48, margin = 16, step = width + 2 * margin;
  auto* plane = bench::keep<std::vector<std::uint8_t>>(std::size_t(step * (height + 2 * margin)));
  zvptest::Rng rng(3);
  zvptest::fill(plane->data(), plane->size(), rng, zvptest::Style::Smooth, 0, 255);
  std::uint8_t* first = plane->data() + margin * step + margin;
  for (const std::uint32_t kind : {0u, 1u, 2u})
    add(
        "zvpiExpandPlane_H264_8u_C1R", kind == 0 ? "frame" : kind == 1 ? "top field" : "bottom field",
        [=](int) { zvpiExpandPlane_H264_8u_C1R(first, width, height, step, margin, kind); },
        [=] {
          std::vector<std::uint8_t> expected = *plane;
          std::uint8_t* model = expected.data() + margin * step + margin;
          reference::h264::expandPlane([=](int x, int y) { return model[y * step + x]; },
                                       [=](int x, int y, std::uint8_t v) { model[y * step + x] = v; }, width, height,
                                       margin, int(kind));
          zvpiExpandPlane_H264_8u_C1R(first, width, height, step, margin, kind);
          return *plane == expected;
        });
};

const bench::Rows means = [](bench::Add add) {
  using Planes8 = Planes<std::uint8_t>;
  const auto addMean = [&](const char* name, auto call) {
    auto* planes = bench::keep<Planes8>();
    add(
        name, "16x16", [=](int i) { call(*planes, i); },
        [=] {
          for (int i = 0; i < bench::callsPerTurn; ++i) {
            call(*planes, i);
            for (int y = 0; y < 16; ++y)
              for (int x = 0; x < 16; ++x) {
                const int a = planes->source(i)[y * Planes8::step + x];
                const int b = planes->source(i + 1)[y * Planes8::step + x];
                if (planes->result(x, y, 0) != (a + b + 1) >> 1) return false;
              }
          }
          return true;
        });
  };
  addMean("zvpiInterpolateBlock_H264_8u_P2P1R", [](Planes8& p, int i) {
    zvpiInterpolateBlock_H264_8u_P2P1R(p.source(i), p.source(i + 1), p.destination(), 16, 16, p.step);
  });
  addMean("zvpiInterpolateBlock_H264_8u_P3P1R", [](Planes8& p, int i) {
    zvpiInterpolateBlock_H264_8u_P3P1R(p.source(i), p.source(i + 1), p.destination(), 16, 16, p.step, p.step, p.step);
  });
};

}  // namespace
