// The MPEG-4 quantizers and their contexts against the models: all depths, every quantizer, every coefficient.
#include "reference/mpeg4/quant.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "support/compare.h"
#include "support/placed.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::mpeg4;

namespace {

using Block = std::array<std::int16_t, 64>;
using Weights = std::array<std::uint8_t, 64>;
using GetSize = zvpStatus (*)(std::int32_t*);
using Init = zvpStatus (*)(const std::uint8_t*, void*, std::int32_t);

constexpr int largestQP[] = {1, 3, 7, 15, 31, 63, 127, 255, 511};  // by depth, from 4 bits on

// Where the fields of a record lie, from the first multiple of 16 on.
struct Layout {
  std::size_t bitsPerPixel, matrixFlag, magic, size;
};
constexpr Layout forwardLayout = {384, 388, 392, 396}, inverseLayout = {128, 132, 136, 140};

struct Kind {
  const char* name;
  bool forward, intra;
  GetSize getSize;
  Init init;
  std::uint32_t magic;
  Layout layout;
  std::int32_t bytes;
};
const Kind kinds[] = {
    {"inter", true, false, zvpiQuantInterGetSize_MPEG4, zvpiQuantInterInit_MPEG4, 0x434D4155, forwardLayout, 412},
    {"intra", true, true, zvpiQuantIntraGetSize_MPEG4, zvpiQuantIntraInit_MPEG4, 0x434D4154, forwardLayout, 412},
    {"inverse inter", false, false, zvpiQuantInvInterGetSize_MPEG4, zvpiQuantInvInterInit_MPEG4, 0x434D4153,
     inverseLayout, 156},
    {"inverse intra", false, true, zvpiQuantInvIntraGetSize_MPEG4, zvpiQuantInvIntraInit_MPEG4, 0x434D4152,
     inverseLayout, 156}};
const Kind &inter = kinds[0], &intra = kinds[1], &inverseInter = kinds[2], &inverseIntra = kinds[3];

// The block functions with one list of arguments: those of inter blocks have no type.
zvpStatus quantize(const Kind& kind, std::int16_t* block, const void* context, std::int32_t qp, std::int32_t* count,
                   std::int32_t type) {
  return kind.intra ? zvpiQuantIntra_MPEG4_16s_C1I(block, context, qp, count, type)
                    : zvpiQuantInter_MPEG4_16s_C1I(block, context, qp, count);
}
zvpStatus dequantize(const Kind& kind, std::int16_t* block, std::int32_t last, const void* context, std::int32_t qp,
                     std::int32_t type) {
  return kind.intra ? zvpiQuantInvIntra_MPEG4_16s_C1I(block, last, context, qp, type)
                    : zvpiQuantInvInter_MPEG4_16s_C1I(block, last, context, qp);
}
int modelQuantize(const Kind& kind, std::int16_t* block, const std::uint8_t* matrix, int depth, int qp, bool chroma) {
  return kind.intra ? model::quantIntra(block, matrix, depth, qp, chroma)
                    : model::quantInter(block, matrix, depth, qp);
}
void modelDequantize(const Kind& kind, std::int16_t* block, int last, const std::uint8_t* matrix, int depth, int qp,
                     bool chroma) {
  if (kind.intra)
    model::quantInvIntra(block, last, matrix, depth, qp, chroma);
  else
    model::quantInvInter(block, last, matrix, depth, qp);
}

template <class T> T at(const std::uint8_t* record, std::size_t offset) {
  T value;
  std::memcpy(&value, record + offset, sizeof value);
  return value;
}

// A context in guarded memory of exactly the size asked for, at an address of any alignment.
class Context {
 public:
  Context(const Kind& kind, const std::uint8_t* weights, std::int32_t depth, Rng& rng) {
    const int shift = rng.range(0, 15);
    const Guard guard = rng.guard();
    const std::size_t size = std::size_t(kind.bytes);
    bytes_ = GuardedBytes(size + std::size_t(shift), guard);
    data_ = bytes_.data() + (guard == Guard::Before ? shift : 0);
    fill(data_, size, rng, Style::Uniform, 0, 255);
    status = kind.init(weights, data_, depth);
    bytes_.makeReadOnly();
  }
  const void* data() const { return data_; }
  std::uint8_t* writable() {
    bytes_.makeWritable();
    return record();
  }
  std::uint8_t* record() const { return data_ + (16 - reinterpret_cast<std::uintptr_t>(data_) % 16) % 16; }
  zvpStatus status;

