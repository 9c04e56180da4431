#include "Progress.h"

#include "Colour.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace ORKTOOL {
namespace {

constexpr std::chrono::milliseconds kBetween{200};
constexpr std::size_t kSamples = 25;  // a rate is that of the last five seconds
constexpr std::size_t kUsualColumns = 80;

bool isShown = false;  // a line stands on the terminal

void Write(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

std::string Grouped(std::int64_t number) {
  std::string digits = std::to_string(std::max<std::int64_t>(number, 0));
  for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, 1, ',');
  return digits;
}

/// Two digits that count; the rest would only flicker.
std::string Rounded(double number) {
  std::int64_t unit = 1;
  while (number / static_cast<double>(unit) >= 100) unit *= 10;
  return Grouped(std::llround(number / static_cast<double>(unit)) * unit);
}

std::string Duration(double seconds) {
  constexpr double kDay = 86400;
  if (seconds >= 100 * kDay) return "";
  const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
  if (whole < 60) return std::to_string(whole) + " s";
  const std::int64_t minutes = (whole + 30) / 60;
  if (minutes < 60) return std::to_string(minutes) + " min";
  return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

std::string Count(const std::string& what, const ProgressFigures& figures) {
  std::string text = Grouped(figures.done);
  if (!figures.total) return text + " " + what;
  text.append(" of ").append(Grouped(*figures.total)).append(" ").append(what);
  if (*figures.total <= 0) return text;
  const std::int64_t done = std::clamp<std::int64_t>(figures.done, 0, *figures.total);
  constexpr std::int64_t kSafe = std::numeric_limits<std::int64_t>::max() / 100;
  const std::int64_t percent =
      done <= kSafe ? done * 100 / *figures.total : done / (*figures.total / 100);
  return text + " (" + std::to_string(percent) + " %)";
}

std::string TimeLeft(const ProgressFigures& figures) {
  if (!figures.total || !figures.aSecond || *figures.aSecond <= 0) return "";
  const std::int64_t left = std::max<std::int64_t>(*figures.total - figures.done, 0);
  const std::string duration = Duration(static_cast<double>(left) / *figures.aSecond);
  return duration.empty() ? "" : ", " + duration + " left";
}

}  // namespace

std::string ProgressText(const std::string& what, const ProgressFigures& figures,
                         std::size_t columns) {
  std::string text = Count(what, figures);
  const std::string rate =
      figures.aSecond ? ", " + Rounded(std::clamp(*figures.aSecond, 0.0, 1e15)) + " a second" : "";
  for (const std::string& part : {rate, TimeLeft(figures)}) {
    if (text.size() + part.size() > columns) break;
    text += part;
  }
  return text.substr(0, columns);
}

Progress::Progress(std::string what, std::optional<std::int64_t> total)
    : what_(std::move(what)),
      total_(total),
      isWanted_(isatty(STDERR_FILENO) != 0 && CanMoveCursor()),
      next_(Clock::now() + kBetween) {}

void Progress::Show(std::int64_t done) {
  if (!isWanted_) return;
  const Clock::time_point now = Clock::now();
  if (samples_.empty()) samples_.push_back({now, done});
  if (now < next_) return;
  next_ = now + kBetween;
  samples_.push_back({now, done});
  if (samples_.size() > kSamples) samples_.pop_front();
  const std::size_t columns = StyleOf(STDERR_FILENO, "never").columns;
  // The last column stays free: a terminal would go to the next line behind it.
  const std::size_t room = std::max<std::size_t>(columns == 0 ? kUsualColumns : columns, 2) - 1;
  Write("\r" + ProgressText(what_, {done, total_, Rate()}, room) + "\x1B[K");
  isShown = true;
}

std::optional<double> Progress::Rate() const {
  const std::chrono::duration<double> seconds = samples_.back().time - samples_.front().time;
  if (seconds.count() <= 0) return std::nullopt;
  return static_cast<double>(samples_.back().done - samples_.front().done) / seconds.count();
}

void Progress::End() {
  if (!std::exchange(isWanted_, false)) return;
  Clear();
}

void Progress::Clear() {
  if (std::exchange(isShown, false)) Write("\r\x1B[K");
}

}  // namespace ORKTOOL
