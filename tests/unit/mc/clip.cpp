// The way of an encoder and its decoder over a filmed clip: batch search at whole samples, half-pel refinement,
// residual, prediction plus residual. What comes out must be the picture that went in, to the bit, for every half-pel
// case, both roundings, one reference and two, luma and interleaved chroma.
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <string>
#include <vector>

#include "reference/mc/members.h"
#include "support/compare.h"
#include "zvpvc.h"

using reference::mc::getDiffMembers;
using zvptest::sameBytes;

namespace {

using s16 = std::int16_t;
using s32 = std::int32_t;
using u16 = std::uint16_t;
using u8 = std::uint8_t;

constexpr int width = 176, height = 144, mb = 16, range = 8;
constexpr s32 mcTypes[4] = {0, 4, 8, 12};

// A plane with its edges carried outward, so that vectors may point out of the picture. Samples of interleaved chroma
// are pairs of bytes.
class Plane {
 public:
  static constexpr int border = 32;
  Plane(int rowBytes, int rows, int sampleBytes)
      : rowBytes_(rowBytes), rows_(rows), sample_(sampleBytes), bytes_(std::size_t(step() * (rows + 2 * border))) {}
  s32 step() const { return rowBytes_ + 2 * border; }
  u8* at(int x, int y) { return bytes_.data() + (y + border) * step() + x + border; }
  const u8* at(int x, int y) const { return bytes_.data() + (y + border) * step() + x + border; }
  void extend() {
    for (int y = 0; y < rows_; ++y)
      for (int x = 0; x < border; ++x) {
        *at(-1 - x, y) = *at(sample_ - 1 - x % sample_, y);
        *at(rowBytes_ + x, y) = *at(rowBytes_ - sample_ + x % sample_, y);
      }
    for (int y = 0; y < border; ++y) {
      std::copy_n(at(-border, 0), step(), at(-border, -1 - y));
      std::copy_n(at(-border, rows_ - 1), step(), at(-border, rows_ + y));
    }
  }
  // The picture without its border.
  std::vector<u8> picture() const {
    std::vector<u8> all;
    for (int y = 0; y < rows_; ++y) all.insert(all.end(), at(0, y), at(0, y) + rowBytes_);
    return all;
  }

 private:
  int rowBytes_, rows_, sample_;
  std::vector<u8> bytes_;
};

struct Picture {
  Plane luma{width, height, 1};
  Plane chroma{width, height / 2, 2};
};

std::vector<Picture> readClip() {
  std::ifstream file(ZVP_TEST_DATA "/clip_qcif.y4m", std::ios::binary);
  std::vector<Picture> clip;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line) && line == "FRAME") {
    Picture picture;
    for (int y = 0; y < height; ++y) file.read(reinterpret_cast<char*>(picture.luma.at(0, y)), width);
    for (int component = 0; component < 2; ++component)
      for (int y = 0; y < height / 2; ++y)
        for (int x = 0; x < width / 2; ++x) *picture.chroma.at(2 * x + component, y) = u8(file.get());
    if (!file) break;
    picture.luma.extend();
    picture.chroma.extend();
    clip.push_back(std::move(picture));
  }
  return clip;
}

// In half samples.
struct Vector {
  int x = 0, y = 0;
  s32 mcType() const { return (x & 1) * 8 + (y & 1) * 4; }
};
// Where a vector leads from a place, at whole samples of sampleBytes bytes.
const u8* place(const Plane& plane, int x, int y, Vector v, int sampleBytes = 1) {
  return plane.at(x + (v.x >> 1) * sampleBytes, y + (v.y >> 1));
}

s32 sad(const Plane& cur, const Plane& ref, int x, int y, Vector v) {
  s32 sum = -1;
  EXPECT_EQ(zvpiSAD16x16_8u32s(cur.at(x, y), cur.step(), place(ref, x, y, v), ref.step(), &sum, v.mcType()),
            zvpStatusOk);
  return sum;
}

// Every whole sample within the range, a row of candidates at a time, then the eight half-pel positions around the
// best.
Vector search(const Plane& cur, const Plane& ref, int x, int y, s32& bestSum) {
  Vector best;
  bestSum = 65536;
  for (int dy = -range; dy < range; ++dy) {
    u16 sums[2 * range];
    s32 index = -1;
    EXPECT_EQ(zvpiSAD16x16xNI_8u16u_C1R(cur.at(x, y), cur.step(), ref.at(x - range, y + dy), ref.step(), sums,
                                        2 * range, &index),
              zvpStatusOk);
    if (index < 0 || index >= 2 * range) {
      ADD_FAILURE() << "index " << index;
      return best;
    }
    if (sums[index] < bestSum) {
      bestSum = sums[index];
      best = {2 * (index - range), 2 * dy};
    }
  }
  EXPECT_EQ(bestSum, sad(cur, ref, x, y, best));
  EXPECT_LE(bestSum, sad(cur, ref, x, y, {0, 0}));
  const Vector whole = best;
  for (int dy = -1; dy <= 1; ++dy)
    for (int dx = -1; dx <= 1; ++dx) {
      const Vector v = {whole.x + dx, whole.y + dy};
      const s32 sum = sad(cur, ref, x, y, v);
      if (sum < bestSum) {
        bestSum = sum;
        best = v;
      }
    }
  return best;
}

