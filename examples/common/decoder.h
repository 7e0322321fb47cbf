// What a decoder looks like to a program, whatever the codec: stream data go in by packets, pictures come out in display
// order, and what is wrong with the stream is thrown as a StreamError that knows the byte position.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace video {

struct Ratio {
  int num = 0, den = 0;  // 0/0: not known
  bool known() const { return num > 0 && den > 0; }
  bool operator==(const Ratio&) const = default;
};

// The YCbCr matrix, by the classes that players tell apart.
enum class Matrix { Bt601, Bt709, Bt2020 };

struct Format {
  int width = 0, height = 0;            // of the displayed picture, in luma samples
  int chromaShiftX = 1, chromaShiftY = 1;  // a chroma plane has (width + (1 << shift) - 1) >> shift samples a row
  Ratio sampleAspect;
  Ratio frameRate;
  Matrix matrix = Matrix::Bt601;
  bool fullRange = false;
  bool operator==(const Format&) const = default;

  int planeWidth(int plane) const { return plane == 0 ? width : (width + (1 << chromaShiftX) - 1) >> chromaShiftX; }
  int planeHeight(int plane) const { return plane == 0 ? height : (height + (1 << chromaShiftY) - 1) >> chromaShiftY; }
};

// A decoded picture as the decoder lends it to the sink: the planes are valid during that call only.
struct Picture {
  Format format;
  const std::uint8_t* planes[3] = {};  // Y, Cb, Cr
  std::ptrdiff_t steps[3] = {};        // bytes from one row to the next
};
using PictureSink = std::function<void(const Picture&)>;

struct Packet {
  std::span<const std::uint8_t> data;
  std::int64_t position = 0;  // where data begin in the file
  bool wholeUnits = true;     // data end where a unit of the codec ends; false for pieces of an elementary stream
};

// Smaller pictures for a quick look: a zoom of 2, 4 or 8 divides width and height. A draft is coarser and takes less
// work.
struct Preview {
  int zoom = 1;
  bool draft = false;
};

class StreamError : public std::runtime_error {
 public:
  enum class Kind { Damaged, Unsupported };
  StreamError(Kind kind, std::int64_t position, const std::string& text)
      : std::runtime_error(text), kind_(kind), position_(position) {}
  Kind kind() const { return kind_; }
  std::int64_t position() const { return position_; }  // in bytes from the start of the file

 private:
  Kind kind_;
  std::int64_t position_;
};

// After its first error a decoder decodes nothing more; what it has whole it hands out all the same.
class Decoder {
 public:
  virtual ~Decoder() = default;
  // Asks for a preview, ahead of everything else. False if there is none of the kind.
  virtual bool setPreview(const Preview& preview) { return preview.zoom == 1 && !preview.draft; }
  // Parameters that a container keeps apart from the packets. Called before the first packet, if at all. Pictures that
  // stand among them are thrown away.
  void configure(std::span<const std::uint8_t> parameters) {
    unlessFailed([&] { takeParameters(parameters, [](const Picture&) {}); });
  }
  // Decodes a packet and hands out the pictures that are due. After a StreamError only finish() may be called.
  void decode(const Packet& packet, const PictureSink& sink) {
    unlessFailed([&] { takePacket(packet, sink); });
  }
  // The end of the stream: decodes what was held back and hands out the pictures that wait, also if what was held back
  // is damaged. After a StreamError it throws nothing further.
  void finish(const PictureSink& sink) {
    try {
      unlessFailed([&] { takeEnd(sink); });
    } catch (...) {
      handOutWaiting(sink);
      throw;
    }
    handOutWaiting(sink);
  }
  // What the stream's headers tell, as name and value, for people to read. Grows as headers come in.
  virtual std::vector<std::pair<std::string, std::string>> describe() const = 0;
  // What is wrong with the pictures though decoding went on, for people to read. Empty if there is nothing to say.
  virtual std::string remark() const { return {}; }

 private:
  virtual void takeParameters(std::span<const std::uint8_t> /*parameters*/, const PictureSink& /*sink*/) {}
  virtual void takePacket(const Packet& packet, const PictureSink& sink) = 0;
  virtual void takeEnd(const PictureSink& sink) = 0;
  // The complete pictures whose turn had not come yet.
  virtual void handOutWaiting(const PictureSink& /*sink*/) {}

  template <class Work> void unlessFailed(Work work) {
    if (failed_) return;
    try {
      work();
    } catch (...) {
      failed_ = true;
      throw;
    }
  }
  bool failed_ = false;
};

}  // namespace video
