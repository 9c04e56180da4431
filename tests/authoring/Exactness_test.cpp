// Completion against the plain interpreter: behind each word of generated rules exactly those words
// are offered that it would take there.
#include "RuleAuthoring.h"

#include "MxLexicalAnalyzer.h"
#include "PlainInterpreter.h"
#include "RuleGenerator.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"
#include "expression/ExpressionState.h"

#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <set>

namespace ORKBASE {
namespace {

constexpr MXRULE_DATATYPE kStartTypes[] = {kNumDataType,   kStrDataType, kDateDataType,
                                           kLogicDataType, kVarDataType, kPicDataType,
                                           kLinkDataType};

constexpr const char16_t* kCadDocument =
    u"<dd><tabs><tab name='Part' dispName='Part'><flds><fld name='Width' dispName='Width' dt='1'/>"
    u"<fld name='Made' dispName='Made' dt='4'/><fld name='No' dispName='No' dt='5'/></flds></tab>"
    u"</tabs><enums><e name='Color' dispName='Color'><v name='Red' dispName='Red' val='1'/>"
    u"<v name='Blue' dispName='Blue' val='5'/></e></enums></dd>";

struct Setting {
  const char* name;
  const char16_t* thread;    ///< language in which the engine is made
  const char16_t* language;  ///< of the calls; empty for that of the engine
  bool looksUpPrefix;        ///< `thiscaseVarOn1RcId`
};

// clang-format off
const Setting kSettings[] = {
    {"English",          u"en",    u"",      true},
    {"Chinese",          u"zh-CN", u"",      true},
    {"ChineseOfTheCall", u"en",    u"zh-CN", true},
    {"EnglishOfTheCall", u"zh-CN", u"en",    true},
    {"WithoutPrefix",    u"en",    u"",      false},
};
// clang-format on

std::ostream& operator<<(std::ostream& out, const Setting& setting) {
  return out << setting.name;
}

/// A text that may be offered, with the words that it may become.
struct Offer {
  std::u16string text;
  std::vector<MxWord> words;
};

using Texts = std::set<std::string>;

class Exactness : public testing::TestWithParam<Setting> {
 protected:
  Exactness() : authoring_(engine_) {
    engine_.SetDts(u"Orders,Customer,T,Stock,客户");
    engine_.SetRt(u"7");
    engine_.SetCAXDD(1, kCadDocument);
    engine_.set_thiscaseVarOn1RcId(GetParam().looksUpPrefix);
    authoring_.set_language(GetParam().language);
    dictionaries_ = EngineAccess::Of(engine_).dictionaries;
    const std::u16string language = GetParam().language;
    if (!language.empty()) dictionaries_.SpeakLanguage(LanguageNamed(language));
    lexer_.set_dictionarys(&dictionaries_);
    lexer_.set_thiscaseVarOn1RcId(GetParam().looksUpPrefix);
    FindOffers();
  }

  std::optional<std::vector<MxWord>> Lexed(const std::u16string& text) {
    std::vector<std::u16string> tokens;
    std::vector<std::u16string> primaries;
    std::vector<MxWord> words;
    lexer_.GenerateOriginalTokens(text, tokens);
    lexer_.GeneratePrimaryTokens(tokens, primaries, words);
    for (MxWord& word : words) {
      if (!lexer_.VerifyToken(word)) return std::nullopt;
    }
    return words;
  }

  void AddOffer(const MxWord& word) {
    Offer offer{word.outDesc, {}};
    for (const char16_t* postfix : {u"x[N]", u"x[S]", u"x[D]", u""}) {
      if ((word.postfixCheck == kTypePostfix) == (*postfix == u'\0')) continue;
      const auto lexed = Lexed(word.outDesc + postfix);
      if (lexed && lexed->size() == 1) offer.words.push_back(lexed->front());
    }
    if (!offer.words.empty()) offers_.push_back(offer);
  }

  void FindOffers() {
    Texts seen;
    for (const auto& entry : dictionaries_.dictionaries()) {
      for (const MxWord* word : entry.second->SortedWords()) {
        const bool isFirst = seen.insert(U8(ToLower(word->outDesc))).second;
        if (isFirst) AddOffer(*dictionaries_.FindByDesc(word->outDesc));
      }
    }
  }

