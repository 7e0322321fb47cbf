// Every operation of the SIMD layer against its meaning lane by lane, written here on wide integers: all pairs of
// bytes, random and extreme values of wider lanes, all constants of shifts and shuffles. Registers of 16 bytes, and of
// 32 where the build has them.
#include "simd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "support/compare.h"
#include "support/random.h"

using namespace zvp;
using namespace zvp::simd;
using zvptest::Guard;
using zvptest::GuardedArray;
using zvptest::GuardedPlane;
using zvptest::Rng;
using zvptest::rounds;

namespace {

#if defined(__AVX2__) || defined(ZVP_SIMD_PLAIN)
constexpr bool hasWide = true;
#else
constexpr bool hasWide = false;
#endif

// Values of any lane type: 64 bits hold all but the products, which s64 holds too.
using Wide = s64;

template <class T, int N> std::array<T, std::size_t(N)> array(Vec<T, N> v) {
  std::array<T, std::size_t(N)> lanes;
  static_assert(sizeof lanes == sizeof v);
  std::memcpy(&lanes, &v, sizeof lanes);
  return lanes;
}

template <class T> T extremeOrRandom(Rng& rng) {
  constexpr T low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
  switch (rng.range(0, 9)) {
    case 0:
      return low;
    case 1:
      return high;
    case 2:
      return T(low + 1);
    case 3:
      return T(high - 1);
    case 4:
      return T(0);
    case 5:
      return T(~T(0));
    case 6:
      return T(rng.range(-300, 300));
    default:
      return T(u64(rng.next()) << 32 | rng.next());
  }
}

template <class V> V randomVec(Rng& rng) {
  std::array<typename Lanes<V>::Type, std::size_t(Lanes<V>::count)> values;
  for (auto& value : values) value = extremeOrRandom<typename Lanes<V>::Type>(rng);
  return lanes(values);
}

// Registers of every pair of bytes, or of many pairs of wider lanes.
template <class V> const std::vector<std::pair<V, V>>& pairsOf() {
  static const auto all = [] {
    std::vector<std::pair<V, V>> pairs;
    if constexpr (sizeof(typename Lanes<V>::Type) == 1) {
      constexpr int n = Lanes<V>::count;
      for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; b += n) {
          std::array<typename Lanes<V>::Type, std::size_t(n)> second;
          for (int i = 0; i < n; ++i) second[std::size_t(i)] = typename Lanes<V>::Type(b + i);
          pairs.emplace_back(splat<V>(typename Lanes<V>::Type(a)), lanes(second));
        }
    }
    Rng rng(7);
    for (int round = 0; round < rounds(3000); ++round) {
      const V first = randomVec<V>(rng);
      pairs.emplace_back(first, randomVec<V>(rng));
    }
    return pairs;
  }();
  return all;
}

template <class V> void expectBinary(const char* name, V (*op)(V, V), Wide (*meaning)(Wide, Wide)) {
  using T = typename Lanes<V>::Type;
  for (const auto& [v, w] : pairsOf<V>()) {
    const auto a = array(v), b = array(w), result = array(op(v, w));
    for (std::size_t i = 0; i < a.size(); ++i)
      if (result[i] != T(meaning(Wide(a[i]), Wide(b[i]))))
        FAIL() << name << ' ' << +a[i] << ", " << +b[i] << " gives " << +result[i] << " in lane " << i << " of "
               << a.size();
  }
}

// The checks of one lane type, at 16 bytes and, where there are any, at 32.
template <class T> using Narrow = Vec<T, 16 / sizeof(T)>;
template <class T> using Doubled = Vec<T, 32 / sizeof(T)>;
template <template <class> class Check, class... Ts> void forTypes() {
  (Check<Narrow<Ts>>::run(), ...);
  if constexpr (hasWide) (Check<Doubled<Ts>>::run(), ...);
}

