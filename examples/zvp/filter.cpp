// zvp filter: deinterlacing and denoising of whole files, frame by frame.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>

#include "commands.h"
#include "libav_frames.h"
#include "progress.h"
#include "psnr.h"
#include "rgb.h"
#include "source.h"
#include "writers.h"
#include "zvpvc.h"

namespace zvptool {

namespace {

using video::StoredPicture;

struct PlaneView {
  const std::uint8_t* samples;
  int width, height;
};
PlaneView planeOf(const StoredPicture& picture, int plane) {
  return {picture.plane(plane), picture.format.planeWidth(plane), picture.format.planeHeight(plane)};
}
std::uint8_t* writable(StoredPicture& picture, int plane) { return const_cast<std::uint8_t*>(picture.plane(plane)); }

void require(zvpStatus status, const char* what) {
  if (status < 0)
    throw ToolError(std::string(what) + " refuses pictures of this size (" + std::to_string(status) + ")");
}

// Keeps the earlier field of each frame and makes the rows of the other one. Looks two frames back and one ahead; at
// the ends of the file the nearest frame stands in for those that are missing.
class Deinterlacer {
 public:
  static constexpr std::size_t back = 2, ahead = 1;
  explicit Deinterlacer(const std::string& kind) : kind_(kind) {}
  ~Deinterlacer() {
    if (weights_ != nullptr) zvpiDeinterlaceBlendFree_8u_C1(weights_);
  }
  Deinterlacer(const Deinterlacer&) = delete;
  Deinterlacer& operator=(const Deinterlacer&) = delete;

  // frames[back] is the one to work on.
  StoredPicture run(const std::array<const StoredPicture*, back + 1 + ahead>& frames, bool topFirst) {
    const StoredPicture& now = *frames[back];
    StoredPicture result = now;
    for (int plane = 0; plane < 3; ++plane) {
      const PlaneView view = planeOf(now, plane);
      std::uint8_t* const dst = writable(result, plane);
      const zvpSize size = {view.width, view.height};
      const std::uint8_t* planes[4];
      for (std::size_t i = 0; i < 4; ++i) planes[i] = frames[i]->plane(plane);
      require(plan(view, planes, dst, size, topFirst), "the deinterlacer");
    }
    return result;
  }

 private:
  zvpStatus plan(PlaneView view, const std::uint8_t* const (&planes)[4], std::uint8_t* dst, zvpSize size,
                 bool topFirst) {
    const int step = view.width, made = topFirst ? 1 : 0;  // the parity of the made rows
    if (kind_ == "triangle") return zvpiDeinterlaceFilterTriangle_8u_C1R(view.samples, step, dst, step, size, 128, 0);
    if (kind_ == "edge") {
      // The kept rows as a field of their own; the made ones lie below them or above.
      const int kept = 1 - made;
      return zvpiDeinterlaceEdgeDetect_8u_C1R(view.samples + kept * step, 2 * step, dst + made * step, 2 * step,
                                              {size.width, size.height / 2}, made, 1);
    }
    if (kind_ == "median")
      return zvpiDeinterlaceMedianThreshold_8u_C1R(view.samples, step, dst, step, size, medianThreshold, made, 1);
    if (kind_ == "blend") {
      if (weights_ == nullptr) {
        std::int32_t thresholds[2] = {blendStill, blendMoved};
        double weights[2] = {0.0, 1.0};
        require(zvpiDeinterlaceBlendInitAlloc_8u_C1(size, thresholds, weights, &weights_), "the blend");
      }
      return zvpiDeinterlaceBlend_8u_C1(planes + 1, step, dst, step, size, topFirst, made == 0, 1, weights_);
    }
    return zvpiDeinterlaceMotionAdaptive_8u_C1(planes, step, dst, step, size, motionThreshold, topFirst, made == 0, 1,
                                               1);
  }

