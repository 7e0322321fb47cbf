// The VC-1 deblocking filter: an edge a call, with all groups, and with some that the flag leaves out. Filtering in
// place smooths the pictures from turn to turn; each turn begins with them as they were.
#include "reference/vc1/deblock.h"

#include <cstring>
#include <vector>

#include "support/bench.h"

namespace {

using reference::vc1::DeblockMember;

class Edges {
 public:
  static constexpr int step = 256, rows = 64, count = 32;

  Edges(const DeblockMember& m, std::uint32_t flag) : member_(m), flag_(flag), first_(step * rows) {
    zvptest::Rng rng(8);
    for (int y = 0; y < rows; ++y)
      for (int x = 0; x < step; ++x) {
        const int block = (x / 8 * 37 + y / 8 * 59) % 13 - 6;
        first_[std::size_t(y * step + x)] = std::uint8_t(110 + x / 8 + y / 3 + block + rng.range(-1, 1));
      }
    plane_ = first_;
  }
  void call(int i) {
    if ((i & 31) == 0) std::memcpy(plane_.data(), first_.data(), first_.size());
    if (member_.pairs == nullptr)
      member_.plane(at(plane_, i), quant, step, flag_);
    else
      member_.pairs(at(plane_, i), quant, step, flag_, flag_);
  }
  bool sameAsModel() {
    auto expected = first_;
    const std::uint32_t flags[2] = {flag_, flag_};
    for (int i = 0; i < count; ++i) deblock(member_, at(expected, i), quant, step, flags);
    for (int i = 0; i < count; ++i) call(i);
    return plane_ == expected;
  }

 private:
  static constexpr std::int32_t quant = 9;
  static std::uint8_t* at(std::vector<std::uint8_t>& plane, int i) {
    i &= 31;
    return plane.data() + (8 + i / 12 * 16) * step + 16 + i % 12 * 16;
  }
  DeblockMember member_;
  std::uint32_t flag_;
  std::vector<std::uint8_t> first_, plane_;
};

const bench::Rows rowsOfEdges = [](bench::Add add) {
  for (const auto& m : reference::vc1::deblockMembers())
    for (const std::uint32_t flag : {0u, 2u}) {
      auto* edges = bench::keep<Edges>(m, flag);
      add(
          m.name, flag == 0 ? "whole edge" : "a group disabled", [=](int i) { edges->call(i); },
          [=] { return edges->sameAsModel(); });
    }
};

}  // namespace
