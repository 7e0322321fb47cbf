// Slice groups, arbitrary slice order and redundant slices. No decoder at hand knows them, but slices do not change what
// a picture is: the same macroblocks, written as one slice in raster order, give the same picture, and that ffmpeg
// decodes.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "h264_writer.h"
#include "stream_support.h"
#include "support/compare.h"
#include "support/random.h"

using namespace zvptest;

namespace {

struct Vector {
  int x = 0, y = 0;
  bool operator==(const Vector&) const = default;
};

// A macroblock, told without regard to its neighbours: I_PCM, inter from the picture before, or intra prediction from
// one side, whose samples the test works out itself.
struct MbText {
  enum Kind { Pcm, Inter, FromSide } kind = Pcm;
  std::vector<int> samples;                  // 384, I_PCM
  Vector vector;                             // quarter samples
  std::map<int, std::vector<int>> residual;  // levels of luma blocks, by block number
};

struct Case {
  Sequence sequence;
  Picture picture;               // with the slice groups
  std::vector<unsigned> map;     // slice group of each macroblock
  unsigned changeCycle = 0, changeCycleBits = 0;
};

// Writes pictures of macroblocks as slices of any shape and order.
class SliceWriter {
 public:
  SliceWriter(const Sequence& sequence, const Picture& picture, int qp, bool deblock)
      : sequence_(sequence), p_(picture), qp_(qp), deblock_(deblock), codes_(ZVP_TEST_DATA "/tables") {}

  void parameters(Bytes& stream) const {
    appendNal(stream, 3, 7, sequenceParameters(sequence_));
    appendNal(stream, 3, 8, pictureParameters(p_));
  }

  // addresses: the macroblocks of the slice in decoding order.
  void slice(Bytes& stream, const std::vector<MbText>& mbs, const std::vector<int>& addresses, int pictureNumber,
             unsigned changeCycle, unsigned changeCycleBits, unsigned redundantCount = 0) {
    mbs_ = &mbs;
    inSlice_.assign(mbs.size(), false);
    counts_.assign(mbs.size(), std::vector<int>(16, 0));
    const bool intra = pictureNumber == 0;
    Rbsp out;
    out.ue(std::uint64_t(addresses[0]));
    out.ue(intra ? 2 : 0);
    out.ue(0);
    out.u(std::uint64_t(pictureNumber & 15), 4);
    if (intra) out.ue(0);
    out.u(std::uint64_t(2 * pictureNumber & 255), 8);
    if (p_.redundant) out.ue(redundantCount);
    if (!intra) {
      out.u(0, 1);
      out.u(0, 1);
    }
    out.u(0, intra ? 2 : 1);  // marking: sliding window
    out.se(qp_ - p_.initialQp);
    out.ue(deblock_ ? 0 : 1);
    if (deblock_) {
      out.se(2);
      out.se(1);
    }
    if (changeCycleBits > 0) out.u(changeCycle, int(changeCycleBits));

    int skipped = 0;
    for (const int address : addresses) {
      mb_ = address;
      inSlice_[std::size_t(address)] = true;
      const MbText& mb = mbs[std::size_t(address)];
      if (mb.kind == MbText::Inter && mb.residual.empty() && mb.vector == skipVector()) {
        ++skipped;
        continue;
      }
      if (!intra) out.ue(std::uint64_t(skipped));
      skipped = 0;
      if (mb.kind == MbText::Inter) inter(out, mb);
      else if (mb.kind == MbText::Pcm) pcm(out, mb, intra);
      else fromSide(out);
    }
    if (skipped > 0) out.ue(std::uint64_t(skipped));
    appendNal(stream, 2, intra ? 5 : 1, out);
  }

  // Left neighbour first, then the upper one, then none: what FromSide predicts from.
  bool usable(int dx, int dy) const { return place(dx, dy) >= 0; }

 private:
  int place(int dx, int dy) const {
    const int x = mb_ % sequence_.widthMbs + dx, y = mb_ / sequence_.widthMbs + dy;
    if (x < 0 || y < 0 || x >= sequence_.widthMbs) return -1;
    const int address = y * sequence_.widthMbs + x;
    return inSlice_[std::size_t(address)] && address != mb_ ? address : -1;
  }

