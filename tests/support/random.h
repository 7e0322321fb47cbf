// Seeded random numbers, shapes and data in the styles that break kernels.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "support/guarded.h"

namespace zvptest {

// A small generator with the same sequence everywhere, unlike std::uniform_int_distribution.
class Rng {
 public:
  explicit Rng(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15u + 0x1234567u) { next(); }
  std::uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return std::uint32_t((state_ * 0x2545F4914F6CDD1Du) >> 32);
  }
  // Uniform in low..high, both included.
  int range(int low, int high) {
    const std::uint64_t span = std::uint64_t(std::int64_t(high) - low) + 1;
    return int(low + std::int64_t((next() * span) >> 32));
  }
  bool chance(int oneIn) { return range(1, oneIn) == 1; }
  template <class T> const T& pick(const std::vector<T>& choices) {
    return choices[std::size_t(range(0, int(choices.size()) - 1))];
  }
  Guard guard() { return chance(2) ? Guard::Behind : Guard::Before; }
  // A row distance for rows of rowBytes: tight, odd, large; negative in a third of the cases if that is legal.
  std::ptrdiff_t step(std::ptrdiff_t rowBytes, bool negativeToo, std::ptrdiff_t multipleOf = 1) {
    std::ptrdiff_t step = rowBytes + (chance(3) ? 0 : chance(4) ? range(0, 3000) : range(0, 67));
    step = (step + multipleOf - 1) / multipleOf * multipleOf;
    return negativeToo && chance(3) ? -step : step;
  }

 private:
  std::uint64_t state_;
};

// How data are made. Low and high are the ends of the range that is asked for.
enum class Style { Uniform, AllLow, AllHigh, Extremes, Runs, Small, Smooth };
inline constexpr Style allStyles[] = {Style::Uniform, Style::AllLow, Style::AllHigh, Style::Extremes,
                                      Style::Runs,    Style::Small,  Style::Smooth};
inline Style anyStyle(Rng& rng) { return allStyles[rng.range(0, 6)]; }

// A stream of values of one style.
class Values {
 public:
  Values(Rng& rng, Style style, int low, int high) : rng_(rng), style_(style), low_(low), high_(high) {
    last_ = style == Style::Smooth ? rng.range(low, high) : low;
  }
  int next() {
    switch (style_) {
      case Style::AllLow: return low_;
      case Style::AllHigh: return high_;
      case Style::Extremes: return rng_.chance(2) ? low_ : high_;
      case Style::Runs:
        if (rng_.chance(5)) last_ = rng_.chance(2) ? low_ : rng_.chance(2) ? high_ : rng_.range(low_, high_);
        return last_;
      case Style::Small: return clampToRange(std::int64_t(low_) <= 0 && high_ >= 0 ? rng_.range(-3, 3)
                                                                                   : low_ + rng_.range(0, 3));
      case Style::Smooth: return last_ = clampToRange(std::int64_t(last_) + rng_.range(-4, 4));
      default: return rng_.range(low_, high_);
    }
  }

 private:
  int clampToRange(std::int64_t v) const { return int(v < low_ ? low_ : v > high_ ? high_ : v); }
  Rng& rng_;
  Style style_;
  int low_, high_, last_;
};

template <class T> void fill(T* data, std::size_t count, Rng& rng, Style style, int low, int high) {
  Values values(rng, style, low, high);
  for (std::size_t i = 0; i < count; ++i) data[i] = T(values.next());
}
template <class T> void fill(GuardedArray<T>& array, Rng& rng, Style style, int low, int high) {
  fill(array.data(), array.size(), rng, style, low, high);
}
// Samples of the block and its margin in the style; the gaps between rows are noise, so that a stray use shows.
template <class T> void fill(GuardedPlane<T>& plane, Rng& rng, Style style, int low, int high) {
  for (std::size_t i = 0; i < plane.bytes().size(); ++i) plane.bytes().data()[i] = std::uint8_t(rng.next());
  Values values(rng, style, low, high);
  const auto m = plane.margin();
  for (int y = -m.above; y < plane.height() + m.below; ++y)
    for (int x = -m.left; x < plane.width() + m.right; ++x) plane.set(x, y, T(values.next()));
}

}  // namespace zvptest
