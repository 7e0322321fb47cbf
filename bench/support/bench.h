// The benchmark scaffold: a row for each export and case, named "export/case". Rows come from static initializers:
//
//   const bench::Rows rows = [](bench::Add add) {
//     auto* scene = bench::keep<Scene>(...);
//     add("zvpiSAD8x8_8u32s_C1R", "diagonal", [=](int i) { zvpiSAD8x8_8u32s_C1R(scene->at(i), ...); },
//         [=] { return scene->sum() == reference::sad(...); });
//   };
//
// The call gets a running index, so that inputs, alignments and cases change from call to call and the branch
// predictor learns none of them. The check, where one is given, compares the results with the scalar model once
// before the row is timed; a row that differs is reported as an error and not timed.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "support/random.h"

namespace bench {

// One turn through the places of a scene. What a row is timed by: the calls of a turn stand in one loop, so that the
// indirect call and the clock weigh on 32 of them together.
inline constexpr int callsPerTurn = 32;
using Turn = std::function<void()>;
using Check = std::function<bool()>;

void addRow(const char* name, const std::string& caseName, Turn turn, Check check);

struct Add {
  template <class Call>
  void operator()(const char* name, const std::string& caseName, Call call, Check check = {}) const {
    addRow(
        name, caseName,
        [call]() mutable {
          for (int i = 0; i < callsPerTurn; ++i) call(i);
        },
        std::move(check));
  }
};

struct Rows {
  template <class Register>
  Rows(Register registerRows) {
    registerRows(Add());
  }
};

// Data that lives as long as the program, as registered rows need it.
template <class T, class... Args>
T* keep(Args&&... args) {
  return new T(std::forward<Args>(args)...);
}

// A picture of smooth areas, edges and noise that fits the first-level cache, with 32 places in it of all alignments.
class Scene {
 public:
  static constexpr int step = 96, rows = 96;
  explicit Scene(std::uint64_t seed);
  const std::uint8_t* source(int i) const { return source_ + places_[i & 31]; }
  std::uint8_t* destination(int i) { return destination_ + (i & 7) * step * 8; }  // eight-row aligned places

 private:
  alignas(64) std::uint8_t source_[step * rows];
  alignas(64) std::uint8_t destination_[step * rows];
  int places_[32];
};

}  // namespace bench