// The vectors of a picture, macroblock by macroblock, and the sums at them.
struct Motion {
  std::vector<Vector> vectors;
  std::vector<s32> sums;
};
Motion estimate(const Plane& cur, const Plane& ref) {
  Motion motion;
  for (int y = 0; y < height; y += mb)
    for (int x = 0; x < width; x += mb) {
      s32 sum;
      motion.vectors.push_back(search(cur, ref, x, y, sum));
      motion.sums.push_back(sum);
    }
  return motion;
}

// Chroma vectors are half of the luma ones, toward zero (ISO/IEC 13818-2 7.6.3.7).
Vector chromaVector(Vector v) { return {v.x / 2, v.y / 2}; }

// The same vector in another half-pel case.
Vector inCase(Vector v, s32 mcType) { return {(v.x & ~1) | (mcType >> 3 & 1), (v.y & ~1) | (mcType >> 2 & 1)}; }

class McClip : public ::testing::Test {
 protected:
  // Read and searched once for all tests.
  static void SetUpTestSuite() {
    clip = new std::vector<Picture>(readClip());
    motions = new std::vector<std::array<Motion, 2>>;
    for (std::size_t i = 1; i + 1 < clip->size(); ++i) {
      const Plane& cur = (*clip)[i].luma;
      motions->push_back({estimate(cur, (*clip)[i - 1].luma), estimate(cur, (*clip)[i + 1].luma)});
    }
  }
  static void TearDownTestSuite() {
    delete clip;
    delete motions;
  }
  void SetUp() override { ASSERT_EQ(clip->size(), 5u); }

  // Runs body(picture, previous, next, motion to the previous, motion to the next).
  template <class Body>
  static void forPictures(Body body) {
    for (std::size_t i = 1; i + 1 < clip->size(); ++i)
      body((*clip)[i], (*clip)[i - 1], (*clip)[i + 1], (*motions)[i - 1][0], (*motions)[i - 1][1]);
  }
  // Runs body(index, x, y) for the macroblocks of a picture.
  template <class Body>
  static void forMacroblocks(Body body) {
    std::size_t index = 0;
    for (int y = 0; y < height; y += mb)
      for (int x = 0; x < width; x += mb) body(index++, x, y);
  }

  static std::vector<Picture>* clip;
  static std::vector<std::array<Motion, 2>>* motions;
};
std::vector<Picture>* McClip::clip;
std::vector<std::array<Motion, 2>>* McClip::motions;

}  // namespace

TEST_F(McClip, SearchFindsMotionAtEveryHalfPelCase) {
  std::array<int, 4> found{};
  forPictures([&](const Picture& cur, const Picture& previous, const Picture&, const Motion& motion, const Motion&) {
    s32 still = 0, moved = 0;
    forMacroblocks([&](std::size_t i, int x, int y) {
      still += sad(cur.luma, previous.luma, x, y, {0, 0});
      moved += motion.sums[i];
      ++found[std::size_t(motion.vectors[i].mcType() / 4)];
    });
    EXPECT_LT(moved * 4, still * 3);  // the scene moves, and the search follows it
  });
  for (int count : found) EXPECT_GT(count, 0);
}

TEST_F(McClip, ResidualIsWhatTheSearchMeasured) {
  // The measures round up, as roundControl 0 does: the absolute residual sums to the SAD. The predictor is the copy.
  forPictures([&](const Picture& cur, const Picture& previous, const Picture&, const Motion& motion, const Motion&) {
    forMacroblocks([&](std::size_t i, int x, int y) {
      const Vector v = motion.vectors[i];
      const u8* ref = place(previous.luma, x, y, v);
      for (s32 rounding = 0; rounding < 2; ++rounding) {
        s16 diff[256], predictor[256];
        ASSERT_EQ(zvpiGetDiff16x16_8u16s_C1(cur.luma.at(x, y), cur.luma.step(), ref, previous.luma.step(), diff, 32,
                                            predictor, 32, v.mcType(), rounding),
                  zvpStatusOk);
        u8 copy[256];
        const s32 acc = (v.x & 1) + (v.y & 1) * 2;
        ASSERT_EQ(zvpiCopy16x16HP_8u_C1R(ref, previous.luma.step(), copy, 16, acc, rounding), zvpStatusOk);
        s32 sum = 0;
        for (int j = 0; j < 256; ++j) {
          sum += std::abs(diff[j]);
          ASSERT_EQ(predictor[j], copy[j]);
          ASSERT_EQ(diff[j] + predictor[j], *cur.luma.at(x + j % 16, y + j / 16));
        }
        if (rounding == 0) {
          ASSERT_EQ(sum, motion.sums[i]);
        }
      }
    });
  });
}

