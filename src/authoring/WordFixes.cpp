#include "authoring/WordFixes.h"

#include "authoring/NearNames.h"
#include "authoring/Operands.h"
#include "dictionary/MxDictionarys.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

#include <algorithm>

namespace ORKBASE {
namespace {

constexpr int kMostSearches = 8;  // over all words, in one check
constexpr std::size_t kMostNear = 6;

/// What is told of a word, and what it may be instead.
struct Finding {
  std::int32_t number = 0;  ///< 0: as the lexer says
  std::u16string instead;
  std::vector<Remedy> remedies;
  bool isSure = false;
};

class WordCheck {
 public:
  WordCheck(Workbench& bench, const Lexicon& lexicon)
      : bench_(bench), draft_(bench.Now()), lexicon_(lexicon) {}

  void Run() {
    for (std::size_t i = 0; i < draft_.Size(); ++i) {
      word_ = i;
      if (TakeDatePart() || !draft_.IsRefused(i) || TakeOutage()) continue;
      Finding finding;
      const bool isFound = TakeText(finding) || TakeParameter(finding) || TakeAlias(finding) ||
                           TakeOtherLanguage(finding) || TakeSpelling(finding);
      if (!isFound) TakeNames(finding);
      if (!finding.isSure) bench_.Rank(finding.remedies, false);
      if (!finding.remedies.empty() && finding.remedies.front().label == kMsgFixAddTable) {
        finding.number = kMsgNoTable;
      }
      Tell(finding);
    }
  }

 private:
  std::u16string_view Written() const { return draft_.Written(word_); }
  std::int32_t At() const { return draft_.Offset(word_); }
  std::int32_t Length() const { return draft_.End(word_) - At(); }
  Remedy Replace(std::int32_t label, std::u16string text) const {
    return {label, text, {{At(), Length(), text}}};
  }

  void Tell(const Finding& finding) {
    if (finding.number == 0) {
      const MxErrorRecord& refusal = draft_.reading.refusals[word_];
      bench_.TellText(At(), Length(), refusal.message == 0 ? kMsgUnknownWord : refusal.message,
                      bench_.call.TextOf(refusal), finding.remedies);
    } else if (finding.instead.empty()) {
      bench_.Tell(At(), Length(), finding.number, {Written()}, finding.remedies);
    } else {
      bench_.Tell(At(), Length(), finding.number, {Written(), finding.instead}, finding.remedies);
    }
  }

  bool TakeOutage() {
    const MxErrorRecord& refusal = draft_.reading.refusals[word_];
    if (refusal.cause != kDatabaseCause) return false;
    if (!isOutageTold_) {
      bench_.Tell(At(), Length(), kMsgDatabaseFailed, {bench_.call.TextOf(refusal)}, {});
    }
    isOutageTold_ = true;
    return true;
  }

  // --- units of time

  /// The first argument of `dateAdd` and `timeInterval`.
  bool TakeDatePart() {
    if (word_ < 2 || !draft_.IsSign(word_ - 1, u"(")) return false;
    if (draft_.Word(word_).symbol == kDatePartSymbol && !draft_.IsRefused(word_)) return false;
    const std::u16string_view function = lexicon_.Meaning(draft_, word_ - 2);
    if (!EqualsIgnoringCase(function, u"dateAdd") &&
        !EqualsIgnoringCase(function, u"timeInterval")) {
      return false;
    }
    const std::u16string part(DatePartOf(Written()));
    if (part.empty()) return false;
    bench_.Tell(At(), Length(), kMsgForeignWord, {Written(), part}, {Replace(kMsgFixWrite, part)});
    return true;
  }

  // --- texts

  static bool IsBoundary(char16_t unit) noexcept {
    return IsBlank(unit) || unit == u')' || unit == u',' || unit == u'=' || unit == u'<' ||
           unit == u'>' || unit == u'&';
  }
  Remedy CloseAt(std::int32_t place, std::u16string_view told) const {
    return {kMsgFixAddMissing, std::u16string(told), {{place, 0, u"'"}}};
  }

