// The decoding tables that the library's CAVLC readers take, made from the code words of the standard.
#pragma once

#include <cstdint>
#include <vector>

namespace h264 {

class CavlcTables {
 public:
  CavlcTables();
  CavlcTables(const CavlcTables&) = delete;
  CavlcTables& operator=(const CavlcTables&) = delete;

  // For blocks of 16 and of 15 coefficients: with 15 there are fewer values of total_coeff and total_zeros, and the
  // reader, which knows the table only, must not come to accept the others.
  struct Set {
    const std::int32_t* coeffToken[3];
    const std::int32_t* totalZeros[17];
  };
  Set full, ac;
  const std::int32_t* runBefore[16];
  const std::int32_t* chromaDcCoeffToken;
  const std::int32_t* chromaDcTotalZeros[5];

  static const CavlcTables& instance();

 private:
  std::vector<std::vector<std::int32_t>> storage_;
};

}  // namespace h264
