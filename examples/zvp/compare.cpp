// zvp compare: the pictures of the library's decoder beside those of libavcodec, to the bit or, where a standard leaves
// the transform's last bit open, within a distance.
#include <cmath>
#include <cstdio>
#include <deque>

#include "commands.h"
#include "common/stored_picture.h"
#include "libav_frames.h"
#include "progress.h"
#include "psnr.h"
#include "source.h"

namespace zvptool {

namespace {

using video::StoredPicture;

const char* const planeNames[3] = {"Y", "Cb", "Cr"};

// Says where two pictures of one format first differ, macroblock by macroblock.
void reportDifference(const StoredPicture& ours, const StoredPicture& theirs, std::int64_t frame) {
  const video::Format& format = ours.format;
  for (int mbY = 0; mbY < (format.height + 15) / 16; ++mbY)
    for (int mbX = 0; mbX < (format.width + 15) / 16; ++mbX)
      for (int plane = 0; plane < 3; ++plane) {
        const int shiftX = plane == 0 ? 0 : format.chromaShiftX, shiftY = plane == 0 ? 0 : format.chromaShiftY;
        const int width = format.planeWidth(plane), height = format.planeHeight(plane);
        for (int y = mbY * 16 >> shiftY; y < std::min((mbY + 1) * 16 >> shiftY, height); ++y)
          for (int x = mbX * 16 >> shiftX; x < std::min((mbX + 1) * 16 >> shiftX, width); ++x) {
            const int a = ours.plane(plane)[y * width + x], b = theirs.plane(plane)[y * width + x];
            if (a == b) continue;
            std::printf("frame %lld differs: plane %s, macroblock (%d, %d), sample (%d, %d) is %d, expected %d\n",
                        static_cast<long long>(frame), planeNames[plane], mbX, mbY, x, y, a, b);
            std::printf("PSNR of the frame: Y %.2f dB, Cb %.2f dB, Cr %.2f dB\n", psnr(ours, theirs, 0),
                        psnr(ours, theirs, 1), psnr(ours, theirs, 2));
            return;
          }
      }
}

// The plane that is furthest from what it should be.
struct Distance {
  double psnr = INFINITY;
  std::int64_t frame = 0;
  int plane = 0;
};

Distance distance(const StoredPicture& ours, const StoredPicture& theirs, std::int64_t frame) {
  Distance result;
  if (ours.samples == theirs.samples) return result;
  for (int plane = 0; plane < 3; ++plane)
    if (const double of = psnr(ours, theirs, plane); of < result.psnr) result = {of, frame, plane};
  return result;
}

}  // namespace

int compare(const CompareOptions& options) {
  PictureReader reader(options.input);
  const Codec& codec = reader.source().codec();
  // Of a container libavformat finds the codec out by itself: headers inside may tell more than the container does.
  const bool elementary = reader.source().elementary();
  LibavFrames other(options.input, elementary ? codec.streamFormat : nullptr,
                    elementary ? codec.id : AV_CODEC_ID_NONE);
  std::deque<StoredPicture> queue;
  const video::PictureSink sink = [&](const video::Picture& picture) { queue.emplace_back(picture); };
  Progress progress;
  Distance worst;
  while (options.frames == 0 || progress.frames() < options.frames) {
    while (queue.empty() && reader.advance(sink)) {
    }
    if (queue.empty() && !reader.error().empty()) {
      progress.finish();
      std::fprintf(stderr, "zvp: %s\n", reader.error().c_str());
      return 1;
    }
    StoredPicture expected;
    const bool there = other.next(expected);
    if (queue.empty() || !there) {
      if (queue.empty() && !there) break;
      std::printf("frame %lld is missing from %s\n", static_cast<long long>(progress.frames()),
                  there ? "the library's decoder" : "libavcodec's");
      return 1;
    }
    const StoredPicture& ours = queue.front();
    const video::Format &a = ours.format, &b = expected.format;
    if (a.width != b.width || a.height != b.height || a.chromaShiftX != b.chromaShiftX ||
        a.chromaShiftY != b.chromaShiftY) {
      std::printf("frame %lld is %dx%d, expected %dx%d\n", static_cast<long long>(progress.frames()), a.width, a.height,
                  b.width, b.height);
      return 1;
    }
    const Distance here = distance(ours, expected, progress.frames());
    if (here.psnr < (codec.leastPsnr > 0 ? codec.leastPsnr : INFINITY)) {
      reportDifference(ours, expected, progress.frames());
      return 1;
    }
    if (here.psnr < worst.psnr) worst = here;
    queue.pop_front();
    progress.count();
  }
  progress.finish();
  if (progress.frames() == 0) {
    std::printf("no picture to compare\n");
    return 1;
  }
  if (std::isinf(worst.psnr))
    std::printf("bit-exact, %lld frames\n", static_cast<long long>(progress.frames()));
  else
    std::printf("alike within rounding, %lld frames: the worst plane, %s of frame %lld, has %.2f dB\n",
                static_cast<long long>(progress.frames()), planeNames[worst.plane],
                static_cast<long long>(worst.frame), worst.psnr);
  return 0;
}

}  // namespace zvptool