template <class T> constexpr Wide lowest = Wide(std::numeric_limits<T>::min());
template <class T> constexpr Wide highest = Wide(std::numeric_limits<T>::max());
template <class To> Wide saturate(Wide value) { return std::clamp(value, lowest<To>, highest<To>); }

template <class V> struct Bits {
  static void run() {
    expectBinary<V>(
        "and", [](V a, V b) { return a & b; }, [](Wide a, Wide b) { return a & b; });
    expectBinary<V>(
        "or", [](V a, V b) { return a | b; }, [](Wide a, Wide b) { return a | b; });
    expectBinary<V>(
        "xor", [](V a, V b) { return a ^ b; }, [](Wide a, Wide b) { return a ^ b; });
    expectBinary<V>(
        "andNot", [](V a, V b) { return andNot(a, b); }, [](Wide a, Wide b) { return ~a & b; });
    expectBinary<V>(
        "add", [](V a, V b) { return a + b; }, [](Wide a, Wide b) { return Wide(u64(a) + u64(b)); });
    expectBinary<V>(
        "subtract", [](V a, V b) { return a - b; }, [](Wide a, Wide b) { return Wide(u64(a) - u64(b)); });
    using T = typename Lanes<V>::Type;
    for (T value : {T(0), T(1), T(-1), std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), T(0x5a)})
      for (T lane : array(splat<V>(value))) EXPECT_EQ(lane, value);
    for (T lane : array(zero<V>())) EXPECT_EQ(lane, T(0));
  }
};

template <class V> struct Saturation {
  static void run() {
    using T = typename Lanes<V>::Type;
    expectBinary<V>(
        "addSaturate", [](V a, V b) { return addSaturate(a, b); }, [](Wide a, Wide b) { return saturate<T>(a + b); });
    expectBinary<V>(
        "subSaturate", [](V a, V b) { return subSaturate(a, b); }, [](Wide a, Wide b) { return saturate<T>(a - b); });
  }
};

template <class V> struct Average {
  static void run() {
    expectBinary<V>(
        "average", [](V a, V b) { return average(a, b); }, [](Wide a, Wide b) { return (a + b + 1) / 2; });
  }
};

template <class V> struct MinMax {
  static void run() {
    expectBinary<V>(
        "min", [](V a, V b) { return min(a, b); }, [](Wide a, Wide b) { return std::min(a, b); });
    expectBinary<V>(
        "max", [](V a, V b) { return max(a, b); }, [](Wide a, Wide b) { return std::max(a, b); });
  }
};

template <class V> struct LowProduct {
  static void run() {
    expectBinary<V>(
        "mulLow", [](V a, V b) { return mulLow(a, b); }, [](Wide a, Wide b) { return Wide(u64(a) * u64(b)); });
  }
};

template <class V> struct HighProduct {
  static void run() {
    expectBinary<V>(
        "mulHigh", [](V a, V b) { return mulHigh(a, b); }, [](Wide a, Wide b) { return (a * b) >> 16; });
  }
};

template <class V> struct Equality {
  static void run() {
    expectBinary<V>(
        "equal", [](V a, V b) { return equal(a, b); }, [](Wide a, Wide b) { return a == b ? Wide(-1) : Wide(0); });
    expectBinary<V>(
        "equal to itself", [](V a, V) { return equal(a, a); }, [](Wide, Wide) { return Wide(-1); });
  }
};

template <class V> struct Order {
  static void run() {
    expectBinary<V>(
        "greater", [](V a, V b) { return greater(a, b); }, [](Wide a, Wide b) { return a > b ? Wide(-1) : Wide(0); });
    expectBinary<V>(
        "select", [](V a, V b) { return select(greater(a, b), a, b); }, [](Wide a, Wide b) { return std::max(a, b); });
  }
};

template <class V> struct Absolute {
  static void run() {
    expectBinary<V>(
        "abs", [](V a, V) { return abs(a); }, [](Wide a, Wide) { return a < 0 ? -a : a; });
  }
};

