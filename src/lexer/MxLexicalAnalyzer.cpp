// The exported lexer: the engine's lexer over tokens and words that the caller owns.
#include "MxLexicalAnalyzer.h"

#include <utility>

#include "foundation/Text.h"
#include "lexer/Lexer.h"
#include "lexer/TextRenamer.h"
#include "lexer/Tokeniser.h"
#include "platform/ErrorTexts.h"

namespace ORKBASE {

struct MxLexicalAnalyzer::State {
  Lexer lexer;
  NameQuotes quotes;
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
  for (std::u16string_view rest = text; !rest.empty();) {
    const std::u16string_view token = FirstToken(rest);
    tokens.emplace_back(token);
    rest.remove_prefix(token.size());
  }
}

void MxLexicalAnalyzer::GeneratePrimaryTokens(const std::vector<std::u16string>& originals,
                                              std::vector<std::u16string>& primaries,
                                              std::vector<MxWord>& words) {
  if (originals.empty()) return;
  state_->lexer.PrepareRecognition(CurrentLanguage());
  for (const std::u16string& token : originals) {
    if (IsBlankText(token)) {
      primaries.push_back(token);
      continue;
    }
    const Lexer::Recognised found = state_->lexer.Recognise(token);
    MxWord word;
    if (found.word) {
      word = *found.word;
      word.primary += found.postfix;
    } else {
      word.primary = word.outDesc = token;
      word.symbol = kUnknownSymbol;
      word.dataType = kVarDataType;
    }
    word.content = token;
    primaries.push_back(word.primary);
    words.push_back(std::move(word));
  }
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
  if (dsType != kSqlServerDs) state_->quotes = {u"\"", u"\""};
  out = RenameInText(tableRenames, fieldRenames, state_->quotes, expression);
}

void MxLexicalAnalyzer::set_dictionarys(MxDictionarys* dictionarys) {
  state_->lexer.dictionarys = dictionarys;
}

bool MxLexicalAnalyzer::get_thiscaseVarOn1RcId() const {
  return state_->lexer.thiscaseVarOn1RcId;
}
void MxLexicalAnalyzer::set_thiscaseVarOn1RcId(bool value) {
  state_->lexer.thiscaseVarOn1RcId = value;
}

}  // namespace ORKBASE
