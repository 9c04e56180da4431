// The documents that a command works on: one from the command line, or many from a file or from
// standard input, behind each other as `verify --document` prints them, or as JSON Lines.
#pragma once

#include "LineReader.h"
#include "RuleInput.h"

#include <optional>
#include <string>

namespace ORKTOOL {

struct Document {
  std::u16string text;
  std::string place;      ///< "FILE:LINE" of its first line, empty for one of the command line
  JsonRecord given = {};  ///< the members of its JSON line
  std::string unreadable = {};  ///< why it is none, behind its place; else empty
};

/// Where the element that begins a text ends, however its lines are broken.
class ElementEnd {
 public:
  /// Reads on; true when the outermost element has ended.
  bool Reads(std::string_view line);

 private:
  void Take(char unit);

  enum class In { kText, kTagBegin, kTag, kEndTag, kOther } in_ = In::kText;
  char quote_ = '\0';  // of the attribute value that is being read
  char last_ = '\0';
  std::size_t depth_ = 0;
  bool begun_ = false;
};

/// Hands out one document after the other.
class DocumentInput {
 public:
  /// Throws `Failure` where the file cannot be opened.
  explicit DocumentInput(const RuleOptions& options);

  /// Throws `Failure` where reading fails, or where a document cannot be read and --keep-going is
  /// not given.
  std::optional<Document> Next();

 private:
  /// False where the process was asked to end: it may be half of a document.
  bool Read(std::string line, Document& document);

  RuleOptions options_;
  std::optional<LineReader> reader_;
  bool argumentTaken_ = false;
};

}  // namespace ORKTOOL
