// The commands of zvp. Each returns the exit code: 0, or 1 for a broken stream or a difference.
#pragma once

#include <cstdint>
#include <string>

#include "common/decoder.h"

namespace zvptool {

struct DecodeOptions {
  std::string input, output;
  std::int64_t frames = 0;  // 0: all
  bool md5 = false;
  video::Preview preview;
};
int decode(const DecodeOptions& options);

struct CompareOptions {
  std::string input;
  std::int64_t frames = 0;
};
int compare(const CompareOptions& options);

struct FilterOptions {
  std::string input, output, deinterlace, denoise, fieldOrder = "auto", compare, original;
  bool packed = false;
  std::int64_t frames = 0;
};
int filter(const FilterOptions& options);

int info(const std::string& input);

}  // namespace zvptool
