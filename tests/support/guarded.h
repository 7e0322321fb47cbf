// Buffers of exactly the size that a contract promises, against an inaccessible page behind or before them. An access
// of one byte too many ends in a page fault, which no comparison of results could show. At the other end, where the
// page has room to spare, AddressSanitizer watches when it is there, and the room is looked through for writes when the
// buffer goes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace zvptest {

enum class Guard { Behind, Before };

// Memory of any alignment: the last byte is the last of a page (Behind), or the first byte the first of one (Before).
class GuardedBytes {
 public:
  GuardedBytes() = default;
  GuardedBytes(std::size_t size, Guard guard);
  GuardedBytes(GuardedBytes&& other) noexcept { swap(other); }
  GuardedBytes& operator=(GuardedBytes&& other) noexcept {
    swap(other);
    return *this;
  }
  ~GuardedBytes();

  std::uint8_t* data() { return data_; }
  const std::uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }
  std::vector<std::uint8_t> bytes() const { return {data_, data_ + size_}; }
  // No write is possible until makeWritable(): for inputs, and for outputs that a refused call must leave alone.
  void makeReadOnly();
  void makeWritable();

 private:
  void swap(GuardedBytes& other) noexcept {
    std::swap(map_, other.map_);
    std::swap(mapSize_, other.mapSize_);
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(slack_, other.slack_);
    std::swap(slackSize_, other.slackSize_);
  }
  std::uint8_t* map_ = nullptr;
  std::size_t mapSize_ = 0;
  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  std::uint8_t* slack_ = nullptr;
  std::size_t slackSize_ = 0;
};

// An array of T. With Guard::Behind and an odd extra the start is as unaligned as the size makes it.
template <class T> class GuardedArray {
 public:
  GuardedArray() = default;
  GuardedArray(std::size_t count, Guard guard) : bytes_(count * sizeof(T), guard), count_(count) {}
  T* data() { return reinterpret_cast<T*>(bytes_.data()); }
  const T* data() const { return reinterpret_cast<const T*>(bytes_.data()); }
  std::size_t size() const { return count_; }
  T& operator[](std::size_t i) { return data()[i]; }
  const T& operator[](std::size_t i) const { return data()[i]; }
  GuardedBytes& bytes() { return bytes_; }

 private:
  GuardedBytes bytes_;
  std::size_t count_ = 0;
};

// A block of rows at a step, in guarded memory that begins with the lowest row's first byte and ends with the highest
// row's last one. left, right, above and below are samples around the block that the contract lets a call touch: at()
// counts from the block's own top left sample and takes negative indices into that margin. The step may be negative,
// and it may be odd for elements wider than a byte; its magnitude must be at least the row's bytes, margins included.
template <class T> class GuardedPlane {
 public:
  struct Margin {
    int left = 0, right = 0, above = 0, below = 0;
  };
  GuardedPlane() = default;
  GuardedPlane(int width, int height, std::ptrdiff_t stepBytes, Guard guard, Margin margin = Margin())
      : width_(width), height_(height), step_(stepBytes), margin_(margin) {
    const std::size_t rowBytes = std::size_t(width + margin.left + margin.right) * sizeof(T);
    const std::ptrdiff_t rows = height + margin.above + margin.below;
    const std::ptrdiff_t distance = stepBytes < 0 ? -stepBytes : stepBytes;
    bytes_ = GuardedBytes(rows > 0 && rowBytes > 0 ? std::size_t((rows - 1) * distance) + rowBytes : 1, guard);
    origin_ = (stepBytes < 0 ? (rows - 1) * distance : 0) + margin.above * stepBytes +
              margin.left * std::ptrdiff_t(sizeof(T));
  }
  T* data() { return reinterpret_cast<T*>(bytes_.data() + origin_); }
  const T* data() const { return reinterpret_cast<const T*>(bytes_.data() + origin_); }
  std::ptrdiff_t step() const { return step_; }
  int width() const { return width_; }
  int height() const { return height_; }
  Margin margin() const { return margin_; }
  T get(int x, int y) const {
    T value;
    std::memcpy(&value, bytes_.data() + offset(x, y), sizeof value);
    return value;
  }
  void set(int x, int y, T value) { std::memcpy(bytes_.data() + offset(x, y), &value, sizeof value); }
  // Every byte, gaps between the rows included: what is compared.
  std::vector<std::uint8_t> snapshot() const { return bytes_.bytes(); }
  GuardedBytes& bytes() { return bytes_; }

 private:
  std::ptrdiff_t offset(int x, int y) const { return origin_ + y * step_ + x * std::ptrdiff_t(sizeof(T)); }
  int width_ = 0, height_ = 0;
  std::ptrdiff_t step_ = 0;
  Margin margin_;
  std::ptrdiff_t origin_ = 0;
  GuardedBytes bytes_;
};

}  // namespace zvptest