TEST_F(McClip, LumaComesBackFromOneReference) {
  forPictures([&](const Picture& cur, const Picture& previous, const Picture&, const Motion& motion, const Motion&) {
    for (const auto& shape : getDiffMembers)
      for (const s32 mcType : mcTypes)
        for (s32 rounding = 0; rounding < 2; ++rounding) {
          Plane back(width, height, 1);
          forMacroblocks([&](std::size_t i, int x, int y) {
            const Vector v = inCase(motion.vectors[i], mcType);
            for (int py = y; py < y + mb; py += shape.height)
              for (int px = x; px < x + mb; px += shape.width) {
                const u8* ref = place(previous.luma, px, py, v);
                s16 diff[256];
                ASSERT_EQ(shape.one(cur.luma.at(px, py), cur.luma.step(), ref, previous.luma.step(), diff, 32, nullptr,
                                    0, mcType, rounding),
                          zvpStatusOk);
                ASSERT_EQ(
                    shape.undoOne(ref, previous.luma.step(), diff, 32, back.at(px, py), back.step(), mcType, rounding),
                    zvpStatusOk);
              }
          });
          ASSERT_TRUE(sameBytes(back.picture(), cur.luma.picture()))
              << shape.width << "x" << shape.height << " mcType " << mcType << " rounding " << rounding;
        }
  });
}

TEST_F(McClip, LumaComesBackFromTwoReferences) {
  forPictures([&](const Picture& cur, const Picture& previous, const Picture& next, const Motion& motionF,
                  const Motion& motionB) {
    for (const auto& shape : getDiffMembers)
      for (const s32 typeF : mcTypes)
        for (const s32 typeB : mcTypes)
          for (s32 rounding = 0; rounding < 2; ++rounding) {
            Plane back(width, height, 1);
            forMacroblocks([&](std::size_t i, int x, int y) {
              const Vector vF = inCase(motionF.vectors[i], typeF), vB = inCase(motionB.vectors[i], typeB);
              for (int py = y; py < y + mb; py += shape.height)
                for (int px = x; px < x + mb; px += shape.width) {
                  const u8* refF = place(previous.luma, px, py, vF);
                  const u8* refB = place(next.luma, px, py, vB);
                  s16 diff[256];
                  ASSERT_EQ(shape.two(cur.luma.at(px, py), cur.luma.step(), refF, previous.luma.step(), typeF, refB,
                                      next.luma.step(), typeB, diff, 32, rounding),
                            zvpStatusOk);
                  ASSERT_EQ(shape.undoTwo(refF, previous.luma.step(), typeF, refB, next.luma.step(), typeB, diff, 32,
                                          back.at(px, py), back.step(), rounding),
                            zvpStatusOk);
                }
            });
            ASSERT_TRUE(sameBytes(back.picture(), cur.luma.picture()))
                << shape.width << "x" << shape.height << " mcTypes " << typeF << ", " << typeB << " rounding "
                << rounding;
          }
  });
}

TEST_F(McClip, ChromaComesBackFromOneReference) {
  forPictures([&](const Picture& cur, const Picture& previous, const Picture&, const Motion& motion, const Motion&) {
    for (const s32 mcType : mcTypes)
      for (s32 rounding = 0; rounding < 2; ++rounding) {
        // Whole macroblocks in the upper half of the picture, halves of macroblocks below.
        Plane back(width, height / 2, 2);
        forMacroblocks([&](std::size_t i, int x, int lumaY) {
          const Vector v = inCase(chromaVector(motion.vectors[i]), mcType);
          const bool halves = lumaY >= height / 2;
          const auto getDiff = halves ? zvpiGetDiff8x4_8u16s_C2P2 : zvpiGetDiff8x8_8u16s_C2P2;
          const auto mc = halves ? zvpiMC8x4_16s8u_P2C2R : zvpiMC8x8_16s8u_P2C2R;
          for (int y = lumaY / 2; y < lumaY / 2 + 8; y += halves ? 4 : 8) {
            const u8* ref = place(previous.chroma, x, y, v, 2);
            s16 u[64], w[64];
            ASSERT_EQ(getDiff(cur.chroma.at(x, y), cur.chroma.step(), ref, previous.chroma.step(), u, 16, w, 16, mcType,
                              rounding),
                      zvpStatusOk);
            ASSERT_EQ(mc(ref, previous.chroma.step(), u, w, 16, back.at(x, y), back.step(), mcType, rounding),
                      zvpStatusOk);
          }
        });
        ASSERT_TRUE(sameBytes(back.picture(), cur.chroma.picture())) << "mcType " << mcType << " rounding " << rounding;
      }
  });
}