template <class V> struct Difference {
  static void run() {
    expectBinary<V>(
        "absDiff", [](V a, V b) { return absDiff(a, b); }, [](Wide a, Wide b) { return a < b ? b - a : a - b; });
  }
};

// A shift by any count is the widest possible one bit by bit.
template <class T> T shifted(T value, int left, int right) {
  for (int i = 0; i < left; ++i) value = T(u64(value) * 2);
  for (int i = 0; i < right; ++i)
    value = T(value < T(0) ? (Wide(value) - 1) / 2 : std::is_signed_v<T> ? Wide(value) / 2 : Wide(u64(value) / 2));
  return value;
}

// The instantiations f(constant) for 0 to Count - 1: operations by a constant, called in a loop.
template <class V> using Unary = V (*)(V);
template <class V, int Count, class F> constexpr std::array<Unary<V>, std::size_t(Count)> forConstants(F f) {
  return [f]<int... I>(std::integer_sequence<int, I...>) {
    return std::array<Unary<V>, std::size_t(Count)>{f(std::integral_constant<int, I>())...};
  }
  (std::make_integer_sequence<int, Count>());
}

template <class V> struct Shifts {
  static void run() {
    constexpr int counts = 8 * sizeof(typename Lanes<V>::Type) + 2;
    static constexpr auto left =
        forConstants<V, counts>([](auto c) { return +[](V v) { return shiftLeft<decltype(c)::value>(v); }; });
    static constexpr auto right =
        forConstants<V, counts>([](auto c) { return +[](V v) { return shiftRight<decltype(c)::value>(v); }; });
    Rng rng(2);
    for (int count = 0; count < counts; ++count)
      for (int round = 0; round < 40; ++round) {
        const V v = randomVec<V>(rng);
        const auto a = array(v);
        const auto up = array(left[std::size_t(count)](v)), down = array(right[std::size_t(count)](v));
        ASSERT_EQ(array(shiftLeft(v, count)), up);
        ASSERT_EQ(array(shiftRight(v, count)), down);
        for (std::size_t i = 0; i < a.size(); ++i) {
          ASSERT_EQ(up[i], shifted(a[i], count, 0)) << +a[i] << " << " << count;
          ASSERT_EQ(down[i], shifted(a[i], 0, count)) << +a[i] << " >> " << count;
        }
      }
  }
};

template <class V> struct Interleaving {
  static void run() {
    constexpr int n = Lanes<V>::count, perHalf = 16 / int(sizeof(typename Lanes<V>::Type));
    Rng rng(3);
    for (int round = 0; round < rounds(100); ++round) {
      const V v = randomVec<V>(rng), w = randomVec<V>(rng);
      const auto a = array(v), b = array(w), low = array(interleaveLow(v, w)), high = array(interleaveHigh(v, w));
      for (int half = 0; half < n; half += perHalf)
        for (int i = 0; i < perHalf / 2; ++i) {
          const auto pair = std::size_t(half + 2 * i), from = std::size_t(half + i), above = from + perHalf / 2;
          ASSERT_EQ(low[pair], a[from]);
          ASSERT_EQ(low[pair + 1], b[from]);
          ASSERT_EQ(high[pair], a[above]);
          ASSERT_EQ(high[pair + 1], b[above]);
        }
    }
  }
};

// Two registers into one of lanes of half the width, the halves by themselves.
template <class V, class To, class Op, class Meaning> void expectPacking(Op op, Meaning meaning) {
  constexpr int n = Lanes<V>::count, perHalf = 16 / int(sizeof(typename Lanes<V>::Type));
  Rng rng(4);
  for (int round = 0; round < rounds(3000); ++round) {
    const V v = randomVec<V>(rng), w = randomVec<V>(rng);
    const auto a = array(v), b = array(w);
    const auto result = array(op(v, w));
    static_assert(result.size() == 2 * a.size());
    for (int half = 0; half < n; half += perHalf)
      for (int i = 0; i < perHalf; ++i) {
        ASSERT_EQ(result[std::size_t(2 * half + i)], To(meaning(Wide(a[std::size_t(half + i)]))));
        ASSERT_EQ(result[std::size_t(2 * half + perHalf + i)], To(meaning(Wide(b[std::size_t(half + i)]))));
      }
  }
}

