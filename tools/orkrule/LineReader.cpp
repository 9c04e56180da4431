#include "LineReader.h"

#include "Output.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace ORKTOOL {
namespace {

constexpr std::size_t kBlock = 1 << 16;

}  // namespace

LineReader::LineReader(const std::string& path) : name_(path) {
  if (path == "-") {
    name_ = "standard input";
    return;
  }
  file_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file_ < 0) Fail("cannot open ");
  owned_ = true;
}

LineReader::~LineReader() {
  if (owned_) close(file_);
}

bool LineReader::Next(std::string& line) {
  if (Interrupt::IsAsked()) return false;
  std::size_t end = buffer_.find('\n', searched_);
  while (end == buffer_.npos) {
    searched_ = buffer_.size();
    if (!Fill()) break;
    end = buffer_.find('\n', searched_);
  }
  const bool isEnd = end == buffer_.npos && begin_ == buffer_.size();
  if (isEnd || Interrupt::IsAsked()) return false;
  line.assign(buffer_, begin_, end == buffer_.npos ? end : end - begin_);
  begin_ = end == buffer_.npos ? buffer_.size() : end + 1;
  searched_ = begin_;
  ++number_;
  return true;
}

bool LineReader::Fill() {
  buffer_.erase(0, begin_);
  searched_ -= begin_;
  begin_ = 0;
  if (beforeWait_ && !InputWaiting()) beforeWait_();
  if (!Interrupt::WaitForInput(file_)) return false;
  const std::size_t kept = buffer_.size();
  buffer_.resize(kept + kBlock);
  ssize_t count = 0;
  do {
    count = read(file_, buffer_.data() + kept, kBlock);
  } while (count < 0 && errno == EINTR);
  if (count < 0) Fail("cannot read ");
  buffer_.resize(kept + static_cast<std::size_t>(count));
  return count > 0;
}

bool LineReader::InputWaiting() const {
  pollfd state{file_, POLLIN, 0};
  return poll(&state, 1, 0) > 0;
}

void LineReader::Fail(const char* what) const {
  throw Failure{kInputOutput, what + name_ + ": " + std::strerror(errno)};
}

std::string ReadFile(const std::string& path) {
  LineReader reader(path);
  std::string text;
  for (std::string line; reader.Next(line);) text.append(line).append("\n");
  Interrupt::EndIfAsked();
  return text;
}

}  // namespace ORKTOOL