  struct Motion {
    bool there, inter;
    Vector vector;
  };
  Motion motion(int dx, int dy) const {
    const int at = place(dx, dy);
    if (at < 0) return {false, false, {}};
    const MbText& mb = (*mbs_)[std::size_t(at)];
    return {true, mb.kind == MbText::Inter, mb.kind == MbText::Inter ? mb.vector : Vector()};
  }
  // Prediction of the vector of a 16x16 partition that refers to picture 0 (8.4.1.3).
  Vector predicted() const {
    const Motion a = motion(-1, 0), b = motion(0, -1);
    Motion c = motion(1, -1);
    if (!c.there) c = motion(-1, -1);
    if (!b.there && !c.there && a.there) return a.vector;
    std::vector<Vector> same;
    for (const Motion& m : {a, b, c})
      if (m.inter) same.push_back(m.vector);
    if (same.size() == 1) return same[0];
    const auto middle = [](int u, int v, int w) { return std::max(std::min(u, v), std::min(std::max(u, v), w)); };
    return {middle(a.vector.x, b.vector.x, c.vector.x), middle(a.vector.y, b.vector.y, c.vector.y)};
  }
  Vector skipVector() const {
    const Motion a = motion(-1, 0), b = motion(0, -1);
    if (!a.there || !b.there) return {};
    for (const Motion& m : {a, b})
      if (m.inter && m.vector == Vector()) return {};
    return predicted();
  }

  void inter(Rbsp& out, const MbText& mb) {
    out.ue(0);
    const Vector p = predicted();
    out.se(mb.vector.x - p.x);
    out.se(mb.vector.y - p.y);
    int pattern = 0;
    for (const auto& [block, levels] : mb.residual) pattern |= 1 << (block / 4);
    static const int interOf[16] = {0, 2, 3, 7, 4, 8, 17, 13, 5, 18, 9, 14, 10, 15, 16, 11};  // Table 9-4, luma only
    out.ue(std::uint64_t(interOf[pattern]));
    if (pattern == 0) return;
    out.se(0);
    for (int block = 0; block < 16; ++block) {
      if (!(pattern >> (block / 4) & 1)) continue;
      const int x = (block & 1) + (block >> 1 & 2), y = (block >> 1 & 1) + (block >> 2 & 2);
      const auto found = mb.residual.find(block);
      const std::vector<int> levels = found == mb.residual.end() ? std::vector<int>(16, 0) : found->second;
      const int left = x > 0 ? counts_[std::size_t(mb_)][std::size_t(4 * y + x - 1)] : count(-1, 0, 4 * y + 3);
      const int top = y > 0 ? counts_[std::size_t(mb_)][std::size_t(4 * y + x - 4)] : count(0, -1, 12 + x);
      const int context = left >= 0 && top >= 0 ? (left + top + 1) >> 1 : std::max({left, top, 0});
      putCavlcBlock(out.bits(), levels, context, codes_);
      counts_[std::size_t(mb_)][std::size_t(4 * y + x)] = 16 - int(std::count(levels.begin(), levels.end(), 0));
    }
  }
  int count(int dx, int dy, int block) const {
    const int at = place(dx, dy);
    return at < 0 ? -1 : counts_[std::size_t(at)][std::size_t(block)];
  }

  void pcm(Rbsp& out, const MbText& mb, bool intraSlice) {
    out.ue(intraSlice ? 25 : 30);
    out.align(0);
    for (const int sample : mb.samples) out.u(std::uint64_t(sample), 8);
    counts_[std::size_t(mb_)].assign(16, 16);
  }
  // Intra 16x16 without residual, in an I slice.
  void fromSide(Rbsp& out) {
    const bool left = usable(-1, 0), top = usable(0, -1);
    out.ue(std::uint64_t(1 + (left ? 1 : top ? 0 : 2)));
    out.ue(left ? 1 : top ? 2 : 0);
    out.se(0);
    // An empty DC block; its context counts the neighbours' coefficients.
    const int a = count(-1, 0, 3), b = count(0, -1, 12);
    putCavlcBlock(out.bits(), std::vector<int>(16, 0), a >= 0 && b >= 0 ? (a + b + 1) >> 1 : std::max({a, b, 0}), codes_);
  }

