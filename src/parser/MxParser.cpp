// The exported parser: the interpreter over words that the caller owns.
#include "MxParser.h"

#include "foundation/WordView.h"
#include "parser/RuleInterpreter.h"
#include "platform/ErrorTexts.h"

namespace ORKBASE {

struct MxParser::State {
  RuleInterpreter interpreter;
};

MxParser::MxParser() : state_(std::make_unique<State>()) {}
// Nothing but the error outlives a parse, so a copy starts with a state of its own.
MxParser::MxParser(const MxParser& other)
    : MxErrorState(other), state_(std::make_unique<State>()) {}
MxParser& MxParser::operator=(const MxParser& other) {
  MxErrorState::operator=(other);
  return *this;
}
MxParser::~MxParser() = default;

bool MxParser::ParseExpr(MXRULE_DATATYPE expected, const std::vector<MxWord>* words,
                         std::u16string& document) {
  ResetError();
  std::vector<WordView> views;
  if (words) {
    for (const MxWord& word : *words) views.push_back(ViewOf(word));
  }
  MxErrorRecord error;
  std::int32_t refused = -1;
  if (state_->interpreter.ParseExpr(expected, views, document, error, refused)) return true;
  myRaiseError(error.number, DescriptionOf(error));
  return false;
}

}  // namespace ORKBASE
