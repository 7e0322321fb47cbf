// Decoding in the test's own process, and by programs that stand by themselves.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/decoder.h"
#include "common/stored_picture.h"
#include "h264_writer.h"

namespace zvptest {

struct Decoded {
  std::vector<video::StoredPicture> pictures;
  bool failed = false;
  std::string error;
  std::int64_t position = -1;
  video::StreamError::Kind kind{};
};

// Decodes an elementary stream that is handed over in pieces. Pictures beyond the limit are counted and thrown away.
Decoded decodeStream(video::Decoder& decoder, std::span<const std::uint8_t> stream, std::size_t piece,
                     std::size_t keep = SIZE_MAX);
Decoded decodeH264(std::span<const std::uint8_t> stream, std::size_t piece = 4096, std::size_t keep = SIZE_MAX);

std::string md5Of(const std::vector<video::StoredPicture>& pictures);
std::string md5Of(const std::vector<Bytes>& pictures);

Bytes readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);
std::filesystem::path sample(const std::string& name);  // in tests/data/streams
// ffmpeg's options for pictures of a camera as its input: a sample of H.264, in which things and the camera move. Those
// in the argument come first.
std::string filmed(const std::string& options = "");

// A directory that goes when the object goes.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

bool haveProgram(const std::string& name);
struct CommandResult {
  int exitCode = -1;   // 128 and the signal if one ended it
  std::string output;  // standard output and standard error
};
CommandResult run(const std::string& command);
// Throws if ffmpeg fails.
void runFfmpeg(const std::string& arguments);
// The command that runs the tool.
std::string zvp(const std::string& arguments);

// All pictures as ffmpeg decodes them, I420. The stream is an H.264 elementary stream of pictures of one size.
std::vector<Bytes> decodeWithFfmpeg(const std::filesystem::path& stream, const TemporaryDirectory& scratch,
                                    std::size_t pictureBytes);
// The same of any file, with options for ffmpeg's input and output.
std::vector<Bytes> decodeWithFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch,
                                    std::size_t pictureBytes, const std::string& inputOptions,
                                    const std::string& outputOptions);

// No plane of any picture may be further from what it should be than this many dB.
void expectAlike(const std::vector<video::StoredPicture>& actual, const std::vector<Bytes>& expected, double least);
// Nor may a sample of the first picture that differs be further from it than 3: two transforms differ by one, and what
// is predicted from that by little more. What follows may have drifted.
void expectNear(const std::vector<video::StoredPicture>& actual, const std::vector<Bytes>& expected, double least);

// Empty if the pictures are equal, else the first difference.
std::string firstDifference(const std::vector<video::StoredPicture>& actual, const std::vector<Bytes>& expected);

// Skips the test if the program is not installed.
#define ZVP_NEED_PROGRAM(name) \
  if (!haveProgram(name)) GTEST_SKIP() << name << " is not installed"

}  // namespace zvptest
