// Rules by the thousand, made from the grammar: the document of each, written in either language,
// verifies there to the same document. A formatted rule has the document of the rule, the format of
// what is written is what is written, and the uses of all of them are the fields and functions of
// the document.
#include "TwoLanguages.h"

#include "GoldenFile.h"
#include "RuleGenerator.h"
#include "ScopedLocale.h"
#include "document/TagReader.h"
#include "document/TagTree.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace ORKBASE {
namespace {

constexpr MXRULE_DATATYPE kStartTypes[] = {kNumDataType,   kStrDataType, kDateDataType,
                                           kLogicDataType, kVarDataType, kPicDataType,
                                           kLinkDataType};

// clang-format off
/// Words as they are typed, beside those of the other tests: forms of constants, postfixes, key
/// columns, names that are not those of the display forms.
constexpr RuleWord kOddWords[] = {
    {u"0x1Fp2",                     kConstantSymbol,   kNumDataType},
    {u".5e3",                       kConstantSymbol,   kNumDataType},
    {u"Infinity",                   kConstantSymbol,   kNumDataType},
    {u"nan",                        kConstantSymbol,   kNumDataType},
    {u"\t7",                        kConstantSymbol,   kNumDataType},
    {u"'a and (b,''-c'",            kConstantSymbol,   kStrDataType},
    {u"'\t\r\n'",                   kConstantSymbol,   kStrDataType},
    {u"'<\"&>\U0001F600'",          kConstantSymbol,   kStrDataType},
    {u"'10:20 pm'",                 kConstantSymbol,   kDateDataType},
    {u"' 5.6.2020 '",               kConstantSymbol,   kDateDataType},
    {u"CUSTOMER.name",              kDataFieldSymbol,  kStrDataType},
    {u"T.a[x.y]",                   kDataFieldSymbol,  kNumDataType},
    {u"Orders.LUMENTARN",           kDataFieldSymbol,  kVarDataType},
    {u"\u5BA2\u6237.\u91D1\u989D",  kDataFieldSymbol,  kNumDataType},
    {u"Input.a.b-free[s]",          kInputSymbol,      kStrDataType},
    {u"sysVar.userName[]",          kSysvarUserSymbol, kStrDataType},
    {u"thisDoc.TitleBlock.Scale",   kCAXFieldSymbol,   kNumDataType},
    {u"thisDoc.TitleBlock.DrawingNo", kCAXFieldSymbol, kStrDataType},
    {u"thisDoc.TitleBlock.Length[9]", kCAXFieldSymbol, kNumDataType},
    {u"AutoCADEnum.Unit.millimetre", kCAXEnumSymbol,   kNumDataType},
};
// clang-format on

const TempDatabase& Tables() {
  static const TempDatabase database(SourceText("examples/shop.sql") +
                                     SourceText("tests/golden/golden.sql"));
  return database;
}

/// The words of a CAD document: those of the golden files and those of the generated rules.
std::u16string CadDocument() {
  std::u16string document = U16(SourceText("tests/golden/cax.xml"));
  const std::u16string enums = u"<enums>";
  const std::u16string color =
      u"<e name='Color' dispName='Color'><v name='Red' dispName='Red' val='1'/>"
      u"<v name='Blue' dispName='Blue' val='5'/></e>";
  return document.insert(document.find(enums) + enums.size(), color);
}

void LoadAll(MxExpression& engine) {
  engine.SetRt(u"7");
  engine.SetDts(u"Orders,Customer,T,\u5BA2\u6237");
  engine.SetCAXDD(1, CadDocument());
}

std::vector<RuleWord> AllWords() {
  std::vector<RuleWord> words = AllRuleWords();
  for (const RuleWord& word : kOddWords) {
    // A "-" ends a token.
    if (word.text.find(u'-') == word.text.npos || word.symbol == kConstantSymbol) {
      words.push_back(word);
    }
  }
  return words;
}

/// Kind and name of each word of a document that a rule depends on, with how often it stands there.
using Dependencies = std::map<std::u16string, int>;

Dependencies DependenciesOf(std::u16string_view document) {
  constexpr struct {
    std::int32_t symbol;
    std::u16string_view kind;
  } kKinds[] = {
      {kDataFieldSymbol, u"field"},     {kFormFieldSymbol, u"formField"},
      {kCAXFieldSymbol, u"cadField"},   {kCAXEnumSymbol, u"cadEnum"},
      {kInputSymbol, u"input"},         {kSmsSymbol, u"message"},
      {kSysvarSymbol, u"variable"},     {kSysvarUserSymbol, u"variable"},
      {kSysvarCaseSymbol, u"variable"}, {kFunctionSymbol, u"function"},
  };
  Dependencies found;
  TagTree tree;
  EXPECT_TRUE(ReadTagTree(document, tree));
  const Tag root = tree.Root();
  for (Tag tag = root; tag; tag = tag.NextInDocument(root)) {
    for (const auto& row : kKinds) {
      if (tag.GetInt(Attr::kSymbol) != row.symbol) continue;
      ++found[std::u16string(row.kind).append(u" ").append(tag.Get(Attr::kPrimary))];
    }
  }
  return found;
}

std::string Shown(const Dependencies& dependencies) {
  std::string text;
  for (const auto& [name, count] : dependencies) {
    text += U8(name) + " " + std::to_string(count) + "\n";
  }
  return text;
}

class RoundTrip : public testing::Test {
 protected:
  /// Of the rule in the first language; returns whether it verifies there at all.
  bool Expect(MXRULE_DATATYPE type, const std::u16string& rule) {
    const std::u16string document = languages_[0].Verify(type, rule);
    if (IsRefused(document)) return false;
    ++rules_;
    const std::u16string stripped = WithoutSpelling(document);
    const std::string dependencies = Shown(DependenciesOf(document));
    authoring_.set_language(languages_[0].Tag());
    ExpectUses(rule, dependencies);
    const std::u16string formatted = authoring_.Format(rule, 30);
    EXPECT_EQ(U8(WithoutSpelling(languages_[0].Verify(type, formatted))), U8(stripped))
        << U8(formatted);
    EXPECT_EQ(U8(authoring_.Format(formatted, 30)), U8(formatted));
    for (SpokenEngine& language : languages_) {
      authoring_.set_language(language.Tag());
      std::u16string written;
      if (!authoring_.Write(document, written)) {
        refused_[U8(authoring_.errDescription())] = U8(rule);
        continue;
      }
      const std::u16string again = language.Verify(type, written);
      EXPECT_EQ(U8(WithoutSpelling(again)), U8(stripped)) << U8(written);
      EXPECT_EQ(U8(authoring_.Format(written, 0)), U8(written));
      ExpectUses(written, dependencies);
    }
    return true;
  }

