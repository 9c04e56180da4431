#include "authoring/Phrases.h"

#include "authoring/CallForms.h"
#include "authoring/Operands.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <algorithm>

namespace ORKBASE {
namespace {

struct NullRow {
  std::u16string_view words[3];
  std::u16string_view primary;
};

// clang-format off
/// The longer first.
constexpr NullRow kNullTests[] = {
    {{u"is", u"not",      u"null"}, u"not_null"},
    {{u"is", u"null",     u""},     u"null"},
    {{u"is", u"not_null", u""},     u"not_null"},
    {{u"=",  u"null",     u""},     u"null"},
    {{u"<>", u"null",     u""},     u"not_null"},
    {{u"=",  u"not_null", u""},     u"not_null"},
};
// clang-format on

class Scan {
 public:
  Scan(Workbench& bench, const Lexicon& lexicon)
      : bench_(bench), draft_(bench.Now()), lexicon_(lexicon) {}

  void Run() {
    while (word_ < draft_.Size()) {
      if (!TakeNullTest() && !TakeNotIn() && !TakeIn() && !TakeNotLike() && !TakeBetween() &&
          !TakeCase()) {
        ++word_;
      }
    }
  }

 private:
  bool Means(std::size_t word, std::u16string_view primary) const {
    return EqualsIgnoringCase(lexicon_.Meaning(draft_, word), primary);
  }
  std::u16string_view Piece(std::int32_t from, std::int32_t to) const {
    return std::u16string_view(draft_.text)
        .substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  }
  void Tell(std::size_t first, std::size_t last, std::u16string_view told,
            std::vector<RuleEdit> edits) {
    const std::int32_t from = draft_.Offset(first);
    const std::int32_t to = draft_.End(last);
    bench_.Tell(from, to - from, kMsgForeignForm, {Piece(from, to)},
                {{kMsgFixWrite, std::u16string(told), std::move(edits)}});
    word_ = last + 1;
  }
  RuleEdit Replace(std::size_t first, std::size_t last, std::u16string text) const {
    return {draft_.Offset(first), draft_.End(last) - draft_.Offset(first), std::move(text)};
  }

  bool TakeNullTest() {
    for (const NullRow& row : kNullTests) {
      std::size_t count = 0;
      while (count < 3 && !row.words[count].empty() && Means(word_ + count, row.words[count])) {
        ++count;
      }
      if (count < 3 && !row.words[count].empty()) continue;
      const std::u16string word = lexicon_.Display(row.primary);
      Tell(word_, word_ + count - 1, word, {Replace(word_, word_ + count - 1, word)});
      return true;
    }
    return false;
  }

  bool TakeNotIn() {
    if (!Means(word_, u"not") || !Means(word_ + 1, u"in")) return false;
    TellIn(word_ + 1, u"not_in");
    return true;
  }
  bool TakeIn() {
    const bool negated = Means(word_, u"not_in");
    if (!negated && !Means(word_, u"in")) return false;
    if (!draft_.IsSign(word_ + 1, u"(")) return false;
    TellIn(word_, negated ? u"not_in" : u"in");
    return true;
  }
  /// With `thisSet` in front of a bare bracket.
  void TellIn(std::size_t last, std::u16string_view primary) {
    std::u16string text = lexicon_.Display(primary);
    const std::size_t first = word_;
    RuleEdit edit = Replace(first, last, {});
    if (draft_.IsSign(last + 1, u"(")) {
      text.append(1, u' ').append(lexicon_.Display(u"thisSet"));
      ++last;
      edit.length = draft_.Offset(last) - edit.offset;
    }
    edit.text = text;
    Tell(first, last, text, {edit});
  }

  /// `a not like b` is `not a like b`.
  bool TakeNotLike() {
    if (word_ == 0 || !Means(word_, u"not") || !Means(word_ + 1, u"like")) return false;
    const std::size_t begin = ValueBegin(draft_, word_ - 1, true);
    if (begin == kNoWord) return false;
    const std::u16string negation = lexicon_.Display(u"not");
    RuleEdit gone = Replace(word_, word_, {});
    gone.length = draft_.Offset(word_ + 1) - gone.offset;
    Tell(word_, word_ + 1, negation, {{draft_.Offset(begin), 0, negation + u' '}, gone});
    return true;
  }

  bool IsPeriod(std::size_t word) const {
    const auto forms = FormsOf(lexicon_.Meaning(draft_, word));
    return !forms.empty() && forms.front().dataType == kLogicDataType;
  }

  /// Two comparisons, in brackets unless they are the whole rule.
  bool TakeBetween() {
    if (word_ == 0 || !Means(word_, u"between") || IsPeriod(word_ + 1)) return false;
    const std::size_t begin = ValueBegin(draft_, word_ - 1, true);
    const std::size_t low = ValueEnd(draft_, word_ + 1, true);
    if (begin == kNoWord || low == kNoWord || !Means(low + 1, u"and")) return false;
    const std::size_t high = ValueEnd(draft_, low + 2, true);
    if (high == kNoWord) return false;
    // The value will stand twice: what is unknown in it is mended first.
    for (std::size_t i = begin; i < word_; ++i) {
      if (draft_.IsRefused(i)) return false;
    }
    const std::u16string value(Piece(draft_.Offset(begin), draft_.End(word_ - 1)));
    const bool isWhole = begin == 0 && high + 1 == draft_.Size();
    std::vector<RuleEdit> edits;
    if (!isWhole) edits.push_back({draft_.Offset(begin), 0, u"("});
    edits.push_back(Replace(word_, word_, u">="));
    edits.push_back(Replace(low + 1, low + 1, lexicon_.Display(u"and") + u' ' + value + u" <="));
    if (!isWhole) edits.push_back({draft_.End(high), 0, u")"});
    Tell(begin, high, u">= <=", std::move(edits));
    return true;
  }

  /// `case when a then b else c end` is `switch(a, b, c)`.
  bool TakeCase() {
    constexpr std::size_t kFarthest = 400;
    const auto isWord = [&](std::size_t word, std::u16string_view text) {
      return draft_.IsRefused(word) && EqualsIgnoringCase(draft_.Written(word), text);
    };
    if (word_ + 1 >= draft_.Size() || !isWord(word_, u"case") || !isWord(word_ + 1, u"when")) {
      return false;
    }
    RuleEdit begin = Replace(word_, word_ + 1, lexicon_.Display(u"switch") + u'(');
    if (word_ + 2 < draft_.Size()) begin.length = draft_.Offset(word_ + 2) - begin.offset;
    std::vector<RuleEdit> edits = {begin};
    const std::size_t limit = std::min(draft_.Size(), word_ + kFarthest);
    for (std::size_t i = word_ + 2; i < limit; ++i) {
      const bool ends = isWord(i, u"end");
      if (!ends && !isWord(i, u"then") && !isWord(i, u"else") && !isWord(i, u"when")) continue;
      const std::int32_t from = draft_.End(i - 1);
      edits.push_back({from, draft_.End(i) - from, ends ? u")" : u","});
      if (!ends) continue;
      Tell(word_, i, lexicon_.Display(u"switch"), std::move(edits));
      return true;
    }
    return false;
  }

  Workbench& bench_;
  const Draft& draft_;
  const Lexicon& lexicon_;
  std::size_t word_ = 0;
};

}  // namespace

void FindPhrases(Workbench& bench, const Lexicon& lexicon) {
  Scan(bench, lexicon).Run();
}

}  // namespace ORKBASE
