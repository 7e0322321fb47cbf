#include "stream_support.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "common/md5.h"
#include "h264/decoder.h"
#include "zvp/psnr.h"

namespace zvptest {

Decoded decodeStream(video::Decoder& decoder, std::span<const std::uint8_t> stream, std::size_t piece,
                     std::size_t keep) {
  Decoded result;
  const video::PictureSink sink = [&](const video::Picture& picture) {
    if (result.pictures.size() < keep) result.pictures.emplace_back(picture);
  };
  const auto note = [&](const video::StreamError& error) {
    if (result.failed) throw std::logic_error("finish() fails after an error");
    result.failed = true;
    result.error = error.what();
    result.position = error.position();
    result.kind = error.kind();
  };
  try {
    for (std::size_t at = 0; at < stream.size(); at += piece) {
      // A copy of its own, so that a sanitizer sees what lies beyond it.
      const auto part = stream.subspan(at, std::min(piece, stream.size() - at));
      const Bytes copy(part.begin(), part.end());
      decoder.decode({copy, std::int64_t(at), false}, sink);
    }
  } catch (const video::StreamError& error) {
    note(error);
  }
  try {
    decoder.finish(sink);
  } catch (const video::StreamError& error) {
    note(error);
  }
  return result;
}

Decoded decodeH264(std::span<const std::uint8_t> stream, std::size_t piece, std::size_t keep) {
  return decodeStream(*h264::makeDecoder(), stream, piece, keep);
}

std::string md5Of(const std::vector<video::StoredPicture>& pictures) {
  video::Md5 md5;
  for (const auto& picture : pictures) md5.add(picture.view());
  return md5.hex();
}

std::string md5Of(const std::vector<Bytes>& pictures) {
  video::Md5 md5;
  for (const Bytes& picture : pictures) md5.add(picture.data(), picture.size());
  return md5.hex();
}

Bytes readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

std::filesystem::path sample(const std::string& name) {
  return std::filesystem::path(ZVP_TEST_DATA) / "streams" / name;
}

std::string filmed(const std::string& options) {
  return "-f h264 " + options + " -i " + sample("VID_1280x720_cavlc_temporal_direct.264").string();
}

TemporaryDirectory::TemporaryDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "zvp-stream-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("cannot make a temporary directory");
  path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

bool haveProgram(const std::string& name) {
  return std::system(("command -v " + name + " > /dev/null 2>&1").c_str()) == 0;
}

CommandResult run(const std::string& command) {
  CommandResult result;
  std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (!pipe) throw std::runtime_error("cannot run " + command);
  char buffer[4096];
  while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, pipe)) result.output.append(buffer, size);
  const int status = pclose(pipe);
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

void runFfmpeg(const std::string& arguments) {
  const CommandResult result = run("ffmpeg -y -v error -nostdin " + arguments);
  if (result.exitCode != 0) throw std::runtime_error("ffmpeg fails: " + result.output);
}

std::string zvp(const std::string& arguments) { return ZVP_TOOL " " + arguments; }

std::vector<Bytes> decodeWithFfmpeg(const std::filesystem::path& stream, const TemporaryDirectory& scratch,
                                    std::size_t pictureBytes, const std::string& inputOptions,
                                    const std::string& outputOptions) {
  const auto raw = scratch / "ffmpeg.yuv";
  runFfmpeg("-threads 1 -flags +bitexact " + inputOptions + " -i " + stream.string() +
            " -vsync passthrough -f rawvideo " + outputOptions + " " + raw.string());
  const Bytes bytes = readFile(raw);
  if (pictureBytes == 0 || bytes.size() % pictureBytes != 0)
    throw std::runtime_error("ffmpeg's pictures have another size");
  std::vector<Bytes> pictures;
  for (std::size_t at = 0; at < bytes.size(); at += pictureBytes)
    pictures.emplace_back(bytes.begin() + std::ptrdiff_t(at), bytes.begin() + std::ptrdiff_t(at + pictureBytes));
  return pictures;
}

std::vector<Bytes> decodeWithFfmpeg(const std::filesystem::path& stream, const TemporaryDirectory& scratch,
                                    std::size_t pictureBytes) {
  // Strict: the order of output by the standard's buffer model, not by a guess from the first pictures.
  return decodeWithFfmpeg(stream, scratch, pictureBytes, "-strict strict -f h264", "-vf 'format=yuv420p|yuvj420p'");
}

void expectAlike(const std::vector<video::StoredPicture>& actual, const std::vector<Bytes>& expected, double least) {
  ASSERT_EQ(actual.size(), expected.size());
  ASSERT_FALSE(actual.empty());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    ASSERT_EQ(actual[i].samples.size(), expected[i].size());
    video::StoredPicture other;
    other.format = actual[i].format;
    other.samples = expected[i];
    for (int plane = 0; plane < 3; ++plane)
      EXPECT_GE(zvptool::psnr(actual[i], other, plane), least) << "picture " << i << ", plane " << plane;
  }
}

void expectNear(const std::vector<video::StoredPicture>& actual, const std::vector<Bytes>& expected, double least) {
  expectAlike(actual, expected, least);
  for (std::size_t i = 0; i < std::min(actual.size(), expected.size()); ++i) {
    int largest = 0;
    for (std::size_t at = 0; at < std::min(actual[i].samples.size(), expected[i].size()); ++at)
      largest = std::max(largest, std::abs(actual[i].samples[at] - expected[i][at]));
    EXPECT_LE(largest, 3) << "picture " << i << ", the first that differs";
    if (largest > 0) break;
  }
}

std::string firstDifference(const std::vector<video::StoredPicture>& actual, const std::vector<Bytes>& expected) {
  for (std::size_t i = 0; i < std::min(actual.size(), expected.size()); ++i) {
    const auto& a = actual[i];
    if (a.samples == expected[i]) continue;
    if (a.samples.size() != expected[i].size()) return "picture " + std::to_string(i) + " has another size";
    std::size_t at = 0;
    while (a.samples[at] == expected[i][at]) ++at;
    int plane = 0;
    while (plane < 2 && at >= std::size_t(a.plane(plane + 1) - a.samples.data())) ++plane;
    const std::size_t place = at - std::size_t(a.plane(plane) - a.samples.data());
    const std::size_t width = std::size_t(a.format.planeWidth(plane));
    return "picture " + std::to_string(i) + ", plane " + std::to_string(plane) + ", sample (" +
           std::to_string(place % width) + ", " + std::to_string(place / width) + ") is " +
           std::to_string(a.samples[at]) + ", expected " + std::to_string(expected[i][at]);
  }
  if (actual.size() != expected.size())
    return std::to_string(actual.size()) + " pictures, expected " + std::to_string(expected.size());
  return {};
}

}  // namespace zvptest