  static constexpr int medianThreshold = 8, blendStill = 5, blendMoved = 20, motionThreshold = 12;
  std::string kind_;
  zvpDeinterlaceBlendState* weights_ = nullptr;
};

// The strength of the edge at each sample: the larger of the differences across it and down it, distance bytes apart.
std::vector<std::uint8_t> edgeMap(const std::uint8_t* samples, int rowBytes, int height, int distance) {
  std::vector<std::uint8_t> edges(std::size_t(rowBytes) * std::size_t(height));
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < rowBytes; ++x) {
      const auto at = [&](int column, int row) {
        const int c = column < 0 ? x : column >= rowBytes ? x : column;
        return int(samples[std::clamp(row, 0, height - 1) * rowBytes + c]);
      };
      const int across = std::abs(at(x + distance, y) - at(x - distance, y));
      const int down = std::abs(at(x, y + 1) - at(x, y - 1));
      edges[std::size_t(y) * std::size_t(rowBytes) + std::size_t(x)] = std::uint8_t(std::max(across, down) / 2);
    }
  return edges;
}

// CAST denoising against the previous result, plane by plane, or all components at once in packed 4:2:2.
class Denoiser {
 public:
  explicit Denoiser(bool packed) : packed_(packed) {}

  StoredPicture run(const StoredPicture& now) {
    if (!(now.format == previous_.format)) previous_ = {};
    StoredPicture result = now;
    if (packed_)
      runPacked(now, result);
    else
      for (int plane = 0; plane < 3; ++plane) runPlane(now, result, plane);
    previous_ = result;
    return result;
  }

 private:
  void runPlane(const StoredPicture& now, StoredPicture& result, int plane) {
    const PlaneView view = planeOf(now, plane);
    const auto edges = edgeMap(view.samples, view.width, view.height, 1);
    history_[plane].resize(std::size_t((view.width + 3) / 4) * std::size_t((view.height + 3) / 4));
    require(zvpiFilterDenoiseCAST_8u_C1R(view.samples, previous_.samples.empty() ? nullptr : previous_.plane(plane),
                                         view.width, edges.data(), view.width, {view.width, view.height},
                                         writable(result, plane), view.width, history_[plane].data(), nullptr),
            "the denoiser");
  }
  void runPacked(const StoredPicture& now, StoredPicture& result) {
    const video::Format& format = now.format;
    if (format.chromaShiftX != 1 || format.chromaShiftY != 0 || format.width % 2 != 0)
      throw ToolError("packed denoising is for 4:2:2 of even width");
    const int rowBytes = 2 * format.width, height = format.height;
    const auto current = pack(now);
    const auto edges = edgeMap(current.data(), rowBytes, height, 4);
    std::vector<std::uint8_t> filtered(current.size());
    history_[0].resize(std::size_t((rowBytes + 15) / 16) * 4 * std::size_t((height + 3) / 4));
    require(zvpiFilterDenoiseCASTYUV422_8u_C2R(
                current.data(), packedPrevious_.empty() ? nullptr : packedPrevious_.data(), rowBytes, edges.data(),
                rowBytes, {format.width, height}, filtered.data(), rowBytes, history_[0].data(), nullptr),
            "the denoiser");
    unpack(filtered, result);
    packedPrevious_ = std::move(filtered);
  }
  static std::vector<std::uint8_t> pack(const StoredPicture& picture) {
    const std::uint8_t *y = picture.plane(0), *cb = picture.plane(1), *cr = picture.plane(2);
    std::vector<std::uint8_t> packed;
    packed.reserve(picture.samples.size());
    for (std::size_t i = 0; i < picture.samples.size() / 4; ++i)
      packed.insert(packed.end(), {y[2 * i], cb[i], y[2 * i + 1], cr[i]});
    return packed;
  }
  static void unpack(const std::vector<std::uint8_t>& packed, StoredPicture& picture) {
    std::uint8_t *y = writable(picture, 0), *cb = writable(picture, 1), *cr = writable(picture, 2);
    for (std::size_t i = 0; i < packed.size() / 4; ++i) {
      y[2 * i] = packed[4 * i];
      cb[i] = packed[4 * i + 1];
      y[2 * i + 1] = packed[4 * i + 2];
      cr[i] = packed[4 * i + 3];
    }
  }