 private:
  GuardedBytes bytes_;
  std::uint8_t* data_ = nullptr;
};

std::vector<std::int16_t> randomBlock(Rng& rng) {
  const int limit = rng.pick<int>({1, 3, 40, 2048, 32768});
  const Style style = anyStyle(rng);
  auto block = randomValues<std::int16_t>(64, rng, style, -limit, limit - 1);
  if (rng.chance(2)) std::fill(block.begin() + rng.range(0, 63), block.end(), std::int16_t(0));
  if (rng.chance(4)) block[std::size_t(rng.range(0, 63))] = rng.pick<std::int16_t>({-32768, 32767, 1, -1});
  return block;
}

Weights randomWeights(Rng& rng) {
  Weights weights;
  const int highest = rng.pick<int>({1, 2, 16, 255});
  fill(weights.data(), 64, rng, anyStyle(rng), 1, highest);
  return weights;
}

int randomQP(int depth, Rng& rng) {
  const int largest = largestQP[depth - 4];
  return rng.chance(3) ? rng.range(1, std::min(largest, 9)) : rng.chance(4) ? largest : rng.range(1, largest);
}

struct Case {
  int depth, qp;
  bool withMatrix, chroma;
  Weights weights;
  const std::uint8_t* matrix() const { return withMatrix ? weights.data() : nullptr; }
  explicit Case(Rng& rng) {
    depth = rng.range(4, 12);
    qp = randomQP(depth, rng);
    withMatrix = rng.chance(2);
    chroma = rng.chance(2);
    weights = randomWeights(rng);
  }
};
std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << c.depth << " bits, QP " << c.qp << (c.withMatrix ? ", matrix" : ", flat")
             << (c.chroma ? ", chroma" : "");
}

}  // namespace

TEST(QuantContext, SizesAreThoseOfTheRecords) {
  for (const Kind& kind : kinds) {
    std::int32_t size = -1;
    EXPECT_EQ(kind.getSize(nullptr), zvpStatusNullPointer) << kind.name;
    EXPECT_EQ(kind.getSize(&size), zvpStatusOk) << kind.name;
    EXPECT_EQ(size, kind.bytes) << kind.name;
  }
}

TEST(QuantContext, HoldsWhatInitIsGiven) {
  Rng rng(1);
  for (int round = 0; round < rounds(2000); ++round) {
    const Kind& kind = kinds[rng.range(0, 3)];
    const bool withMatrix = rng.chance(2);
    const int depth =
        kind.forward && rng.chance(4) ? rng.pick<int>({20, 0, -7, 3, 13, INT32_MAX, INT32_MIN}) : rng.range(4, 12);
    const Weights weights = randomWeights(rng);
    Placed<std::uint8_t> matrix({weights.begin(), weights.end()}, rng);
    Context context(kind, withMatrix ? matrix.readOnly().data() : nullptr, depth, rng);
    ASSERT_EQ(context.status, zvpStatusOk);
    const std::uint8_t* record = context.record();
    ASSERT_EQ(at<std::int32_t>(record, kind.layout.bitsPerPixel), depth);
    ASSERT_EQ(at<std::int32_t>(record, kind.layout.matrixFlag), withMatrix);
    ASSERT_EQ(at<std::uint32_t>(record, kind.layout.magic), kind.magic);
    for (std::size_t i = 0; withMatrix && i < 64; ++i) {
      const bool halved = kind.forward && depth < 9;
      ASSERT_EQ(at<std::uint16_t>(record, 2 * i), halved ? weights[i] / 2 : weights[i]);
      if (halved) {
        ASSERT_EQ(at<std::uint32_t>(record, 128 + 4 * i), 65536u / weights[i] + 1);
      }
    }
  }
}

