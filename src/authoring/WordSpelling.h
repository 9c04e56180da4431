// How a word of a document is written in a rule: the way back from the canonical spelling to what
// the lexer takes for it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "MxErrorRecord.h"
#include "document/TagTree.h"
#include "foundation/WordView.h"

namespace ORKBASE {

class AuthoringCall;

/// Finds the spelling of words in the language of a call. Each is tried by reading it, so what is
/// given is taken by the lexer for the very word: a field of that table, a parameter of that type.
/// Loads the tables that words name.
class WordSpelling {
 public:
  explicit WordSpelling(AuthoringCall& call) : call_(call) {}

  /// False, with the error, for a word that cannot be written.
  bool Spell(Tag tag, std::u16string& text, MxErrorRecord& error);

  /// Tables of key columns that stand as they were typed and have no type, although the table lists
  /// them: the rule of such a document was read before the table was loaded.
  const std::set<std::u16string>& TablesAtFirstSight() const noexcept { return atFirstSight_; }

 private:
  /// What has to come out of the spelling.
  struct Asked {
    std::u16string_view primary;
    std::int32_t symbol;
    std::int32_t dataType;
  };

  bool Find(Tag tag);
  bool TryWordsNamed(std::u16string_view primary, std::u16string_view behind);
  bool TryPostfixed();
  bool Try(std::u16string_view text);
  bool Reads(std::u16string text);
  bool IsAtFirstSight(std::u16string_view text, const WordView& word);
  MxErrorRecord Refusal() const;

  /// A word that was spelt before: rules repeat theirs.
  struct Spelt {
    std::int32_t symbol;
    std::int32_t dataType;
    std::u16string text;
  };

  AuthoringCall& call_;
  std::map<std::u16string, Spelt, std::less<>> spelt_;  ///< by canonical spelling
  Asked asked_{};
  std::u16string found_;
  bool isKnown_ = false;      ///< some dictionary has a word of that name and kind
  std::u16string otherWord_;  ///< the first spelling that is another word
  std::set<std::u16string> atFirstSight_;
  MxErrorRecord lexersRefusal_;  ///< of the last spelling that is none, an outage before all
};

}  // namespace ORKBASE