template <class V> struct PackingOf16 {
  static void run() {
    expectPacking<V, u8>([](V a, V b) { return packSaturateU8(a, b); }, saturate<u8>);
    expectPacking<V, s8>([](V a, V b) { return packSaturateS8(a, b); }, saturate<s8>);
    expectPacking<V, u8>([](V a, V b) { return packTruncateU8(a, b); }, [](Wide a) { return a; });
  }
};
template <class V> struct PackingOf32 {
  static void run() {
    expectPacking<V, s16>([](V a, V b) { return packSaturateS16(a, b); }, saturate<s16>);
    expectPacking<V, u16>([](V a, V b) { return packSaturateU16(a, b); }, saturate<u16>);
    expectPacking<V, s16>([](V a, V b) { return packTruncateS16(a, b); }, [](Wide a) { return a; });
  }
};

// The low or the high half of each 16-byte half in lanes twice as wide.
template <class V> struct Widening {
  static void run() {
    constexpr int n = Lanes<V>::count, perHalf = 16 / int(sizeof(typename Lanes<V>::Type));
    Rng rng(5);
    for (int round = 0; round < rounds(300); ++round) {
      const V v = randomVec<V>(rng);
      const auto a = array(v);
      const auto low = array(widenLow(v)), high = array(widenHigh(v));
      for (int half = 0; half < n; half += perHalf)
        for (int i = 0; i < perHalf / 2; ++i) {
          ASSERT_EQ(Wide(low[std::size_t(half / 2 + i)]), Wide(a[std::size_t(half + i)]));
          ASSERT_EQ(Wide(high[std::size_t(half / 2 + i)]), Wide(a[std::size_t(half + perHalf / 2 + i)]));
        }
    }
  }
};

template <class V> struct PairProducts {
  static void run() {
    for (const auto& [v, w] : pairsOf<V>()) {
      const auto a = array(v), b = array(w);
      const auto sums = array(mulAddPairs(v, w));
      for (std::size_t i = 0; i < sums.size(); ++i)
        ASSERT_EQ(sums[i], s32(Wide(a[2 * i]) * b[2 * i] + Wide(a[2 * i + 1]) * b[2 * i + 1]));
    }
    const auto most = splat<V>(-32768);
    EXPECT_EQ(array(mulAddPairs(most, most))[0], std::numeric_limits<s32>::min());  // the only sum that wraps
  }
};

template <class V> struct SumsOfDifferences {
  static void run() {
    for (const auto& [v, w] : pairsOf<V>()) {
      const auto a = array(v), b = array(w);
      const auto sums = array(sumAbsDiff(v, w));
      u64 total = 0;
      for (std::size_t i = 0; i < sums.size(); ++i) {
        u64 sum = 0;
        for (std::size_t k = 8 * i; k < 8 * i + 8; ++k) sum += u64(std::max(a[k], b[k]) - std::min(a[k], b[k]));
        ASSERT_EQ(sums[i], sum);
        total += sum;
      }
      ASSERT_EQ(reduceAdd(sumAbsDiff(v, w)), total);
    }
  }
};

