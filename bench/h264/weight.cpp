// Weighted prediction of 16x16 and 8x8 blocks.
#include "reference/h264/weight.h"

#include <algorithm>
#include <string>
#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

namespace model = reference::h264;

constexpr int logWD = 5, weight1 = 21, offset1 = 3, weight2 = 40, offset2 = -7, implicit1 = 24, implicit2 = 40;

// Two predictions, of samples in 8 or 10 bits, and a destination that members in place find as it was.
template <class T>
class Planes {
 public:
  static constexpr int step = 64, rows = 64;
  static constexpr std::int32_t high = sizeof(T) == 1 ? 255 : 1023;

  Planes() {
    zvptest::Rng rng(9);
    for (auto* plane : {&first_, &second_, &result_}) {
      plane->resize(step * rows);
      zvptest::fill(plane->data(), plane->size(), rng, zvptest::Style::Smooth, 0, high);
    }
  }
  const T* first(int i) const { return first_.data() + place(i); }
  const T* second(int i) const { return second_.data() + place(i + 5); }
  T* result() { return result_.data(); }

 private:
  static int place(int i) { return i * 3 % 31 * step + i * 7 % 31; }
  std::vector<T> first_, second_, result_;
};

// Of the two predictions and of what the destination held.
using Formula = std::int32_t (*)(std::int32_t s1, std::int32_t s2, std::int32_t before, std::int32_t high);

template <class T, class Call>
void addMember(bench::Add add, const char* name, Formula formula, Call call) {
  for (const int side : {16, 8}) {
    auto* planes = bench::keep<Planes<T>>();
    const zvpSize size = {side, side};
    add(
        name, std::to_string(side) + "x" + std::to_string(side), [=](int i) { call(*planes, i, size); },
        [=] {
          for (int i = 0; i < bench::callsPerTurn; ++i) {
            const std::vector<T> before(planes->result(), planes->result() + planes->step * side);
            call(*planes, i, size);
            for (int y = 0; y < side; ++y)
              for (int x = 0; x < side; ++x) {
                const int at = y * planes->step + x;
                const auto expected =
                    formula(planes->first(i)[at], planes->second(i)[at], before[std::size_t(at)], planes->high);
                if (planes->result()[at] != expected) return false;
              }
          }
          return true;
        });
  }
}

std::int32_t one(std::int32_t, std::int32_t, std::int32_t before, std::int32_t high) {
  return model::weightOne(before, logWD, weight1, offset1, high);
}
std::int32_t two(std::int32_t s1, std::int32_t s2, std::int32_t, std::int32_t high) {
  return model::weightTwo(s1, s2, logWD, weight1, offset1, weight2, offset2, high);
}
std::int32_t implicitly(std::int32_t s1, std::int32_t s2, std::int32_t, std::int32_t high) {
  return model::weightImplicit(s1, s2, implicit1, implicit2, high);
}
std::int32_t average(std::int32_t s1, std::int32_t, std::int32_t before, std::int32_t high) {
  return std::clamp(model::weightedAverage(s1, before, weight1, weight2, logWD, offset1), 0, high);
}
std::int32_t mean(std::int32_t s1, std::int32_t s2, std::int32_t, std::int32_t) { return (s1 + s2 + 1) >> 1; }

using P8 = Planes<std::uint8_t>;
using P16 = Planes<std::uint16_t>;

const bench::Rows rows8 = [](bench::Add add) {
  addMember<std::uint8_t>(add, "zvpiUniDirWeightBlock_H264_8u_C1R", one, [](P8& p, int, zvpSize size) {
    zvpiUniDirWeightBlock_H264_8u_C1R(p.result(), p.step, logWD, weight1, offset1, size);
  });
  addMember<std::uint8_t>(add, "zvpiUniDirWeightBlock_H264_8u_C1IR", one, [](P8& p, int, zvpSize size) {
    zvpiUniDirWeightBlock_H264_8u_C1IR(p.result(), p.step, logWD, weight1, offset1, size);
  });
  addMember<std::uint8_t>(add, "zvpiBiDirWeightBlock_H264_8u_P2P1R", two, [](P8& p, int i, zvpSize size) {
    zvpiBiDirWeightBlock_H264_8u_P2P1R(p.first(i), p.second(i), p.result(), p.step, p.step, logWD, weight1, offset1,
                                       weight2, offset2, size);
  });
  addMember<std::uint8_t>(add, "zvpiBiDirWeightBlock_H264_8u_P3P1R", two, [](P8& p, int i, zvpSize size) {
    zvpiBiDirWeightBlock_H264_8u_P3P1R(p.first(i), p.second(i), p.result(), p.step, p.step, p.step, logWD, weight1,
                                       offset1, weight2, offset2, size);
  });
  addMember<std::uint8_t>(add, "zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R", implicitly,
                          [](P8& p, int i, zvpSize size) {
                            zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(p.first(i), p.second(i), p.result(), p.step,
                                                                       p.step, implicit1, implicit2, size);
                          });
  addMember<std::uint8_t>(add, "zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R", implicitly,
                          [](P8& p, int i, zvpSize size) {
                            zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(p.first(i), p.second(i), p.result(), p.step,
                                                                       p.step, p.step, implicit1, implicit2, size);
                          });
  addMember<std::uint8_t>(add, "zvpiWeightedAverage_H264_8u_C1IR", average, [](P8& p, int i, zvpSize size) {
    zvpiWeightedAverage_H264_8u_C1IR(p.first(i), p.result(), p.step, weight1, weight2, logWD, offset1, size);
  });
};

const bench::Rows rows16 = [](bench::Add add) {
  const auto record = [](P16& p, int i, zvpSize size) {
    return WeightBlockRecord{p.first(i), p.step, p.second(i), p.step, p.result(), p.step, size, 10};
  };
  addMember<std::uint16_t>(add, "zvpiUnidirWeight_H264_16u_IP2P1R", one, [](P16& p, int, zvpSize size) {
    zvpiUnidirWeight_H264_16u_IP2P1R(p.result(), p.step, logWD, weight1, offset1, size, 10);
  });
  addMember<std::uint16_t>(add, "zvpiBidirWeight_H264_16u_P2P1R", two, [=](P16& p, int i, zvpSize size) {
    const auto r = record(p, i, size);
    zvpiBidirWeight_H264_16u_P2P1R(&r, logWD, weight1, offset1, weight2, offset2);
  });
  addMember<std::uint16_t>(add, "zvpiBidirWeightImplicit_H264_16u_P2P1R", implicitly, [=](P16& p, int i, zvpSize size) {
    const auto r = record(p, i, size);
    zvpiBidirWeightImplicit_H264_16u_P2P1R(&r, implicit1, implicit2);
  });
  addMember<std::uint16_t>(add, "zvpiBidir_H264_16u_P2P1R", mean, [=](P16& p, int i, zvpSize size) {
    const auto r = record(p, i, size);
    zvpiBidir_H264_16u_P2P1R(&r);
  });
};

}  // namespace
