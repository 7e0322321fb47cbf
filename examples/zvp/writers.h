// What becomes of decoded pictures: a Y4M or raw file, a contact sheet, a checksum.
#pragma once

#include <memory>
#include <string>

#include "common/decoder.h"

namespace zvptool {

class Writer {
 public:
  virtual ~Writer() = default;
  virtual void add(const video::Picture& picture) = 0;
  virtual void finish() = 0;  // what can only be written when all pictures are there
};

// By the ending of the path: .y4m, .yuv or .png. The frame rate is used where the pictures tell none.
std::unique_ptr<Writer> makeWriter(const std::string& path, video::Ratio frameRate);

}  // namespace zvptool
