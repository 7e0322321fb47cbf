#include "writers.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "rgb.h"
#include "source.h"

namespace zvptool {

namespace {

using video::Format;
using video::Picture;

class FileWriter : public Writer {
 public:
  explicit FileWriter(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "wb")) {
    if (!file_) fail();
  }
  ~FileWriter() override {
    if (file_) std::fclose(file_);
  }
  void finish() override {
    std::FILE* file = file_;
    file_ = nullptr;
    if (std::fclose(file) != 0) fail();
  }

 protected:
  [[noreturn]] void fail() const { throw ToolError("cannot write " + path_ + ": " + std::strerror(errno)); }
  void write(const void* data, std::size_t size) {
    if (std::fwrite(data, 1, size, file_) != size) fail();
  }
  void writePlanes(const Picture& picture) {
    for (int plane = 0; plane < 3; ++plane)
      for (int y = 0; y < picture.format.planeHeight(plane); ++y)
        write(picture.planes[plane] + y * picture.steps[plane], std::size_t(picture.format.planeWidth(plane)));
  }
  std::string path_;
  std::FILE* file_;
};

class RawWriter final : public FileWriter {
 public:
  using FileWriter::FileWriter;
  void add(const Picture& picture) override { writePlanes(picture); }
};

class Y4mWriter final : public FileWriter {
 public:
  Y4mWriter(const std::string& path, video::Ratio frameRate) : FileWriter(path), frameRate_(frameRate) {}
  void add(const Picture& picture) override {
    const Format& format = picture.format;
    if (format_.width == 0) {
      format_ = format;
      video::Ratio rate = format.frameRate.known() ? format.frameRate : frameRate_;
      if (!rate.known()) rate = {25, 1};
      const char* sampling = format.chromaShiftX == 0   ? "444"
                             : format.chromaShiftX == 2 ? "411"
                             : format.chromaShiftY == 0 ? "422"
                                                        : "420mpeg2";
      char header[200];
      const int size = std::snprintf(header, sizeof header, "YUV4MPEG2 W%d H%d F%d:%d Ip A%d:%d C%s%s\n", format.width,
                                     format.height, rate.num, rate.den, format.sampleAspect.num,
                                     format.sampleAspect.den, sampling,
                                     format.fullRange ? " XCOLORRANGE=FULL" : "");
      write(header, std::size_t(size));
    }
    if (format.width != format_.width || format.height != format_.height ||
        format.chromaShiftX != format_.chromaShiftX || format.chromaShiftY != format_.chromaShiftY)
      throw ToolError("the picture size changes, which a Y4M file cannot hold; write .yuv");
    write("FRAME\n", 6);
    writePlanes(picture);
  }

 private:
  video::Ratio frameRate_;
  Format format_;
};

// A picture made small: each sample the mean of the samples that it covers, as RGB.
struct Thumbnail {
  int width = 0, height = 0;
  std::vector<Rgb> samples;

  Thumbnail(const Picture& picture, int largestWidth) {
    const Format& format = picture.format;
    const double aspect = format.sampleAspect.known() ? double(format.sampleAspect.num) / format.sampleAspect.den : 1;
    const double shown = std::clamp(format.width * aspect, 1.0, 1e6);
    width = std::max(1, std::min(largestWidth, int(std::lround(shown))));
    height = std::clamp(int(std::lround(format.height * (width / shown))), 1, 4 * largestWidth);
    std::vector<double> planes[3];
    for (int plane = 0; plane < 3; ++plane) planes[plane] = shrink(picture, plane);
    samples.resize(std::size_t(width) * std::size_t(height));
    for (std::size_t i = 0; i < samples.size(); ++i)
      samples[i] = toRgb(format, planes[0][i], planes[1][i], planes[2][i]);
  }

 private:
  std::vector<double> shrink(const Picture& picture, int plane) const {
    const int fromWidth = picture.format.planeWidth(plane), fromHeight = picture.format.planeHeight(plane);
    std::vector<double> result;
    for (int y = 0; y < height; ++y) {
      const int y0 = int(std::int64_t(y) * fromHeight / height);
      const int y1 = std::max(y0 + 1, int(std::int64_t(y + 1) * fromHeight / height));
      for (int x = 0; x < width; ++x) {
        const int x0 = int(std::int64_t(x) * fromWidth / width);
        const int x1 = std::max(x0 + 1, int(std::int64_t(x + 1) * fromWidth / width));
        int sum = 0;
        for (int v = y0; v < y1; ++v)
          for (int u = x0; u < x1; ++u) sum += picture.planes[plane][v * picture.steps[plane] + u];
        result.push_back(double(sum) / ((x1 - x0) * (y1 - y0)));
      }
    }
    return result;
  }
};

// Up to 16 pictures, evenly chosen from all there are: when more come, every other one is given up.
class ContactSheet final : public Writer {
 public:
  explicit ContactSheet(const std::string& path) : path_(path) {}
  void add(const Picture& picture) override {
    if (count_++ % interval_ != 0) return;
    thumbnails_.emplace_back(picture, thumbnailWidth);
    if (thumbnails_.size() < 2 * mostPictures) return;
    std::vector<Thumbnail> kept;
    for (std::size_t i = 0; i < thumbnails_.size(); i += 2) kept.push_back(std::move(thumbnails_[i]));
    thumbnails_ = std::move(kept);
    interval_ *= 2;
  }
  void finish() override {
    if (thumbnails_.empty()) return;
    const std::size_t shown = std::min(thumbnails_.size(), mostPictures);
    std::vector<const Thumbnail*> chosen;
    for (std::size_t i = 0; i < shown; ++i) chosen.push_back(&thumbnails_[i * thumbnails_.size() / shown]);
    int cellWidth = 0, cellHeight = 0;
    for (const Thumbnail* thumbnail : chosen) {
      cellWidth = std::max(cellWidth, thumbnail->width);
      cellHeight = std::max(cellHeight, thumbnail->height);
    }
    const int columns = int(std::ceil(std::sqrt(double(shown)))), rows = (int(shown) + columns - 1) / columns;
    const int width = columns * (cellWidth + gap) + gap, height = rows * (cellHeight + gap) + gap;
    std::vector<Rgb> sheet(std::size_t(width) * std::size_t(height), Rgb{32, 32, 32});
    for (std::size_t i = 0; i < shown; ++i) {
      const int left = gap + int(i) % columns * (cellWidth + gap), top = gap + int(i) / columns * (cellHeight + gap);
      for (int y = 0; y < chosen[i]->height; ++y)
        std::copy_n(chosen[i]->samples.begin() + std::ptrdiff_t(y) * chosen[i]->width, chosen[i]->width,
                    sheet.begin() + std::ptrdiff_t(top + y) * width + left);
    }
    writePng(path_, width, height, sheet);
  }

 private:
  static constexpr int thumbnailWidth = 320, gap = 6;
  static constexpr std::size_t mostPictures = 16;
  std::string path_;
  std::vector<Thumbnail> thumbnails_;
  std::int64_t count_ = 0, interval_ = 1;
};

}  // namespace

std::unique_ptr<Writer> makeWriter(const std::string& path, video::Ratio frameRate) {
  const std::size_t dot = path.rfind('.');
  const std::string ending = dot == std::string::npos ? "" : path.substr(dot);
  if (ending == ".y4m") return std::make_unique<Y4mWriter>(path, frameRate);
  if (ending == ".yuv") return std::make_unique<RawWriter>(path);
  if (ending == ".png") return std::make_unique<ContactSheet>(path);
  throw ToolError("cannot tell what to write from the name " + path + ": it should end in .y4m, .yuv or .png");
}

}  // namespace zvptool