  bool packed_;
  StoredPicture previous_;
  std::vector<std::uint8_t> packedPrevious_, history_[3];
};

// Before and after side by side, and below each the part in which they differ most, four times as large.
void writeComparison(const std::string& path, const StoredPicture& before, const StoredPicture& after) {
  constexpr int zoom = 4, gap = 6, block = 16;
  const video::Format& format = before.format;
  const int width = format.width, height = format.height;
  const int cropWidth = std::max(1, width / zoom), cropHeight = std::max(1, std::min(height, height / zoom));
  const auto difference = [&](int x, int y) {
    int sum = 0;
    for (int v = y; v < std::min(y + block, height); ++v)
      for (int u = x; u < std::min(x + block, width); ++u)
        sum += std::abs(before.plane(0)[v * width + u] - after.plane(0)[v * width + u]);
    return sum;
  };
  int bestX = 0, bestY = 0, best = -1;
  for (int y = 0; y < height; y += block)
    for (int x = 0; x < width; x += block)
      if (const int d = difference(x, y); d > best) best = d, bestX = x, bestY = y;
  const int left = std::clamp(bestX + block / 2 - cropWidth / 2, 0, width - cropWidth);
  const int top = std::clamp(bestY + block / 2 - cropHeight / 2, 0, height - cropHeight);

  const int sheetWidth = 2 * width + 3 * gap, sheetHeight = height + zoom * cropHeight + 3 * gap;
  std::vector<Rgb> sheet(std::size_t(sheetWidth) * std::size_t(sheetHeight), Rgb{32, 32, 32});
  const StoredPicture* const sides[2] = {&before, &after};
  for (int side = 0; side < 2; ++side) {
    const auto colour = [&](int x, int y) {
      const int cx = x >> format.chromaShiftX, cy = y >> format.chromaShiftY, step = format.planeWidth(1);
      return toRgb(format, sides[side]->plane(0)[y * width + x], sides[side]->plane(1)[cy * step + cx],
                   sides[side]->plane(2)[cy * step + cx]);
    };
    const auto put = [&](int x, int y, Rgb value) {
      sheet[std::size_t(y) * std::size_t(sheetWidth) + std::size_t(gap + side * (width + gap) + x)] = value;
    };
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) put(x, gap + y, colour(x, y));
    for (int y = 0; y < zoom * cropHeight; ++y)
      for (int x = 0; x < zoom * cropWidth; ++x) put(x, 2 * gap + height + y, colour(left + x / zoom, top + y / zoom));
  }
  writePng(path, sheetWidth, sheetHeight, sheet);
}

// The mean squared error against the original over all frames, by planes.
class Quality {
 public:
  void add(const StoredPicture& picture, const StoredPicture& original) {
    for (int plane = 0; plane < 3; ++plane) {
      const PlaneView view = planeOf(picture, plane);
      const std::size_t samples = std::size_t(view.width) * std::size_t(view.height);
      const double value = psnr(picture, original, plane);
      error_[plane] += std::isinf(value) ? 0 : double(samples) * 255 * 255 / std::pow(10, value / 10);
      samples_[plane] += double(samples);
    }
  }
  void print(const char* name) const {
    const auto of = [&](int plane) {
      return error_[plane] == 0 ? INFINITY : 10 * std::log10(255.0 * 255.0 * samples_[plane] / error_[plane]);
    };
    std::printf("%-8s Y %.2f dB, Cb %.2f dB, Cr %.2f dB\n", name, of(0), of(1), of(2));
  }

 private:
  double error_[3] = {}, samples_[3] = {};
};

bool sameShape(const StoredPicture& a, const StoredPicture& b) {
  return a.format.width == b.format.width && a.format.height == b.format.height && a.samples.size() == b.samples.size();
}