  void ExpectUses(const std::u16string& rule, const std::string& dependencies) {
    Dependencies used;
    std::int32_t end = 0;
    for (const RuleUse& use : authoring_.Uses(rule)) {
      ++used[std::u16string(use.kind).append(u" ").append(use.name)];
      EXPECT_GE(use.offset, end);
      end = use.offset + use.length;
      EXPECT_LE(static_cast<std::size_t>(end), rule.size());
    }
    EXPECT_EQ(Shown(used), dependencies) << U8(rule);
  }

  void ExpectOfGenerated(std::uint32_t seed, int rulesOfAType) {
    RuleGenerator rules(seed, AllWords());
    for (const MXRULE_DATATYPE type : kStartTypes) {
      for (int i = 0; i < rulesOfAType; ++i) {
        const GeneratedRule rule = rules.Make(type, 3 + i % 12);
        SCOPED_TRACE(U8(rule.text));
        EXPECT_TRUE(Expect(rule.type, rule.text));
        if (HasFailure()) return;
      }
    }
    for (const std::u16string_view row : rules.Rows()) {
      for (int i = 0; i < 5 && row != u"<op_like>"; ++i) {
        const GeneratedRule rule = rules.MakeThrough(row, 3 + i);
        SCOPED_TRACE(U8(rule.text));
        EXPECT_TRUE(Expect(rule.type, rule.text));
        if (HasFailure()) return;
      }
    }
  }