TEST_F(McClip, ChromaComesBackFromTwoReferences) {
  forPictures([&](const Picture& cur, const Picture& previous, const Picture& next, const Motion& motionF,
                  const Motion& motionB) {
    for (const s32 typeF : mcTypes)
      for (const s32 typeB : mcTypes)
        for (s32 rounding = 0; rounding < 2; ++rounding) {
          Plane back(width, height / 2, 2);
          forMacroblocks([&](std::size_t i, int x, int lumaY) {
            const Vector vF = inCase(chromaVector(motionF.vectors[i]), typeF);
            const Vector vB = inCase(chromaVector(motionB.vectors[i]), typeB);
            const int y = lumaY / 2;
            const u8* refF = place(previous.chroma, x, y, vF, 2);
            const u8* refB = place(next.chroma, x, y, vB, 2);
            s16 u[64], w[64];
            ASSERT_EQ(zvpiGetDiff8x8B_8u16s_C2P2(cur.chroma.at(x, y), cur.chroma.step(), refF, previous.chroma.step(),
                                                 typeF, refB, next.chroma.step(), typeB, u, 16, w, 16, rounding),
                      zvpStatusOk);
            // Half of the macroblocks take the residual interleaved, as one plane.
            if (i % 2 == 0) {
              ASSERT_EQ(zvpiMC8x8B_16s8u_P2C2R(refF, previous.chroma.step(), typeF, refB, next.chroma.step(), typeB, u,
                                               w, 16, back.at(x, y), back.step(), rounding),
                        zvpStatusOk);
            } else {
              s16 both[128];
              for (int j = 0; j < 64; ++j) {
                both[2 * j] = u[j];
                both[2 * j + 1] = w[j];
              }
              ASSERT_EQ(zvpiMC16x8BUV_8u_C1(refF, previous.chroma.step(), typeF, refB, next.chroma.step(), typeB, both,
                                            32, back.at(x, y), back.step(), rounding),
                        zvpStatusOk);
            }
          });
          ASSERT_TRUE(sameBytes(back.picture(), cur.chroma.picture()))
              << "mcTypes " << typeF << ", " << typeB << " rounding " << rounding;
        }
  });
}

TEST_F(McClip, CopyAndInterpolateAverageMakeTheTwoReferencePrediction) {
  forPictures([&](const Picture& cur, const Picture& previous, const Picture& next, const Motion& motionF,
                  const Motion& motionB) {
    for (s32 rounding = 0; rounding < 2; ++rounding) {
      Plane back(width, height, 1);
      forMacroblocks([&](std::size_t i, int x, int y) {
        const Vector vF = motionF.vectors[i], vB = motionB.vectors[i];
        const u8 *refF = place(previous.luma, x, y, vF), *refB = place(next.luma, x, y, vB);
        s16 diff[256];
        ASSERT_EQ(zvpiGetDiff16x16B_8u16s_C1(cur.luma.at(x, y), cur.luma.step(), refF, previous.luma.step(),
                                             vF.mcType(), refB, next.luma.step(), vB.mcType(), diff, 32, rounding),
                  zvpStatusOk);
        u8* out = back.at(x, y);
        ASSERT_EQ(
            zvpiCopy16x16HP_8u_C1R(refF, previous.luma.step(), out, back.step(), (vF.x & 1) + (vF.y & 1) * 2, rounding),
            zvpStatusOk);
        ASSERT_EQ(zvpiInterpolateAverage16x16_8u_C1IR(refB, next.luma.step(), out, back.step(),
                                                      (vB.x & 1) + (vB.y & 1) * 2, rounding),
                  zvpStatusOk);
        for (int block = 0; block < 4; ++block) {
          const int bx = block % 2 * 8, by = block / 2 * 8;
          ASSERT_EQ(zvpiAdd8x8_16s8u_C1IRS(diff + 16 * by + bx, 32, out + by * back.step() + bx, back.step()),
                    zvpStatusOk);
        }
      });
      ASSERT_TRUE(sameBytes(back.picture(), cur.luma.picture())) << "rounding " << rounding;
    }
  });
}