// What is done with each result.
class Results {
 public:
  Results(const FilterOptions& options, video::Ratio frameRate) : options_(options) {
    if (!options.output.empty()) writer_ = makeWriter(options.output, frameRate);
    if (!options.original.empty())
      original_ = std::make_unique<LibavFrames>(options.original, nullptr, AV_CODEC_ID_NONE);
  }
  void add(const StoredPicture& before, const StoredPicture& after) {
    if (writer_) writer_->add(after.view());
    if (original_) {
      StoredPicture expected;
      if (!original_->next(expected)) throw ToolError(options_.original + " has fewer frames than the input");
      if (!sameShape(expected, after)) throw ToolError(options_.original + " has pictures of another format");
      unfiltered_.add(before, expected);
      filtered_.add(after, expected);
    }
    // The comparison shows the frame that the filter changed most.
    if (!options_.compare.empty()) {
      const double distance = psnr(before, after, 0);
      if (shown_.samples.empty() || distance < least_) {
        least_ = distance;
        shown_ = before;
        shownAfter_ = after;
      }
    }
    progress_.count();
  }
  int finish() {
    if (writer_) writer_->finish();
    progress_.finish();
    if (progress_.frames() == 0) throw ToolError("no picture in " + options_.input);
    if (!options_.compare.empty()) writeComparison(options_.compare, shown_, shownAfter_);
    if (original_) {
      unfiltered_.print("before");
      filtered_.print("after");
    }
    return 0;
  }
  std::int64_t frames() const { return progress_.frames(); }

 private:
  const FilterOptions& options_;
  std::unique_ptr<Writer> writer_;
  std::unique_ptr<LibavFrames> original_;
  Quality unfiltered_, filtered_;
  StoredPicture shown_, shownAfter_;
  double least_ = 0;
  Progress progress_;
};

}  // namespace

int filter(const FilterOptions& options) {
  if (options.deinterlace.empty() && options.denoise.empty())
    throw ToolError("nothing to do: say --deinterlace or --denoise");
  LibavFrames input(options.input, nullptr, AV_CODEC_ID_NONE);
  Results results(options, input.frameRate());
  std::unique_ptr<Deinterlacer> deinterlacer;
  if (!options.deinterlace.empty()) deinterlacer = std::make_unique<Deinterlacer>(options.deinterlace);
  std::unique_ptr<Denoiser> denoiser;

  struct Waiting {
    StoredPicture picture;
    bool topFirst;
  };
  std::deque<Waiting> window;  // two frames back, the frame itself, one ahead, as far as there are any
  std::size_t at = 0;          // the frame itself
  const auto emit = [&] {
    const Waiting& now = window[at];
    StoredPicture result = now.picture;
    if (deinterlacer) {
      std::array<const StoredPicture*, Deinterlacer::back + 1 + Deinterlacer::ahead> frames;
      for (std::size_t i = 0; i < frames.size(); ++i) {
        const std::size_t wanted = at + i < Deinterlacer::back ? 0 : at + i - Deinterlacer::back;
        const StoredPicture& frame = window[std::min(wanted, window.size() - 1)].picture;
        frames[i] = sameShape(frame, now.picture) ? &frame : &now.picture;
      }
      result = deinterlacer->run(frames, now.topFirst);
    }
    if (!options.denoise.empty()) {
      if (!denoiser) denoiser = std::make_unique<Denoiser>(options.packed || input.packed());
      result = denoiser->run(result);
    }
    results.add(now.picture, result);
    if (++at > Deinterlacer::back) {
      window.pop_front();
      --at;
    }
  };
  const auto wanted = [&] { return options.frames == 0 || results.frames() < options.frames; };
  StoredPicture picture;
  while (wanted() && input.next(picture)) {
    const bool topFirst = options.fieldOrder == "auto" ? input.topFieldFirst() : options.fieldOrder == "top";
    window.push_back({std::move(picture), topFirst});
    if (window.size() > at + Deinterlacer::ahead) emit();
  }
  while (wanted() && at < window.size()) emit();
  return results.finish();
}

}  // namespace zvptool