template <class V> struct Shuffles {
  static void run() {
    static constexpr auto of32 =
        forConstants<V, 256>([](auto c) { return +[](V v) { return shuffle32<decltype(c)::value>(v); }; });
    static constexpr auto ofLow =
        forConstants<V, 256>([](auto c) { return +[](V v) { return shuffleLow16<decltype(c)::value>(v); }; });
    static constexpr auto ofHigh =
        forConstants<V, 256>([](auto c) { return +[](V v) { return shuffleHigh16<decltype(c)::value>(v); }; });
    using Words = Vec<u32, int(sizeof(V) / 4)>;
    using Halfwords = Vec<u16, int(sizeof(V) / 2)>;
    Rng rng(14);
    for (std::size_t control = 0; control < 256; ++control) {
      const V v = randomVec<V>(rng);
      const auto source = [&](std::size_t i) { return i / 4 * 4 + ((control >> (2 * (i % 4))) & 3); };
      const auto words = array(as<Words>(v)), moved = array(as<Words>(of32[control](v)));
      for (std::size_t i = 0; i < words.size(); ++i) ASSERT_EQ(moved[i], words[source(i)]);
      const auto a = array(as<Halfwords>(v)), low = array(as<Halfwords>(ofLow[control](v))),
                 high = array(as<Halfwords>(ofHigh[control](v)));
      for (std::size_t i = 0; i < a.size(); ++i) {
        ASSERT_EQ(low[i], a[i % 8 < 4 ? source(i) : i]);
        ASSERT_EQ(high[i], a[i % 8 < 4 ? i : source(i)]);
      }
    }
  }
};

template <class V> struct ByteShifts {
  static void run() {
    static constexpr auto ups =
        forConstants<V, 17>([](auto c) { return +[](V v) { return shiftBytesUp<decltype(c)::value>(v); }; });
    static constexpr auto downs =
        forConstants<V, 17>([](auto c) { return +[](V v) { return shiftBytesDown<decltype(c)::value>(v); }; });
    // One register and its complement are joined, so that one argument will do.
    static constexpr auto concats = forConstants<V, 15>([](auto c) {
      return +[](V v) {
        return concatShift<decltype(c)::value + 1>(v, v ^ as<V>(splat<Vec<u8, int(sizeof(V))>>(255)));
      };
    });
    using Bytes = Vec<u8, int(sizeof(V))>;
    Rng rng(15);
    for (std::size_t count = 0; count <= 16; ++count) {
      const V v = randomVec<V>(rng);
      const auto a = array(as<Bytes>(v)), up = array(as<Bytes>(ups[count](v))),
                 down = array(as<Bytes>(downs[count](v)));
      for (std::size_t i = 0; i < a.size(); ++i) {
        ASSERT_EQ(up[i], i % 16 >= count ? a[i - count] : 0);
        ASSERT_EQ(down[i], i % 16 + count < 16 ? a[i + count] : 0);
      }
      if (count < 1 || count > 15) continue;
      const auto both = array(as<Bytes>(concats[count - 1](v)));
      for (std::size_t i = 0; i < a.size(); ++i)
        ASSERT_EQ(both[i], i % 16 + count < 16 ? a[i + count] : u8(~a[i + count - 16]));
    }
  }
};

