// The exported lexer: the engine's lexer over tokens and words that the caller owns.
#include "MxLexicalAnalyzer.h"

#include <utility>

#include "lexer/Lexer.h"
#include "lexer/Tokeniser.h"
#include "platform/ErrorTexts.h"

namespace ORKBASE {

namespace {

MxWord UnknownWord(std::u16string_view token) {
  MxWord word;
  word.primary = word.outDesc = token;
  word.symbol = kUnknownSymbol;
  word.dataType = kVarDataType;
  return word;
}

}  // namespace

struct MxLexicalAnalyzer::State {
  Lexer lexer;
};

MxLexicalAnalyzer::MxLexicalAnalyzer() : state_(std::make_unique<State>()) {}
MxLexicalAnalyzer::MxLexicalAnalyzer(const MxLexicalAnalyzer& other)
    : MxErrorState(other), state_(std::make_unique<State>(*other.state_)) {}
MxLexicalAnalyzer& MxLexicalAnalyzer::operator=(const MxLexicalAnalyzer& other) {
  MxErrorState::operator=(other);
  *state_ = *other.state_;
  return *this;
}
MxLexicalAnalyzer::~MxLexicalAnalyzer() = default;

void MxLexicalAnalyzer::GenerateOriginalTokens(const std::u16string& text,
                                               std::vector<std::u16string>& tokens) {
  for (const std::u16string_view token : Tokens(text)) tokens.emplace_back(token);
}

void MxLexicalAnalyzer::GeneratePrimaryTokens(const std::vector<std::u16string>& originals,
                                              std::vector<std::u16string>& primaries,
                                              std::vector<MxWord>& words) {
  state_->lexer.RecogniseEach(originals, CurrentLanguage(),
                              [&](std::u16string_view token, const Lexer::Recognised& found) {
                                if (found.isBlank) {
                                  primaries.emplace_back(token);
                                  return;
                                }
                                words.push_back(found.word ? *found.word : UnknownWord(token));
                                words.back().primary += found.postfix;
                                words.back().content = token;
                                primaries.push_back(words.back().primary);
                              });
}

std::u16string MxLexicalAnalyzer::Compose(const std::vector<std::u16string>& tokens) const {
  std::u16string out;
  for (const std::u16string& token : tokens) out += token;
  return out;
}

bool MxLexicalAnalyzer::LexicalCheck(std::vector<MxWord>& words) {
  ResetError();
  for (MxWord& word : words) {
    if (!VerifyToken(word)) return false;
  }
  return true;
}

bool MxLexicalAnalyzer::VerifyToken(MxWord& word) {
  WordView view = ViewOf(word);
  MxErrorRecord error;
  const bool isGood = state_->lexer.VerifyToken(view, error);
  if (view.entry != &word) {
    word = MxWord(*view.entry);
  } else {
    word.symbol = view.symbol;
    word.dataType = view.dataType;
  }
  if (!isGood && error.number != 0) myRaiseError(error.number, DescriptionOf(error));
  return isGood;
}

void MxLexicalAnalyzer::ChangeExpWithNewDtDfNames(ORKDB_DSType_ENUM dsType,
                                                  const std::u16string& tableRenames,
                                                  const std::u16string& fieldRenames,
                                                  const std::u16string& expression,
                                                  std::u16string& out) {
  MxErrorRecord error;
  if (!state_->lexer.ChangeNames(dsType, tableRenames, fieldRenames, expression, out, error)) {
    myRaiseError(error.number, DescriptionOf(error));
  }
}

void MxLexicalAnalyzer::set_dictionarys(MxDictionarys* dictionarys) {
  state_->lexer.source = WordsIn(dictionarys);
}

bool MxLexicalAnalyzer::get_thiscaseVarOn1RcId() const {
  return state_->lexer.thiscaseVarOn1RcId;
}
void MxLexicalAnalyzer::set_thiscaseVarOn1RcId(bool value) {
  state_->lexer.thiscaseVarOn1RcId = value;
}

}  // namespace ORKBASE
