// One authoring call on its way: a private copy of the engine, in the language of the call.
#pragma once

#include <cstdint>
#include <forward_list>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "MxErrorRecord.h"
#include "authoring/CandidateList.h"
#include "authoring/WordIndex.h"
#include "expression/ExpressionState.h"
#include "foundation/MessageNumbers.h"
#include "foundation/WordView.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// The words of a rule, each decided by itself as far as the lexer can. Refers to the text and to
/// the dictionaries of the call. Neither copied nor moved, since words refer to its texts.
struct RuleReading {
  RuleReading() = default;
  RuleReading(const RuleReading&) = delete;
  RuleReading& operator=(const RuleReading&) = delete;

  std::u16string_view text;
  std::vector<WordView> words;
  std::vector<MxErrorRecord> refusals;  ///< one a word; `kNoCause` for one that is taken
  std::forward_list<std::u16string> composed;

  std::int32_t OffsetOf(std::size_t word) const noexcept {
    return static_cast<std::int32_t>(words[word].written.data() - text.data());
  }
  std::int32_t LengthOf(std::size_t word) const noexcept {
    return static_cast<std::int32_t>(words[word].written.size());
  }
  bool IsRefused(std::size_t word) const noexcept { return refusals[word].cause != kNoCause; }
};

/// What stays between the calls of one language: a private copy of the engine, with the tables that
/// authoring calls have loaded into it, and an index of its words.
class AuthoringView {
 public:
  /// Follows the engine: begins anew where it has loaded, renamed or refreshed. `spoken`: the
  /// language of the words, null for that of the engine.
  void Follow(const EngineState& source, const Language* spoken);

  /// Becomes a copy of the same view of an engine of which `engine` is a reading copy, unless it is
  /// one already. `now`: the stamp of both engines; what that view holds of another state is of no
  /// use.
  void TakeOver(const AuthoringView& other, const MxDictionarys::Stamp& now,
                const std::shared_ptr<bool>& asked);

  EngineState engine;

  /// All words of the moment. Valid until a table is loaded.
  const WordIndex& Words();
  /// The same as what can be put into a rule.
  const CandidateList& Candidates(Language language);

 private:
  /// What a list of candidates depends on, beside the words.
  struct Reading {
    bool isMade = false;
    bool takesPrefix = true;  ///< `thiscaseVarOn1RcId`
    Language language;
    friend bool operator==(const Reading&, const Reading&) = default;
  };

  bool isMade_ = false;
  KeyMap<bool> loaded_;  ///< data tables that the engine has, in lower case
  MxDictionarys::Stamp source_;
  MxDictionarys::Stamp indexed_;
  WordIndex index_;
  Reading listed_;
  CandidateList list_;
};

/// What the functions behind the calls work on. Lives as long as one call, on one thread.
class AuthoringCall {
 public:
  AuthoringCall(AuthoringView& view, Language language) : view_(view), language_(language) {}

  EngineState& Engine() noexcept { return view_.engine; }
  MxDictionarys& Dictionaries() noexcept { return view_.engine.dictionaries; }
  Language TextLanguage() const noexcept { return language_; }
  const WordIndex& Words() { return view_.Words(); }
  const CandidateList& Candidates() { return view_.Candidates(language_); }

  /// As `MxExpression::Verify`, but each missing table is asked for once in all of the call.
  bool Verify(MXRULE_DATATYPE type, std::u16string_view rule, std::u16string& document,
              MxErrorRecord& refusal) {
    return view_.engine.Verify(type, rule, language_, document, refusal);
  }
  /// Reads the words of a text and decides each; loads the tables that it names.
  void Read(std::u16string_view text, RuleReading& reading);

  /// A message in the language of the call, filled with texts.
  std::u16string Text(std::int32_t message,
                      std::initializer_list<std::u16string_view> arguments = {}) const;
  /// The text of an error record, as people read it.
  std::u16string TextOf(const MxErrorRecord& error) const;

 private:
  AuthoringView& view_;
  Language language_;
};

/// Whether an offset is a place between the characters of a text.
bool IsPlace(std::u16string_view text, std::int32_t offset) noexcept;

}  // namespace ORKBASE