template <class V> struct WholeRegister {
  static void run() {
    Rng rng(6);
    for (int round = 0; round < rounds(500); ++round) {
      const V v = randomVec<V>(rng);
      const auto bytes = array(as<Vec<u8, int(sizeof(V))>>(v));
      u32 signs = 0, word = 0;
      u64 doubleword = 0;
      for (std::size_t i = 0; i < bytes.size(); ++i) signs |= u32(bytes[i] >> 7) << i;
      for (int i = 7; i >= 0; --i) doubleword = doubleword << 8 | bytes[std::size_t(i)];
      for (int i = 3; i >= 0; --i) word = word << 8 | bytes[std::size_t(i)];
      ASSERT_EQ(signBits(v), signs);
      ASSERT_EQ(low32(v), word);
      ASSERT_EQ(low64(v), doubleword);
      ASSERT_EQ(array(load<V>(bytes.data())), array(v));
      if constexpr (sizeof(V) == 16) {
        auto mixed = bytes;
        for (std::size_t i = 0; i < 4; ++i) mixed[i] = u8(~bytes[i]);
        const auto a = as<S16<8>>(v), inverted = a ^ splat<S16<8>>(-1);
        ASSERT_EQ(array(as<U8<16>>(withLow32(a, inverted))), mixed);
      }
    }
    EXPECT_TRUE(noneSet(zero<V>()));
    EXPECT_FALSE(allSet(zero<V>()));
    const V ones = as<V>(splat<Vec<u8, int(sizeof(V))>>(255));
    EXPECT_TRUE(allSet(ones));
    EXPECT_FALSE(noneSet(ones));
    for (std::size_t bit = 0; bit < 8 * sizeof(V); ++bit) {
      std::array<u8, sizeof(V)> one{};
      one[bit / 8] = u8(1 << bit % 8);
      const V v = load<V>(one.data());
      EXPECT_FALSE(noneSet(v));
      EXPECT_FALSE(allSet(v));
      EXPECT_FALSE(allSet(v ^ ones));
      EXPECT_FALSE(noneSet(v ^ ones));
    }
  }
};

template <class V> struct Sums {
  static void run() {
    using T = typename Lanes<V>::Type;
    Rng rng(8);
    for (int round = 0; round < rounds(1000); ++round) {
      const V v = randomVec<V>(rng);
      u64 sum = 0;
      for (T lane : array(v)) sum += u64(lane);
      if constexpr (sizeof(T) == 8)
        ASSERT_EQ(reduceAdd(v), sum);
      else
        ASSERT_EQ(reduceAdd(v), s32(u32(sum)));
    }
  }
};

// Bytes bytes of memory that ends, or begins, at an inaccessible page.
template <class V, int Bytes> void expectPartialAccess(Rng& rng) {
  for (Guard guard : {Guard::Behind, Guard::Before}) {
    GuardedArray<u8> memory(Bytes, guard);
    fill(memory, rng, zvptest::Style::Uniform, 0, 255);
    using Whole = Vec<u8, int(sizeof(V))>;
    const auto loaded = array(as<Whole>(loadBytes<V, Bytes>(memory.data())));
    for (std::size_t i = 0; i < loaded.size(); ++i) ASSERT_EQ(loaded[i], i < Bytes ? memory[i] : 0);
    const V v = randomVec<V>(rng);
    storeBytes<Bytes>(memory.data(), v);
    ASSERT_EQ(std::memcmp(memory.data(), &v, Bytes), 0);
  }
}

template <class V> struct PartialAccess {
  static void run() {
    Rng rng(9);
    if constexpr (sizeof(V) == 16) {
      expectPartialAccess<V, 1>(rng);
      expectPartialAccess<V, 2>(rng);
      expectPartialAccess<V, 4>(rng);
      expectPartialAccess<V, 8>(rng);
      for (Guard guard : {Guard::Behind, Guard::Before}) {
        GuardedArray<u8> p(8, guard), q(8, guard);
        fill(p, rng, zvptest::Style::Uniform, 0, 255);
        fill(q, rng, zvptest::Style::Uniform, 0, 255);
        const V v = load8x2<V>(p.data(), q.data());
        const auto bytes = array(as<U8<16>>(v));
        for (std::size_t i = 0; i < 8; ++i) {
          ASSERT_EQ(bytes[i], p[i]);
          ASSERT_EQ(bytes[8 + i], q[i]);
        }
        storeHigh8(p.data(), v);
        ASSERT_EQ(std::memcmp(p.data(), q.data(), 8), 0);
      }
    }
    expectPartialAccess<V, int(sizeof(V))>(rng);
  }
};

