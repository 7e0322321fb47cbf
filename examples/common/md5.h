// MD5 (RFC 1321), for checksums of decoded pictures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "common/decoder.h"

namespace video {

class Md5 {
 public:
  void add(const void* data, std::size_t size);
  void add(const Picture& picture);  // its planes, row after row, with nothing between them
  std::string hex() const;           // of all that was added so far

 private:
  void block(const std::uint8_t* data);

  std::uint32_t state_[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
  std::uint64_t size_ = 0;
  std::uint8_t pending_[64] = {};
};

}  // namespace video