  /// A text without its closing quote runs to the end, or to the quote that opens the next text.
  bool TakeText(Finding& finding) {
    const std::u16string_view written = Written();
    const bool opens = written.front() == u'\'';
    const bool swallows = !opens && written.ends_with(u'\'') && word_ > 0 &&
                          draft_.End(word_ - 1) == At() &&
                          draft_.Written(word_ - 1).front() == u'\'';
    if (!opens && !swallows) return false;
    const auto from = static_cast<std::size_t>(opens ? At() : draft_.Offset(word_ - 1));
    const auto end = static_cast<std::size_t>(opens ? draft_.End(word_) : At());
    const std::u16string_view text = draft_.text;
    if (swallows) finding.remedies.push_back(CloseAt(At(), u"'"));
    std::size_t last = end;
    while (last > from + 1 && IsBlank(text[last - 1])) --last;
    if (opens && text[last - 1] != u'\'') {
      finding.remedies.push_back(CloseAt(static_cast<std::int32_t>(last), u"'"));
    }
    std::vector<Remedy> earlier;
    for (std::size_t i = from + 1; i < last && earlier.size() < kMostNear; ++i) {
      if (IsBoundary(text[i])) earlier.push_back(CloseAt(static_cast<std::int32_t>(i), u"'"));
    }
    // What can be a text up to a blank with a rule behind it was meant so.
    bench_.Rank(earlier, true);
    if (!earlier.empty() && bench_.MayTry() &&
        bench_.Try(earlier.front().edits).grade == bench_.kVerifies) {
      finding.remedies.insert(finding.remedies.begin(), earlier.front());
    }
    return true;
  }

  // --- parameters

  bool TakeParameter(Finding& finding) {
    std::u16string_view name = Written();
    const std::size_t dot = name.find(u'.');
    if (dot == name.npos) return false;
    const MxWord* prefix = bench_.call.Dictionaries().FindByDesc(name.substr(0, dot + 1));
    if (!prefix || prefix->postfixCheck != kTypePostfix) return false;
    const std::size_t bracket = name.find(u'[');
    name = name.substr(0, bracket);
    for (const std::u16string_view type : {u"[N]", u"[S]", u"[D]"}) {
      finding.remedies.push_back(Replace(kMsgFixAddType, std::u16string(name).append(type)));
    }
    return true;
  }

  // --- words of other systems

  bool TakeAlias(Finding& finding) {
    const AliasRow* row = AliasOf(Written());
    if (!row) return false;
    finding.number = kMsgForeignWord;
    finding.instead = lexicon_.Display(row->primary);
    finding.isSure = true;
    const bool isCall =
        draft_.IsSign(word_ + 1, u"(") && draft_.partners[word_ + 1] != Draft::kAlone;
    if (isCall && TakeCall(*row, finding)) return true;
    if (row->use == AliasUse::kTrim) finding.instead = lexicon_.Display(u"ltrim");
    finding.remedies = {Replace(kMsgFixWrite, finding.instead)};
    return true;
  }

  bool TakeCall(const AliasRow& row, Finding& finding) {
    const std::size_t open = word_ + 1;
    const auto close = static_cast<std::size_t>(draft_.partners[open]);
    const std::vector<std::size_t> commas = CommasOf(draft_, open, 100);
    const std::int32_t inside = open + 1 < draft_.Size() ? draft_.Offset(open + 1) : 0;
    Remedy remedy{kMsgFixWrite, finding.instead, {}};
    switch (row.use) {
      case AliasUse::kWord:
        return false;
      case AliasUse::kVariable:
        if (close != open + 1) return false;
        remedy.edits = {{At(), draft_.End(close) - At(), finding.instead}};
        break;
      case AliasUse::kJoin:
      case AliasUse::kBracket:
        if (commas.empty()) return false;
        for (const std::size_t comma : commas) {
          const std::int32_t from = draft_.End(comma - 1);
          remedy.edits.push_back(
              {from, draft_.Offset(comma + 1) - from, u' ' + finding.instead + u' '});
        }
        if (row.use == AliasUse::kBracket) {
          remedy.edits.insert(remedy.edits.begin(), {At(), draft_.Offset(open) - At(), {}});
        } else {
          const std::int32_t from = draft_.End(close - 1);
          remedy.edits.insert(remedy.edits.begin(), {At(), inside - At(), {}});
          remedy.edits.push_back({from, draft_.End(close) - from, {}});
        }
        break;
      case AliasUse::kSwap: {
        if (commas.empty()) return false;
        const std::size_t end = commas.size() > 1 ? commas[1] : close;
        remedy.edits = {{At(), Length(), finding.instead}};
        SwapArguments(open, commas.front(), end, remedy);
        break;
      }
      case AliasUse::kTrim: {
        const std::u16string left = lexicon_.Display(u"ltrim");
        finding.instead = left + u'(' + lexicon_.Display(u"rtrim");
        remedy.told = finding.instead;
        remedy.edits = {{At(), Length(), finding.instead}, {draft_.End(close), 0, u")"}};
        break;
      }
      case AliasUse::kLeft:
        if (commas.size() != 1) return false;
        remedy.edits = {{At(), Length(), finding.instead}, {draft_.End(commas.front()), 0, u" 1,"}};
        break;
    }
    finding.remedies = {std::move(remedy)};
    return true;
  }
  void SwapArguments(std::size_t open, std::size_t comma, std::size_t end, Remedy& remedy) const {
    const std::u16string_view text = draft_.text;
    const auto piece = [&](std::size_t first, std::size_t last) {
      const auto from = static_cast<std::size_t>(draft_.Offset(first));
      return text.substr(from, static_cast<std::size_t>(draft_.End(last)) - from);
    };
    if (comma == open + 1 || comma + 1 == end) return;
    const std::u16string_view one = piece(open + 1, comma - 1);
    const std::u16string_view two = piece(comma + 1, end - 1);
    remedy.edits.push_back(
        {draft_.Offset(open + 1), static_cast<std::int32_t>(one.size()), std::u16string(two)});
    remedy.edits.push_back(
        {draft_.Offset(comma + 1), static_cast<std::int32_t>(two.size()), std::u16string(one)});
  }