template <int W, int N> void expectRows() {
  constexpr int rows = N / W;
  Rng rng(10 + W);
  for (int round = 0; round < rounds(60); ++round) {
    GuardedPlane<u8> plane{W, rows, rng.step(W, true), rng.guard()};
    fill(plane, rng, zvptest::Style::Uniform, 0, 255);
    const auto loaded = array(loadRows<W, N>(plane.data(), plane.step()));
    for (int i = 0; i < N; ++i) ASSERT_EQ(loaded[std::size_t(i)], plane.get(i % W, i / W)) << W << " of " << N;
    const U8<N> v = randomVec<U8<N>>(rng);
    auto expected = plane.snapshot();
    for (int i = 0; i < N; ++i)
      expected[std::size_t(plane.data() - plane.bytes().data() + i / W * plane.step() + i % W)] =
          array(v)[std::size_t(i)];
    storeRows<W, N>(plane.data(), plane.step(), v);
    ASSERT_TRUE(zvptest::sameBytes(plane.snapshot(), expected)) << W << " of " << N;
  }
}

template <int N> void expectLoadWidened() {
  Rng rng(11);
  for (Guard guard : {Guard::Behind, Guard::Before}) {
    GuardedArray<u8> memory(N, guard);
    fill(memory, rng, zvptest::Style::Uniform, 0, 255);
    const auto widened = array(loadWidened<N>(memory.data()));
    for (std::size_t i = 0; i < N; ++i) ASSERT_EQ(widened[i], memory[i]);
  }
}

template <class T, int N> void expectTranspose() {
  Rng rng(12);
  for (int round = 0; round < rounds(50); ++round) {
    Vec<T, N> r[N];
    std::array<T, std::size_t(N)> before[N];
    for (int y = 0; y < N; ++y) before[y] = array(r[y] = randomVec<Vec<T, N>>(rng));
    transpose(r);
    for (int y = 0; y < N; ++y)
      for (int x = 0; x < N; ++x) ASSERT_EQ(array(r[y])[std::size_t(x)], before[x][std::size_t(y)]);
  }
}

}  // namespace