  const Sequence sequence_;
  const Picture p_;
  const int qp_;
  const bool deblock_;
  const CavlcCodes codes_;
  const std::vector<MbText>* mbs_ = nullptr;
  std::vector<bool> inSlice_;
  std::vector<std::vector<int>> counts_;
  int mb_ = 0;
};

// The units of a spiral around (x, y), as long as the picture is not full: box-out (8.2.2.4) in another way. Sides grow
// by one every second turn; what lies outside the picture is passed over.
std::vector<int> spiral(int x, int y, bool counterClockwise, int width, int height) {
  std::vector<int> order;
  // First up or left, then turning.
  static const int dx[4] = {-1, 0, 1, 0}, dy[4] = {0, -1, 0, 1};
  int direction = counterClockwise ? 3 : 0;
  const auto visit = [&] {
    if (x >= 0 && y >= 0 && x < width && y < height) order.push_back(y * width + x);
  };
  visit();
  for (int side = 1; order.size() < std::size_t(width * height); ++side)
    for (int turn = 0; turn < 2; ++turn) {
      for (int i = 0; i < side; ++i) {
        x += dx[direction];
        y += dy[direction];
        visit();
      }
      direction = (direction + (counterClockwise ? 3 : 1)) % 4;
    }
  return order;
}

// A map type with random parameters, and the map that it means.
Case randomCase(Rng& rng, unsigned mapType) {
  Case c;
  Sequence& s = c.sequence;
  s.widthMbs = rng.range(2, 9);
  s.heightMbs = rng.range(2, 7);
  s.pocLsbBits = 8;
  s.maxRefFrames = 1;
  Picture& p = c.picture;
  p.mapType = mapType;
  p.groups = mapType >= 3 && mapType <= 5 ? 2 : unsigned(rng.range(2, 8));
  const int width = s.widthMbs, size = width * s.heightMbs;
  p.groups = std::min(p.groups, unsigned(size));
  c.map.assign(std::size_t(size), 0);
  p.changeDirection = rng.chance(2);
  p.changeRate = unsigned(rng.range(1, size));
  int upper = 0;
  if (mapType >= 3 && mapType <= 5) {
    const unsigned cycles = (unsigned(size) + p.changeRate - 1) / p.changeRate;
    while ((1u << c.changeCycleBits) < cycles + 1) ++c.changeCycleBits;
    c.changeCycle = unsigned(rng.range(0, int(cycles)));
    upper = int(std::min(unsigned(size), c.changeCycle * p.changeRate));
  }
  switch (mapType) {
    case 0: {
      for (unsigned g = 0; g < p.groups; ++g) p.runLengths.push_back(unsigned(rng.range(1, std::max(1, size / 2))));
      std::vector<unsigned> round;
      for (unsigned g = 0; g < p.groups; ++g) round.insert(round.end(), p.runLengths[g], g);
      for (int i = 0; i < size; ++i) c.map[std::size_t(i)] = round[std::size_t(i) % round.size()];
      break;
    }
    case 1:  // each row is the first one, moved by half the number of groups
      for (int i = 0; i < size; ++i)
        c.map[std::size_t(i)] = (unsigned(i % width) + unsigned(i / width) * p.groups / 2) % p.groups;
      break;
    case 2: {
      c.map.assign(std::size_t(size), p.groups - 1);
      std::vector<bool> taken(std::size_t(size), false);
      for (unsigned g = 0; g + 1 < p.groups; ++g) {
        const int x0 = rng.range(0, width - 1), x1 = rng.range(x0, width - 1);
        const int y0 = rng.range(0, s.heightMbs - 1), y1 = rng.range(y0, s.heightMbs - 1);
        p.topLeft.push_back(unsigned(y0 * width + x0));
        p.bottomRight.push_back(unsigned(y1 * width + x1));
        for (int y = y0; y <= y1; ++y)
          for (int x = x0; x <= x1; ++x)
            if (const std::size_t at = std::size_t(y * width + x); !taken[at]) {
              taken[at] = true;
              c.map[at] = g;
            }
      }
      break;
    }
    case 3: {
      const int flag = p.changeDirection ? 1 : 0;
      const auto order = spiral((width - flag) / 2, (s.heightMbs - flag) / 2, p.changeDirection, width, s.heightMbs);
      c.map.assign(std::size_t(size), 1);
      for (int i = 0; i < upper; ++i) c.map[std::size_t(order[std::size_t(i)])] = 0;
      break;
    }
    case 4:
    case 5:
      // Group 0 comes first, in raster order or column by column; turned round, it comes last.
      for (int i = 0; i < size; ++i) {
        const int place = mapType == 4 ? i : i % s.heightMbs * width + i / s.heightMbs;
        c.map[std::size_t(place)] = (p.changeDirection ? size - 1 - i : i) < upper ? 0 : 1;
      }
      break;
    default:
      for (int i = 0; i < size; ++i) p.ids.push_back(c.map[std::size_t(i)] = unsigned(rng.range(0, int(p.groups) - 1)));
  }
  return c;
}

// The macroblocks of each group, cut into slices, in random order.
std::vector<std::vector<int>> randomSlices(Rng& rng, const std::vector<unsigned>& map) {
  std::map<unsigned, std::vector<int>> groups;
  for (std::size_t i = 0; i < map.size(); ++i) groups[map[i]].push_back(int(i));
  std::vector<std::vector<int>> slices;
  for (const auto& [group, mbs] : groups)
    for (std::size_t at = 0; at < mbs.size();) {
      const std::size_t size = std::min(mbs.size() - at, std::size_t(rng.range(1, int(mbs.size()))));
      slices.emplace_back(mbs.begin() + std::ptrdiff_t(at), mbs.begin() + std::ptrdiff_t(at + size));
      at += size;
    }
  for (std::size_t i = slices.size(); i > 1; --i) std::swap(slices[i - 1], slices[std::size_t(rng.range(0, int(i) - 1))]);
  return slices;
}

std::vector<int> wholePicture(std::size_t size) {
  std::vector<int> all;
  for (std::size_t i = 0; i < size; ++i) all.push_back(int(i));
  return all;
}

std::vector<int> smoothSamples(Rng& rng) {
  const int base = rng.range(20, 220), dx = rng.range(-2, 2), dy = rng.range(-2, 2);
  std::vector<int> samples;
  for (int i = 0; i < 384; ++i) {
    const int x = i < 256 ? i % 16 : i % 8 * 2, y = i < 256 ? i / 16 : i / 8 % 8 * 2;
    samples.push_back(std::clamp(base + dx * x + dy * y + rng.range(-2, 2), 0, 255));
  }
  return samples;
}

std::vector<MbText> randomPicture(Rng& rng, std::size_t size, bool intra) {
  std::vector<MbText> mbs(size);
  Vector last;
  for (MbText& mb : mbs) {
    mb.kind = intra || rng.chance(12) ? MbText::Pcm : MbText::Inter;
    if (mb.kind == MbText::Pcm) {
      mb.samples = smoothSamples(rng);
      continue;
    }
    if (rng.chance(2)) last = rng.chance(4) ? Vector() : Vector{rng.range(-60, 60), rng.range(-60, 60)};
    mb.vector = last;
    if (rng.chance(3)) {
      std::vector<int> levels(16, 0);
      for (int i = rng.range(1, 3); i > 0; --i) levels[std::size_t(rng.range(0, 15))] = rng.chance(2) ? 1 : -1;
      mb.residual[rng.range(0, 15)] = levels;
    }
  }
  return mbs;
}

void compareSlicings(unsigned mapType, bool redundant) {
  const TemporaryDirectory scratch;
  for (int seed = 1; seed <= rounds(6); ++seed) {
    SCOPED_TRACE("map type " + std::to_string(mapType) + ", seed " + std::to_string(seed));
    Rng rng(std::uint64_t(seed) * 8 + mapType);
    Case c = randomCase(rng, mapType);
    Picture plain = c.picture;
    plain.groups = 1;
    c.picture.redundant = redundant;
    const int qp = rng.range(26, 40);
    SliceWriter groupsWriter(c.sequence, c.picture, qp, true), plainWriter(c.sequence, plain, qp, true);
    Bytes withGroups, inOne;
    groupsWriter.parameters(withGroups);
    plainWriter.parameters(inOne);
    constexpr int pictures = 4;
    for (int number = 0; number < pictures; ++number) {
      const auto mbs = randomPicture(rng, c.map.size(), number == 0);
      const auto slices = randomSlices(rng, c.map);
      for (const auto& slice : slices)
        groupsWriter.slice(withGroups, mbs, slice, number, c.changeCycle, c.changeCycleBits);
      if (redundant) {
        const auto other = randomPicture(rng, c.map.size(), number == 0);
        groupsWriter.slice(withGroups, other, slices[0], number, c.changeCycle, c.changeCycleBits, 1);
      }
      plainWriter.slice(inOne, mbs, wholePicture(mbs.size()), number, 0, 0);
    }
    const Decoded decoded = decodeH264(withGroups);
    ASSERT_FALSE(decoded.failed) << "byte " << decoded.position << ": " << decoded.error;
    ASSERT_EQ(decoded.pictures.size(), std::size_t(pictures));
    const auto path = scratch / "plain.264";
    writeFile(path, inOne);
    ASSERT_EQ(firstDifference(decoded.pictures, decodeWithFfmpeg(path, scratch, decoded.pictures[0].samples.size())), "");
  }
}

}  // namespace