  // --- words of other languages, and in other letters

  bool TakeOtherLanguage(Finding& finding) {
    const std::u16string_view written = Written();
    std::u16string instead;
    if (const MxWord* word = lexicon_.OfOtherLanguage(written)) {
      instead = lexicon_.Display(word->primary);
    } else {
      const std::size_t dot = written.find(u'.');
      if (dot == written.npos) return false;
      const MxWord* prefix = lexicon_.OfOtherLanguage(written.substr(0, dot + 1));
      if (!prefix) return false;
      instead = lexicon_.Display(prefix->primary).append(written.substr(dot + 1));
    }
    if (instead == written) return false;
    finding.number = kMsgOtherLanguage;
    finding.instead = instead;
    finding.remedies = {Replace(kMsgFixOwnLanguage, instead)};
    finding.isSure = true;
    return true;
  }

  /// The word before fields of the current record is the one where capitals count.
  bool TakeSpelling(Finding& finding) {
    if (bench_.call.Engine().lexer.thiscaseVarOn1RcId) return false;
    const std::u16string prefix = LoadMessage(kMsgThisReport, bench_.call.TextLanguage()) + u'.';
    const std::u16string_view written = Written();
    if (written.size() <= prefix.size() ||
        !EqualsIgnoringCase(written.substr(0, prefix.size()), prefix)) {
      return false;
    }
    const std::u16string spelt = prefix + std::u16string(written.substr(prefix.size()));
    if (spelt == written || !bench_.call.Dictionaries().FindByDesc(written.substr(prefix.size()))) {
      return false;
    }
    finding.number = kMsgOtherCase;
    finding.instead = spelt;
    finding.remedies = {Replace(kMsgFixSpelling, spelt)};
    return finding.isSure = true;
  }

  // --- names

  void TakeNames(Finding& finding) {
    if (searches_ >= kMostSearches) return;
    ++searches_;
    const std::u16string_view written = Written();
    const WordIndex& index = bench_.call.Words();
    for (const NearName& near : NearNamesOf(index, written, kMostNear)) {
      finding.remedies.push_back(Replace(kMsgFixWrite, near.word->word->outDesc));
    }
    TakePrefix(finding);
    if (written.find(u'.') == written.npos) AddTables(index, finding);
  }

  /// A word before a name, `Inptu.x[N]`.
  void TakePrefix(Finding& finding) {
    const std::u16string_view written = Written();
    const std::size_t dot = written.find(u'.');
    if (dot == written.npos || written.find(u'[') == written.npos) return;
    const std::u16string folded = Folded(written.substr(0, dot + 1));
    for (const std::u16string_view primary : {u"Input.", u"Sms."}) {
      const std::u16string prefix = lexicon_.Display(primary);
      const std::size_t limit = NearLimit(folded, prefix);
      if (DistanceOf(folded, Folded(prefix), limit) > limit) continue;
      finding.remedies.push_back(
          Replace(kMsgFixWrite, prefix + std::u16string(written.substr(dot + 1))));
    }
  }

  void AddTables(const WordIndex& index, Finding& finding) {
    const std::size_t before = finding.remedies.size();
    for (const IndexedWord& entry : index.All()) {
      const MxWord& word = *entry.word;
      if (word.symbol != kDataFieldSymbol && word.symbol != kFormFieldSymbol) continue;
      if (word.fldName.size() != Written().size() || !EqualsIgnoringCase(word.fldName, Written())) {
        continue;
      }
      finding.remedies.push_back(Replace(kMsgFixAddTable, word.outDesc));
      if (finding.remedies.size() - before == kMostNear) break;
    }
  }

  Workbench& bench_;
  const Draft& draft_;
  const Lexicon& lexicon_;
  std::size_t word_ = 0;
  int searches_ = 0;
  bool isOutageTold_ = false;
};

}  // namespace

void FindRefusedWords(Workbench& bench, const Lexicon& lexicon) {
  WordCheck(bench, lexicon).Run();
}

}  // namespace ORKBASE
