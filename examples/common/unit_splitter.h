// Cuts a byte stream into the units between start codes: 00 00 01, or two zeros and another third byte. Data may come in
// pieces of any size; a unit is handed out when the next start code, or the end, has been seen.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace video {

class UnitSplitter {
 public:
  UnitSplitter() = default;
  // Of the third byte the bits of the mask make the start code; the unit begins behind so many bytes of it, 2 or 3.
  UnitSplitter(std::uint8_t mask, std::uint8_t third, std::size_t codeBytes)
      : mask_(mask), third_(third), codeBytes_(codeBytes) {}

  // Adds data that begin at the given position of the file.
  void add(std::span<const std::uint8_t> data, std::int64_t position) {
    if (begin_ > 0) {
      buffer_.erase(buffer_.begin(), buffer_.begin() + std::ptrdiff_t(begin_));
      scanned_ -= begin_;
      begin_ = 0;
    }
    if (buffer_.empty() && !data.empty()) position_ = position;
    buffer_.insert(buffer_.end(), data.begin(), data.end());
  }

  // The next unit: the bytes behind one start code and before the next, or before the end of the data if that ends a
  // unit. Zero bytes in front of a start code belong to the unit before it. False if there is none yet.
  bool next(bool dataEndUnit, std::span<const std::uint8_t>& unit, std::int64_t& position) {
    if (!inUnit_) {
      const std::size_t start = find(scanned_);
      if (start == buffer_.size()) {
        drop(dataEndUnit ? buffer_.size() : keepTail());
        return false;
      }
      drop(start + codeBytes_);
      inUnit_ = true;
    }
    const std::size_t end = find(scanned_);
    if (end == buffer_.size() && !dataEndUnit) {
      scanned_ = keepTail();
      return false;
    }
    unit = std::span(buffer_).subspan(begin_, end - begin_);
    position = position_;
    drop(end);
    inUnit_ = false;
    return true;
  }

 private:
  // The place of the first start code at or behind from; buffer_.size() if there is none.
  std::size_t find(std::size_t from) const {
    const std::uint8_t* data = buffer_.data();
    const std::size_t size = buffer_.size();
    for (std::size_t i = from + 2; i < size;) {
      if (data[i] == 0) {
        ++i;
      } else if ((data[i] & mask_) == third_ && data[i - 1] == 0 && data[i - 2] == 0) {
        return i - 2;
      } else {
        i += 3;
      }
    }
    return size;
  }
  // Where a search may go on when more data have come: the last two bytes could begin a start code.
  std::size_t keepTail() const { return buffer_.size() < begin_ + 2 ? begin_ : buffer_.size() - 2; }
  void drop(std::size_t to) {
    position_ += std::int64_t(to - begin_);
    begin_ = scanned_ = to;
  }

  std::uint8_t mask_ = 0xFF, third_ = 1;
  std::size_t codeBytes_ = 3;
  std::vector<std::uint8_t> buffer_;
  std::size_t begin_ = 0;       // bytes before it are done with
  std::size_t scanned_ = 0;     // no start code begins in [begin_, scanned_)
  std::int64_t position_ = 0;   // of buffer_[begin_] in the file
  bool inUnit_ = false;         // begin_ stands behind a start code
};

}  // namespace video
