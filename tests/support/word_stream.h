// A reader's cursor over 32-bit words that are mapped as far as it may look and no further.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "support/guarded.h"

namespace zvptest {

struct WordStream {
  GuardedArray<std::uint32_t> words;
  const std::uint32_t* word;
  std::int32_t offset;
  std::ptrdiff_t before;  // bits of the whole stream in front of words

  // position: of the next bit; end: behind the last bit that may be looked at.
  WordStream(const std::vector<std::uint32_t>& all, std::ptrdiff_t position, std::ptrdiff_t end)
      : words(std::size_t((end + 31) / 32 - position / 32), Guard::Behind),
        word(words.data()),
        offset(31 - int(position % 32)),
        before(position / 32 * 32) {
    std::copy_n(all.begin() + position / 32, words.size(), words.data());
    words.bytes().makeReadOnly();
  }
  // Where the cursor stands now, in the whole stream.
  std::ptrdiff_t position() const { return before + (word - words.data()) * 32 + 31 - offset; }
};

}  // namespace zvptest