  /// A word of a generated rule as it is written in the language.
  std::u16string Written(const MxWord& word) const {
    if (const MxWord* known = dictionaries_.FindByPrimary(word.primary)) return known->outDesc;
    const std::size_t point = word.primary.find(u'.') + 1;
    const MxWord* prefix = dictionaries_.FindByPrimary(word.primary.substr(0, point));
    return prefix ? prefix->outDesc + word.primary.substr(point) : word.primary;
  }

  Texts Expected() const {
    Texts expected;
    for (const Offer& offer : offers_) {
      for (const MxWord& word : offer.words) {
        if (!plain_.ReachedEnd() || plain_.TakesAtEnd(word)) expected.insert(U8(offer.text));
      }
    }
    return expected;
  }

  Texts ExpectedConstants() const {
    Texts expected;
    for (const auto& [name, type] :
         {std::pair("number", kNumDataType), {"text", kStrDataType}, {"date", kDateDataType}}) {
      const MxWord word = MakeRuleWord(u"x", kConstantSymbol, type);
      if (!plain_.ReachedEnd() || plain_.TakesAtEnd(word)) expected.insert(name);
    }
    return expected;
  }

  /// False where the plain interpreter would take too long.
  bool Compare(MXRULE_DATATYPE type, const std::u16string& text) {
    const auto words = Lexed(text);
    EXPECT_TRUE(words) << U8(text);
    std::u16string document;
    try {
      plain_.ParseExpr(ParsedType(type), &*words, document);
    } catch (const PlainInterpreter::TooLong&) {
      return false;
    }
    RuleCompletion completion;
    const auto end = static_cast<std::int32_t>(text.size());
    EXPECT_TRUE(authoring_.Complete(type, text, end, 0, false, completion));
    Texts items;
    for (const RuleItem& item : completion.items) {
      EXPECT_TRUE(items.insert(U8(item.text)).second) << U8(item.text);
    }
    EXPECT_EQ(completion.unsure, !plain_.ReachedEnd()) << type << " " << U8(text);
    EXPECT_EQ(items, Expected()) << type << " " << U8(text);
    Texts constants;
    for (const std::u16string_view constant : completion.constants) constants.insert(U8(constant));
    EXPECT_EQ(constants, ExpectedConstants()) << type << " " << U8(text);
    return true;
  }

  const ScopedLanguage language_{GetParam().thread};
  SampleExpression engine_;
  RuleAuthoring authoring_;
  MxDictionarys dictionaries_;
  MxLexicalAnalyzer lexer_;
  PlainInterpreter plain_;
  std::vector<Offer> offers_;
};

std::vector<RuleWord> WordsToUse(bool looksUpPrefix) {
  std::vector<RuleWord> words = AllRuleWords();
  // Without its first word a field of the form is looked up as one of the table.
  if (!looksUpPrefix) {
    std::erase_if(words, [](const RuleWord& word) { return word.symbol == kFormFieldSymbol; });
  }
  words.push_back({u"thisDoc.Part.Made", kCAXFieldSymbol, kDateDataType});
  words.push_back({u"thisDoc.Part.No", kCAXFieldSymbol, kStrDataType});
  return words;
}

TEST_P(Exactness, OffersWhatThePlainInterpreterTakesBehindEachWord) {
  RuleGenerator rules(77, WordsToUse(GetParam().looksUpPrefix));
  int compared = 0;
  for (int i = 0; i < 35; ++i) {
    for (const MXRULE_DATATYPE type : kStartTypes) {
      std::u16string text;
      const GeneratedRule rule = rules.Make(type, i % 4 + 1);
      compared += Compare(type, text) ? 1 : 0;
      for (const MxWord& word : rule.words) {
        text += Written(word) + u' ';
        // Now and then as a rule of another type, which it may be no beginning of.
        const bool isOther = rules.Pick(8) == 0;
        const MXRULE_DATATYPE asked =
            isOther ? kStartTypes[rules.Pick(std::size(kStartTypes))] : type;
        compared += Compare(asked, text) ? 1 : 0;
      }
    }
    if (HasFailure()) break;
  }
  EXPECT_GT(compared, 800);
  RecordProperty("compared", compared);
}

INSTANTIATE_TEST_SUITE_P(Settings, Exactness, testing::ValuesIn(kSettings),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace ORKBASE