// Not a byte of the memory around the record is written, nor any field that the case does not need.
TEST(QuantContext, InitWritesItsFieldsOnly) {
  Rng rng(2);
  for (const Kind& kind : kinds)
    for (const bool withMatrix : {false, true})
      for (const int depth : {8, 9})
        for (int shift = 0; shift < 16; ++shift) {
          alignas(16) std::uint8_t memory[448], before[448];
          fill(memory, sizeof memory, rng, Style::Uniform, 0, 255);
          std::copy(memory, memory + sizeof memory, before);
          Weights weights;
          weights.fill(7);
          ASSERT_EQ(kind.init(withMatrix ? weights.data() : nullptr, memory + shift, depth), zvpStatusOk);
          const std::size_t start = shift == 0 ? 0 : 16;
          const bool reciprocals = withMatrix && kind.forward && depth < 9;
          for (std::size_t i = 0; i < sizeof memory; ++i) {
            const std::size_t offset = i - start;  // wraps before the record
            const bool weight = withMatrix && offset < 128, reciprocal = reciprocals && offset < 384 && offset >= 128;
            const bool field = offset >= kind.layout.bitsPerPixel && offset < kind.layout.size;
            if (!weight && !reciprocal && !field) {
              ASSERT_EQ(memory[i], before[i]) << kind.name << " byte " << i;
            }
          }
        }
}