  void ExpectNoneRefused() const {
    for (const auto& [reason, rule] : refused_) ADD_FAILURE() << reason << " " << rule;
    RecordProperty("rules", rules_);
  }

  ScopedLocale locale_{"en_US.UTF-8"};
  SpokenEngine languages_[2] = {{u"en", Tables(), LoadAll}, {u"zh-CN", Tables(), LoadAll}};
  RuleAuthoring authoring_{languages_[0].Engine()};
  std::map<std::string, std::string> refused_;  ///< the last rule by the reason
  int rules_ = 0;
};

TEST_F(RoundTrip, KeepsTheDocumentOfEveryGeneratedRule) {
  ExpectOfGenerated(2024, 500);
  ExpectNoneRefused();
}

TEST_F(RoundTrip, KeepsTheDocumentsOfRulesWithoutTheWordOfTheRecord) {
  for (SpokenEngine& language : languages_) language.Engine().set_thiscaseVarOn1RcId(false);
  RuleGenerator rules(77, AllWords());
  int verified = 0;
  for (int i = 0; i < 600; ++i) {
    // Where it is taken off, a form field without another is a data field, if there is such a one.
    const GeneratedRule rule = rules.Make(kLogicDataType, 2 + i % 8);
    const std::u16string text =
        i % 2 == 0 ? rule.text : ReplaceAll(rule.text, u"thisReport.", u"thisReport.thisReport.");
    verified += Expect(rule.type, text) ? 1 : 0;
  }
  EXPECT_GT(verified, 300);
  ExpectNoneRefused();
}

TEST_F(RoundTrip, KeepsTheDocumentsOfTheGoldenFiles) {
  std::size_t verified = 0;
  for (const std::string& file : GoldenFiles()) {
    for (const GoldenBlock& block : ReadGoldenFile(file)) {
      SCOPED_TRACE(block.file + ":" + std::to_string(block.line) + ": " + block.title);
      const ScopedLocale locale(block.Has("locale") ? block.Mode("locale").c_str() : "en_US.UTF-8");
      const Loading load = [&](MxExpression& engine) {
        if (block.Has("rt")) engine.SetRt(U16(block.Mode("rt")));
        if (block.Has("tables")) engine.SetDts(U16(block.Mode("tables")));
        if (block.Has("cax")) {
          engine.SetCAXDD(std::stoi(block.Mode("cax")), U16(SourceText("tests/golden/cax.xml")));
        }
      };
      const std::u16string tag = U16(block.Has("language") ? block.Mode("language") : "en");
      const std::u16string other = tag == u"en" ? u"zh-CN" : u"en";
      SpokenEngine source(tag, Tables(), load);
      const std::u16string document = source.Verify(block.type, U16(block.rule));
      if (IsRefused(document)) continue;
      ++verified;
      RuleAuthoring authoring(source.Engine());
      for (const std::u16string& language : {tag, other}) {
        authoring.set_language(language);
        std::u16string written;
        EXPECT_TRUE(authoring.Write(document, written)) << U8(authoring.errDescription());
        SpokenEngine target(language, Tables(), load);
        EXPECT_EQ(U8(WithoutSpelling(target.Verify(block.type, written))),
                  U8(WithoutSpelling(document)))
            << U8(written);
      }
    }
  }
  EXPECT_GT(verified, 240u);
}

/// Many more rules: a run of minutes.
class LongRoundTrip : public RoundTrip {};

TEST_F(LongRoundTrip, KeepsTheDocumentOfEveryGeneratedRule) {
  for (std::uint32_t seed = 1; seed <= 8 && !HasFailure(); ++seed) {
    ExpectOfGenerated(seed, 700);
  }
  ExpectNoneRefused();
}

}  // namespace
}  // namespace ORKBASE