TEST(Simd, BitsAndSums) { forTypes<Bits, u8, s8, u16, s16, u32, s32, u64>(); }
TEST(Simd, SaturatingSums) { forTypes<Saturation, u8, s8, u16, s16>(); }
TEST(Simd, Averages) { forTypes<Average, u8, u16>(); }
TEST(Simd, MinimaAndMaxima) { forTypes<MinMax, u8, u16, s16, s32>(); }
TEST(Simd, Products) {
  forTypes<LowProduct, u16, s16, s32>();
  forTypes<HighProduct, u16, s16>();
  forTypes<PairProducts, s16>();
}
TEST(Simd, Relations) {
  forTypes<Equality, u8, s8, u16, s16, u32, s32>();
  forTypes<Order, s8, s16, s32>();
}
TEST(Simd, Magnitudes) {
  forTypes<Absolute, s16, s32>();
  forTypes<Difference, u8>();
  forTypes<SumsOfDifferences, u8>();
}
TEST(Simd, ShiftsByEveryCount) { forTypes<Shifts, u16, s16, u32, s32, u64>(); }
TEST(Simd, InterleavesWithinHalves) { forTypes<Interleaving, u8, s8, u16, s16, u32, s32, u64>(); }
TEST(Simd, PacksWithinHalves) {
  forTypes<PackingOf16, s16>();
  forTypes<PackingOf32, s32>();
}
TEST(Simd, WidensWithinHalves) { forTypes<Widening, u8, s16, u16>(); }
TEST(Simd, ShufflesByEveryControl) { forTypes<Shuffles, u8>(); }
TEST(Simd, MovesBytesByEveryCount) { forTypes<ByteShifts, u8>(); }
TEST(Simd, LooksAtWholeRegisters) { forTypes<WholeRegister, u8, s16, s32, u64>(); }
TEST(Simd, SumsOverLanes) { forTypes<Sums, s16, s32, u64>(); }
TEST(Simd, PartialLoadsAndStoresKeepTheirReach) { forTypes<PartialAccess, u8, s16, u32, u64>(); }
TEST(Simd, RowsKeepTheirReach) {
  expectRows<4, 16>();
  expectRows<8, 16>();
  expectRows<16, 16>();
  expectLoadWidened<8>();
  if constexpr (hasWide) {
    expectRows<4, 32>();
    expectRows<8, 32>();
    expectRows<16, 32>();
    expectRows<32, 32>();
  }
  if constexpr (registerBytes == 32) expectLoadWidened<16>();
}
TEST(Simd, Transposes) {
  expectTranspose<s32, 4>();
  expectTranspose<s16, 8>();
  std::array<s16, 8> rows01, rows23;
  for (int i = 0; i < 8; ++i) {
    rows01[std::size_t(i)] = s16(i);
    rows23[std::size_t(i)] = s16(8 + i);
  }
  auto a = lanes(rows01), b = lanes(rows23);
  transpose4x4(a, b);
  EXPECT_EQ(array(a), (std::array<s16, 8>{0, 4, 8, 12, 1, 5, 9, 13}));
  EXPECT_EQ(array(b), (std::array<s16, 8>{2, 6, 10, 14, 3, 7, 11, 15}));
}
#if defined(__AVX2__) || defined(ZVP_SIMD_PLAIN)
TEST(Simd, JoinsAndHalves) {
  Rng rng(13);
  const auto low = randomVec<S16<8>>(rng), high = randomVec<S16<8>>(rng);
  const auto both = join(low, high);
  for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(array(both)[i], i < 8 ? array(low)[i] : array(high)[i - 8]);
  EXPECT_EQ(array(lowHalf(both)), array(low));
  EXPECT_EQ(array(highHalf(both)), array(high));
}
#endif
TEST(Simd, FloatingPoint) {
  Rng rng(14);
  for (int round = 0; round < rounds(2000); ++round) {
    std::array<double, 2> a, b;
    for (auto* v : {&a, &b})
      for (double& x : *v) x = double(s32(rng.next())) / double(rng.range(1, 1 << 20));
    std::array<s32, 4> integers = {0, 0, 0, 0};
    for (std::size_t i = 0; i < 2; ++i) {
      EXPECT_EQ(array(lanes(a) + lanes(b))[i], a[i] + b[i]);
      EXPECT_EQ(array(lanes(a) * lanes(b))[i], a[i] * b[i]);
      integers[i] = s32(a[i]);
    }
    EXPECT_EQ(array(toInteger(lanes(a))), integers);
    EXPECT_EQ(array(splat<F64<2>>(a[0])), (std::array<double, 2>{a[0], a[0]}));
    std::array<s32, 4> dividend, divisor;
    for (std::size_t i = 0; i < 4; ++i) {
      dividend[i] = rng.range(-9999999, 9999999);
      divisor[i] = rng.range(1, 9999999);
    }
    const auto quotient = array(toFloat(lanes(dividend)) / toFloat(lanes(divisor)));
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(quotient[i], float(dividend[i]) / float(divisor[i]));
  }
  using Pair = std::array<double, 2>;
  const double infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  // Through memory: what GCC folds at compile time saturates instead.
  const auto integersOf = [](double x, double y) {
    volatile double memory[] = {x, y};
    return array(toInteger(lanes(Pair{memory[0], memory[1]})));
  };
  const s32 none = std::numeric_limits<s32>::min();
  EXPECT_EQ(integersOf(2147483647.9, -2147483648.9), (std::array<s32, 4>{2147483647, none, 0, 0}));
  EXPECT_EQ(integersOf(2147483648.0, -2147483649.0), (std::array<s32, 4>{none, none, 0, 0}));
  EXPECT_EQ(integersOf(infinity, -infinity), (std::array<s32, 4>{none, none, 0, 0}));
  EXPECT_EQ(integersOf(nan, -0.9), (std::array<s32, 4>{none, 0, 0, 0}));
}
