// A program that links the shared library and defines zvpMalloc and zvpFree itself (support/alloc.h): every allocating
// export must call those. Members are found by name, so that each is tested as soon as it is listed, and a listed one
// without a call below is a failure.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <set>
#include <string>

#include "support/alloc.h"
#include "zvpcore.h"
#include "zvpvc.h"

using zvptest::Allocations;

namespace {

template <class Function>
Function* function(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

std::set<std::string> exportsWithAlloc() {
  std::ifstream in(ZVP_EXPORTS);
  std::set<std::string> names;
  for (std::string line; std::getline(in, line);)
    if (line.rfind("zvp", 0) == 0 && line.find("Alloc") != std::string::npos) names.insert(line);
  return names;
}

struct Family {
  const char* make;
  const char* release;
  int blocks;   // that the record consists of
  int passing;  // that are allocated and freed while it is made
  std::function<zvpStatus(void** record)> call;
};

// Tables with the two codes 0 and 1 of one bit.
const int32_t valueCodes[] = {1, 1, 1, 2, 0, 10, 1, 20, -1};
const int32_t runLevelCodes[] = {1, 1, 1, 2, 0, 3, 10, 1, 4, 20, -1};
// The DV form: nine lengths, two codes of one bit.
const int32_t dvCodes[] = {9, 0, 0, 2, 0, 1, 2, 1, 3, 4, 0, 0, 0, 0, 0, 0, 0, 0};

const Family families[] = {
    {"zvpiHuffmanTableInitAlloc_32s", "zvpiHuffmanTableFree_32s", 1, 1,
     [](void** record) {
       return function<zvpStatus(const int32_t*, void**)>("zvpiHuffmanTableInitAlloc_32s")(valueCodes, record);
     }},
    {"zvpiHuffmanRunLevelTableInitAlloc_32s", "zvpiHuffmanTableFree_32s", 1, 1,
     [](void** record) {
       return function<zvpStatus(const int32_t*, void**)>("zvpiHuffmanRunLevelTableInitAlloc_32s")(runLevelCodes,
                                                                                                   record);
     }},
    {"zvpiInitAllocHuffmanTable_DV_32u", "zvpiFreeHuffmanTable_DV_32u", 1, 0,
     [](void** record) {
       return function<zvpStatus(const int32_t*, const int32_t*, void**)>("zvpiInitAllocHuffmanTable_DV_32u")(
           dvCodes, dvCodes, record);
     }},
    {"zvpiDeinterlaceBlendInitAlloc_8u_C1", "zvpiDeinterlaceBlendFree_8u_C1", 2, 0,
     [](void** record) {
       int32_t thresholds[2] = {3, 9};
       double weights[2] = {0.25, 1.0};
       return function<zvpStatus(zvpSize, int32_t*, double*, void**)>("zvpiDeinterlaceBlendInitAlloc_8u_C1")(
           zvpSize{8, 8}, thresholds, weights, record);
     }},
};

}  // namespace

TEST(Interposed, EveryAllocatingExportHasACallHere) {
  std::set<std::string> known;
  for (const Family& family : families) known.insert(family.make);
  for (const std::string& name : exportsWithAlloc()) EXPECT_TRUE(known.count(name)) << name;
}

TEST(Interposed, TheLibraryCallsTheProgramsAllocator) {
  ASSERT_NE(zvpvcGetLibVersion(), nullptr);  // and so the library is loaded
  const std::set<std::string> listed = exportsWithAlloc();
  for (const Family& family : families) {
    if (!listed.count(family.make)) continue;
    SCOPED_TRACE(family.make);
    ASSERT_NE(function<void>(family.make), nullptr);
    auto* release = function<zvpStatus(void*)>(family.release);
    ASSERT_NE(release, nullptr);

    const int before = Allocations::live(), all = family.blocks + family.passing;
    for (int nth = 1; nth <= all; ++nth) {
      Allocations::reset();
      Allocations::failAt(nth);
      void* record = nullptr;
      EXPECT_EQ(family.call(&record), zvpStatusNoMemory) << "allocation " << nth;
      EXPECT_EQ(Allocations::made(), nth);
      if (record != nullptr) zvpFree(record);  // the blend's half-made record is its caller's
      EXPECT_EQ(Allocations::live(), before);
    }
    Allocations::reset();
    void* record = nullptr;
    ASSERT_EQ(family.call(&record), zvpStatusOk);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(Allocations::made(), all);
    EXPECT_EQ(Allocations::live(), before + family.blocks);
    EXPECT_EQ(release(record), zvpStatusOk);
    EXPECT_EQ(Allocations::live(), before);
  }
}