class H264SliceGroups : public ::testing::TestWithParam<unsigned> {};
TEST_P(H264SliceGroups, GiveThePictureOfOneSlice) {
  ZVP_NEED_PROGRAM("ffmpeg");
  compareSlicings(GetParam(), false);
}
INSTANTIATE_TEST_SUITE_P(MapTypes, H264SliceGroups, ::testing::Range(0u, 7u));

TEST(H264Slices, RedundantOnesAreLeftOut) {
  ZVP_NEED_PROGRAM("ffmpeg");
  compareSlicings(6, true);
}

TEST(H264Slices, IntraPredictionStopsAtTheSlice) {
  // Without deblocking the samples of each macroblock are those of a neighbour of the same slice.
  for (int seed = 1; seed <= rounds(20); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Rng rng{std::uint64_t(seed)};
    const Case c = randomCase(rng, unsigned(rng.range(0, 6)));
    const std::size_t size = c.map.size();
    std::vector<MbText> mbs(size);
    for (MbText& mb : mbs) {
      mb.kind = rng.chance(3) ? MbText::Pcm : MbText::FromSide;
      if (mb.kind == MbText::Pcm) mb.samples = smoothSamples(rng);
    }
    SliceWriter writer(c.sequence, c.picture, 30, false);
    Bytes stream;
    writer.parameters(stream);
    const auto slices = randomSlices(rng, c.map);
    std::vector<int> sliceOf(size, -1);
    for (std::size_t i = 0; i < slices.size(); ++i) {
      for (const int mb : slices[i]) sliceOf[std::size_t(mb)] = int(i);
      writer.slice(stream, mbs, slices[i], 0, c.changeCycle, c.changeCycleBits);
    }

    const int width = c.sequence.widthMbs;
    std::vector<std::vector<int>> samples(size);
    for (std::size_t i = 0; i < size; ++i) {
      samples[i] = mbs[i].samples;
      if (mbs[i].kind == MbText::Pcm) continue;
      const bool left = i % std::size_t(width) != 0 && sliceOf[i - 1] == sliceOf[i];
      const bool top = i >= std::size_t(width) && sliceOf[i - std::size_t(width)] == sliceOf[i];
      for (int k = 0; k < 384; ++k) {
        const int base = k < 256 ? 0 : k < 320 ? 256 : 320, side = k < 256 ? 16 : 8;
        const int x = (k - base) % side, y = (k - base) / side;
        samples[i].push_back(left  ? samples[i - 1][std::size_t(base + y * side + side - 1)]
                             : top ? samples[i - std::size_t(width)][std::size_t(base + (side - 1) * side + x)]
                                   : 128);
      }
    }
    Bytes expected;
    for (int plane = 0; plane < 3; ++plane) {
      const int side = plane == 0 ? 16 : 8, base = plane == 0 ? 0 : 192 + 64 * plane;
      for (int y = 0; y < side * c.sequence.heightMbs; ++y)
        for (int x = 0; x < side * width; ++x)
          expected.push_back(std::uint8_t(
              samples[std::size_t(y / side * width + x / side)][std::size_t(base + y % side * side + x % side)]));
    }
    const Decoded decoded = decodeH264(stream);
    ASSERT_FALSE(decoded.failed) << "byte " << decoded.position << ": " << decoded.error;
    ASSERT_EQ(firstDifference(decoded.pictures, {expected}), "");
  }
}