TEST(QuantContext, InitChecksInOrder) {
  for (const Kind& kind : kinds) {
    Weights weights;
    weights.fill(16);
    weights[5] = 0;
    alignas(16) std::uint8_t memory[412], before[412];
    for (std::size_t i = 0; i < sizeof memory; ++i) memory[i] = before[i] = std::uint8_t(i * 7);
    EXPECT_EQ(kind.init(weights.data(), nullptr, 3), zvpStatusNullPointer);
    EXPECT_EQ(kind.init(nullptr, nullptr, 8), zvpStatusNullPointer);
    if (!kind.forward) {
      for (const std::int32_t depth : {3, 13, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(kind.init(weights.data(), memory, depth), zvpStatusOutOfRange);
        EXPECT_EQ(kind.init(nullptr, memory, depth), zvpStatusOutOfRange);
      }
      EXPECT_TRUE(sameArray(memory, before, sizeof memory));
    }
    // A zero weight: stamped, the weights before it stored, the flag as it was.
    EXPECT_EQ(kind.init(weights.data(), memory, 10), zvpStatusBadQuantizer);
    for (std::size_t i = 0; i < sizeof memory; ++i) {
      if (i < 10) {
        EXPECT_EQ(memory[i], i % 2 == 0 ? 16 : 0);
      } else if (i < kind.layout.bitsPerPixel || i >= kind.layout.size) {
        EXPECT_EQ(memory[i], before[i]) << i;
      }
    }
    EXPECT_EQ(at<std::int32_t>(memory, kind.layout.bitsPerPixel), 10);
    EXPECT_EQ(at<std::uint32_t>(memory, kind.layout.magic), kind.magic);
    EXPECT_EQ(at<std::int32_t>(memory, kind.layout.matrixFlag), at<std::int32_t>(before, kind.layout.matrixFlag));
  }
}

namespace {

void checkForward(const Kind& kind, Rng rng) {
  for (int round = 0; round < rounds(8000); ++round) {
    const Case c(rng);
    auto wanted = randomBlock(rng);
    Context context(kind, c.matrix(), c.depth, rng);
    Placed<std::int16_t> block(wanted, rng);
    Placed<std::int32_t> count({-1}, rng);
    const std::int32_t type = c.chroma ? rng.pick<std::int32_t>({1, 256, -1}) : 0;
    const int wantedCount = modelQuantize(kind, wanted.data(), c.matrix(), c.depth, c.qp, c.chroma);
    ASSERT_EQ(quantize(kind, block.data(), context.data(), c.qp, count.data(), type), zvpStatusOk);
    ASSERT_TRUE(sameArray(block.values().data(), wanted.data(), 64)) << c << " round " << round;
    ASSERT_EQ(count.values()[0], wantedCount) << c;
  }
}

// The block ends behind its last element where that is all a call may touch.
void checkInverse(const Kind& kind, Rng rng) {
  for (int round = 0; round < rounds(12000); ++round) {
    const Case c(rng);
    auto wanted = randomBlock(rng);
    const int last = rng.chance(3) ? 63 : rng.range(-2, 63);
    Context context(kind, c.matrix(), c.depth, rng);
    const std::size_t given = c.withMatrix ? 64 : std::size_t(std::max(last + 1, 1));
    Placed<std::int16_t> block({wanted.begin(), wanted.begin() + std::ptrdiff_t(given)}, rng);
    const std::int32_t type = c.chroma ? rng.pick<std::int32_t>({1, 256, -1}) : 0;
    modelDequantize(kind, wanted.data(), last, c.matrix(), c.depth, c.qp, c.chroma);
    ASSERT_EQ(dequantize(kind, block.data(), last, context.data(), c.qp, type), zvpStatusOk);
    ASSERT_TRUE(sameArray(block.values().data(), wanted.data(), given)) << c << " last " << last << " round " << round;
  }
}

}  // namespace

TEST(QuantForward, InterMatchesTheModel) { checkForward(inter, Rng(3)); }
TEST(QuantForward, IntraMatchesTheModel) { checkForward(intra, Rng(4)); }
TEST(QuantInverse, InterMatchesTheModel) { checkInverse(inverseInter, Rng(6)); }
TEST(QuantInverse, IntraMatchesTheModel) { checkInverse(inverseIntra, Rng(7)); }

// Multiplications stand in for divisions: every coefficient, with every quantizer of every depth and weights at the
// ends of their range and between.
TEST(QuantForward, AgreesOverTheWholeRange) {
  Rng rng(5);
  for (int depth = 4; depth <= 12; ++depth)
    for (int qp = 1; qp <= largestQP[depth - 4]; ++qp) {
      if (depth > 4 && qp > 40 && !rng.chance(rounds(100) < 100 ? 60 : 4)) continue;
      const bool withMatrix = rng.chance(2);
      const Kind& kind = rng.chance(2) ? intra : inter;
      Weights weights = randomWeights(rng);
      weights[1] = 1;
      weights[2] = 2;
      weights[3] = 255;
      const std::uint8_t* matrix = withMatrix ? weights.data() : nullptr;
      Context context(kind, matrix, depth, rng);
      // Consecutive coefficients in the same lanes: turned by one from block to block each meets each weight.
      const int turns = rounds(100) < 100 ? 1 : 3;
      for (int turn = 0; turn < turns; ++turn)
        for (int base = -32768; base < 32768; base += 64) {
          Block block, wanted;
          for (int i = 0; i < 64; ++i) block[std::size_t((i + turn * 21 + base / 64) & 63)] = std::int16_t(base + i);
          wanted = block;
          std::int32_t count = -1;
          const int wantedCount = modelQuantize(kind, wanted.data(), matrix, depth, qp, turn == 1);
          ASSERT_EQ(quantize(kind, block.data(), context.data(), qp, &count, turn == 1), zvpStatusOk);
          ASSERT_EQ(count, wantedCount);
          ASSERT_EQ(block, wanted) << depth << " bits, QP " << qp << " " << kind.name << " matrix " << withMatrix;
        }
    }
}

TEST(Quant, BlockFunctionsCheckInOrder) {
  Rng rng(8);
  Weights weights;
  weights.fill(16);
  for (const Kind& kind : kinds) {
    const auto call = [&](std::int16_t* block, const void* context, std::int32_t qp, std::int32_t* count) {
      return kind.forward ? quantize(kind, block, context, qp, count, 0) : dequantize(kind, block, 63, context, qp, 0);
    };
    Block block;
    block.fill(77);
    std::int32_t count = 5;
    alignas(16) const std::uint8_t blank[412] = {};
    for (int depth = 4; depth <= 12; ++depth) {
      Context context(kind, weights.data(), depth, rng);
      const int largest = largestQP[depth - 4];
      for (const std::int32_t qp : {0, -1, INT32_MIN, largest + 1, INT32_MAX}) {
        EXPECT_EQ(call(block.data(), context.data(), qp, &count), zvpStatusBadQuantizer) << depth << " " << qp;
        EXPECT_EQ(call(block.data(), blank, qp, &count), zvpStatusBadContext);
        EXPECT_EQ(call(nullptr, blank, qp, &count), zvpStatusNullPointer);
        EXPECT_EQ(call(block.data(), nullptr, qp, &count), zvpStatusNullPointer);
        if (kind.forward) {
          EXPECT_EQ(call(block.data(), blank, qp, nullptr), zvpStatusNullPointer);
        }
      }
      // No kind takes the contexts of another.
      for (const Kind& other : kinds) {
        Context foreign(other, nullptr, 8, rng);
        std::vector<std::uint8_t> roomy(512 + 16);
        std::uint8_t* record = roomy.data() + (16 - reinterpret_cast<std::uintptr_t>(roomy.data()) % 16) % 16;
        std::memcpy(record, foreign.record(), other.layout.size);
        if (other.magic != kind.magic) {
          EXPECT_EQ(call(block.data(), record, 1, &count), zvpStatusBadContext);
        }
      }
    }
    if (kind.forward) {  // a depth that has no quantizers
      for (const int depth : {3, 13, 20, INT32_MIN, INT32_MAX}) {
        Context context(kind, nullptr, depth, rng);
        for (const std::int32_t qp : {0, 1, 31})
          EXPECT_EQ(call(block.data(), context.data(), qp, &count), zvpStatusBadQuantizer);
      }
    }
    EXPECT_EQ(count, 5);
    for (const auto x : block) EXPECT_EQ(x, 77);
    for (int depth = 4; depth <= 12; ++depth) {
      Context context(kind, weights.data(), depth, rng);
      EXPECT_EQ(call(block.data(), context.data(), largestQP[depth - 4], &count), zvpStatusOk);
      EXPECT_EQ(call(block.data(), context.data(), 1, &count), zvpStatusOk);
    }
  }
}

TEST(Quant, WorkedExamples) {
  Rng rng(9);
  std::int32_t count = -1;
  {
    Context context(inter, nullptr, 8, rng);
    Block block = {77, -77, 76, 16};  // (77 - 15) * 1058 >> 16 is 1
    ASSERT_EQ(zvpiQuantInter_MPEG4_16s_C1I(block.data(), context.data(), 31, &count), zvpStatusOk);
    EXPECT_EQ(block, (Block{1, -1, 0, 0}));
    EXPECT_EQ(count, 2);
  }
  {
    Context context(intra, nullptr, 8, rng);
    Block block = {-12, 2, 1, -2};  // (-12 + 3) >> 3 is -2
    ASSERT_EQ(zvpiQuantIntra_MPEG4_16s_C1I(block.data(), context.data(), 1, &count, 0), zvpStatusOk);
    EXPECT_EQ(block, (Block{-2, 1, 0, -1}));
    EXPECT_EQ(count, 3);
  }
  Weights weights;
  weights.fill(16);
  for (const std::uint8_t* matrix :
       {static_cast<const std::uint8_t*>(nullptr), static_cast<const std::uint8_t*>(weights.data())}) {
    Context context(inverseIntra, matrix, 8, rng);
    for (const std::int16_t was : {std::int16_t(0), std::int16_t(9), std::int16_t(-4)}) {
      Block block = {3};
      block[63] = was;
      ASSERT_EQ(zvpiQuantInvIntra_MPEG4_16s_C1I(block.data(), 0, context.data(), 4, 0), zvpStatusOk);
      EXPECT_EQ(block[0], 24);
      EXPECT_EQ(block[63], matrix != nullptr ? 1 : was);  // set, not flipped
    }
  }
  {
    Context context(inverseInter, weights.data(), 8, rng);
    Block block = {1, 0, -1};  // 3 * 16 * 5 / 16, twice: the sum is 0
    block[63] = 7;
    ASSERT_EQ(zvpiQuantInvInter_MPEG4_16s_C1I(block.data(), 2, context.data(), 5), zvpStatusOk);
    EXPECT_EQ(block[0], 15);
    EXPECT_EQ(block[2], -15);
    EXPECT_EQ(block[63], 6);
  }
}
