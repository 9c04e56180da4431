// `orkrule batch`: one JSON object a line in, one a line out, in the same order.
#include "BatchHelp.h"
#include "Commands.h"
#include "LineReader.h"

#include "RuleService.h"

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <span>
#include <vector>

namespace ORKTOOL {
namespace {

/// Somebody at a terminal is told what is waited for.
void HintAtTerminal() {
  if (isatty(STDIN_FILENO) == 0) return;
  PrintError(
      "orkrule: reads calls from this terminal, one a line, such as\n"
      "  {\"op\":\"Translate\",\"type\":4,\"expression\":\"1 + 2 > 2\"}\n"
      "Ctrl-D at the beginning of a line ends.\n");
}

constexpr std::size_t kBufferBytes = std::size_t{1} << 16;

/// Memory for standard output, which uses it to the end of the process.
char* Buffer() {
  static char buffer[kBufferBytes];
  return buffer;
}

struct BatchOptions {
  bool flush = false;
  std::size_t jobs = 1;
  bool strict = false;
  bool keepGoing = true;
};

/// Lines that are answered together. They keep their memory.
class LineBlock {
 public:
  /// Reads a line, and more of them that need not be waited for; false at the end. Blank lines are
  /// passed over.
  bool Read(LineReader& input, std::size_t mostLines) {
    constexpr std::size_t kMostBytes = std::size_t{4} << 20;
    count_ = 0;
    std::size_t bytes = 0;
    while (count_ < mostLines && bytes < kMostBytes) {
      if (count_ == lines_.size()) lines_.emplace_back();
      Line& line = lines_[count_];
      if (!(count_ == 0 ? input.Next(line.text) : input.NextWithoutWaiting(line.text))) break;
      if (line.text.find_first_not_of(" \t\r\v\f") == line.text.npos) continue;
      line.number = input.Number();
      bytes += line.text.size();
      ++count_;
    }
    views_.clear();
    for (std::size_t i = 0; i < count_; ++i) views_.emplace_back(lines_[i].text);
    return count_ > 0;
  }

  std::span<const std::string_view> Texts() const noexcept { return views_; }
  std::size_t NumberOf(std::size_t index) const noexcept { return lines_[index].number; }

 private:
  struct Line {
    std::string text;
    std::size_t number = 0;
  };
  std::vector<Line> lines_;
  std::size_t count_ = 0;
  std::vector<std::string_view> views_;
};

/// How many there were of a kind, and in which line the first.
struct Count {
  std::size_t all = 0;
  std::size_t firstLine = 0;

  void Add(std::size_t line) {
    if (all++ == 0) firstLine = line;
  }
  std::string Text(const char* what) const {
    std::string text = ", " + std::to_string(all) + " " + what;
    if (all > 0) text.append(" (the first in line ").append(std::to_string(firstLine)).append(")");
    return text;
  }
};

class BatchRun {
 public:
  explicit BatchRun(const BatchOptions& options)
      : options_(options),
        flushEach_(options.flush || isatty(STDOUT_FILENO) != 0),
        service_(options.jobs) {}

  ExitStatus Run() {
    constexpr std::size_t kMostLines = 16384;
    if (!flushEach_) std::setvbuf(stdout, Buffer(), _IOFBF, kBufferBytes);
    HintAtTerminal();
    LineReader input("-");
    input.set_beforeWait(FlushOutput);
    try {
      while (block_.Read(input, options_.jobs == 1 ? 1 : kMostLines)) AnswerBlock();
    } catch (const Stop&) {
      isStopped_ = true;
    }
    FlushOutput();
    TellCounts();
    const bool isWell = refused_.all + bad_.all == 0;
    return isStopped_ || (options_.strict && !isWell) ? kRefused : kDone;
  }

 private:
  struct Stop {};

  void AnswerBlock() {
    std::size_t index = 0;
    service_.AnswerEach(block_.Texts(), [&](ORKBASE::RuleAnswer answer) {
      answer.json += '\n';
      Print(answer.json);
      if (flushEach_) FlushOutput();
      CountOne(answer.outcome, block_.NumberOf(index++));
    });
  }

  void CountOne(ORKBASE::RuleOutcome outcome, std::size_t line) {
    ++answered_;
    if (outcome == ORKBASE::RuleOutcome::kCarriedOut) return;
    (outcome == ORKBASE::RuleOutcome::kRefused ? refused_ : bad_).Add(line);
    if (!options_.keepGoing) throw Stop();
  }

  /// Programs that read standard error are told only what they asked for.
  void TellCounts() const {
    if (!options_.strict && options_.keepGoing && isatty(STDERR_FILENO) == 0) return;
    PrintError("orkrule: " + std::to_string(answered_) + " lines answered" +
               refused_.Text("refused") + bad_.Text("bad") + "\n");
  }

  const BatchOptions options_;
  const bool flushEach_;
  ORKBASE::RuleService service_;
  LineBlock block_;
  std::size_t answered_ = 0;
  Count refused_;
  Count bad_;
  bool isStopped_ = false;
};

void AddBatchOptions(CLI::App& command, BatchOptions& options) {
  command.add_flag("--flush", options.flush, "Hand over each answer at once");
  command
      .add_option("--jobs", options.jobs,
                  "So many threads, 0 for as many as there are cores; the answers stay the same")
      ->check(CLI::Range(std::size_t{0}, ORKBASE::kMostServiceJobs))
      ->capture_default_str();
  command.add_flag(
      "--strict", options.strict,
      "Exit status 1 when a rule was refused or a line was bad, and a count at the end");
  command.add_flag("--keep-going,!--no-keep-going", options.keepGoing,
                   "Go on behind a refused rule or a bad line, as is usual; with "
                   "--no-keep-going the run ends behind its answer, with status 1");
}

}  // namespace

void AddBatchCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("batch", "Run calls given as JSON Lines, and answer each with a line");
  const auto options = std::make_shared<BatchOptions>();
  AddBatchOptions(*command, *options);
  AddLanguageOption(*command);
  command->footer("");  // the one below stands in its place
  command->footer([] {
    return BatchHelp() +
           "\n"
           "Example:\n"
           "  printf '%s\\n' '{\"op\":\"Connect\",\"server\":\"sqlite:examples/shop.db\"}' \\\n"
           "    '{\"op\":\"Translate\",\"id\":1,\"type\":4,\"expression\":\"T.a > 1\"}' | orkrule "
           "batch";
  });
  command->callback([options, &status] { status = BatchRun(*options).Run(); });
}

}  // namespace ORKTOOL
