// Frames and frames per second: a line that is written over on a terminal, one line at the end anywhere.
#pragma once

#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>

namespace zvptool {

class Progress {
 public:
  void count() {
    ++frames_;
    if (!terminal_) return;
    const auto now = Clock::now();
    if (now - shown_ < std::chrono::milliseconds(100)) return;
    shown_ = now;
    std::fprintf(stderr, "\r%lld frames, %.1f fps ", static_cast<long long>(frames_), rate(now));
  }
  std::int64_t frames() const { return frames_; }
  void finish() const {
    const auto now = Clock::now();
    std::fprintf(stderr, "%s%lld frames in %.2f s, %.1f fps\n", terminal_ ? "\r" : "", static_cast<long long>(frames_),
                 seconds(now), rate(now));
  }

 private:
  using Clock = std::chrono::steady_clock;
  double seconds(Clock::time_point now) const { return std::chrono::duration<double>(now - begin_).count(); }
  double rate(Clock::time_point now) const { return seconds(now) > 0 ? double(frames_) / seconds(now) : 0; }
  Clock::time_point begin_ = Clock::now(), shown_ = begin_;
  std::int64_t frames_ = 0;
  bool terminal_ = isatty(STDERR_FILENO) != 0;
};

}  // namespace zvptool
