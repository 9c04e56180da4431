// What a translation writes into the document, node by node, in the order of its steps.
#include "PlainSecondPass.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

#include <string>

namespace ORKBASE {
namespace {

class Attributes : public testing::Test {
 protected:
  Attributes() {
    rules_.SetDts(u"T,Orders");
    rules_.set_useIsNull(false);
  }

  /// The translated document, a node a line.
  std::string Translated(MXRULE_DATATYPE type, const std::u16string& rule) {
    std::u16string document;
    std::u16string translated;
    std::u16string a;
    std::u16string b;
    if (!rules_.Verify(type, rule, document) ||
        !rules_.GetSpec(document, kSqlServerDs, translated, a, b, false)) {
      return U8(rules_.errDescription());
    }
    return WithoutWhiteSpace(translated);
  }

  ScopedLanguage language_{u"en"};
  SampleExpression rules_;
};

constexpr const char* kFieldA =
    "tag primary=[T.a] outDesc=[T.a] symbol=[4] dataType=[1] content=[T.a] dtId=[3] fldId=[301]";
constexpr const char* kFieldD =
    "tag primary=[T.d] outDesc=[T.d] symbol=[4] dataType=[3] content=[T.d] dtId=[3] fldId=[303]";

TEST_F(Attributes, OfAComparison) {
  rules_.set_useIsNull(true);
  EXPECT_EQ(Translated(kLogicDataType, u"(T.a = 1)"),
            "tag primary=[=] outDesc=[=] symbol=[19] dataType=[5] content=[=] semanticType=[0]"
            " inBrackets=[1] text=[=]\n " +
                std::string(kFieldA) +
                " text=[isnull([T].a,0)]\n"
                " tag primary=[1] outDesc=[1] symbol=[0] dataType=[1] content=[1] text=[1]\n");
}

TEST_F(Attributes, OfAWordOfTheMap) {
  EXPECT_EQ(Translated(kLogicDataType, u"T.a null"),
            "tag primary=[null] outDesc=[null] symbol=[26] dataType=[5] content=[null]"
            " semanticType=[3] transType=[1] targetDesc=[is null] text=[is null]\n " +
                std::string(kFieldA) + " text=[[T].a]\n");
}

TEST_F(Attributes, OfAnAggregate) {
  EXPECT_EQ(Translated(kNumDataType, u"AVERAGE(T.a)"),
            "tag primary=[average] outDesc=[average] symbol=[27] dataType=[1] content=[AVERAGE]"
            " semanticType=[1] transType=[1] targetDesc=[avg] text=[avg] ifgrpby=[1]\n " +
                std::string(kFieldA) + " text=[[T].a]\n");
}

TEST_F(Attributes, OfTheDistinctCount) {
  EXPECT_EQ(Translated(kNumDataType, u"(count1(T.a))"),
            "tag symbol=[27] semanticType=[1] dataType=[1] inBrackets=[1] primary=[count1]"
            " text=[count] ifgrpby=[1]\n"
            " tag symbol=[21] semanticType=[2] dataType=[0] text=[distinct ]\n  " +
                std::string(kFieldA) + " text=[[T].a]\n");
}

TEST_F(Attributes, OfADatePart) {
  EXPECT_EQ(Translated(kNumDataType, u"quarter(T.d)"),
            "tag symbol=[27] semanticType=[1] dataType=[1] text=[Datepart]\n"
            " tag symbol=[14] semanticType=[4] dataType=[0] text=[quarter]\n " +
                std::string(kFieldD) + " text=[[T].d]\n");
}

TEST_F(Attributes, OfAFormattedDate) {
  EXPECT_EQ(Translated(kStrDataType, u"ToText(T.d,'yymmdd')"),
            "tag symbol=[27] semanticType=[1] dataType=[2] text=[convert]\n"
            " tag symbol=[14] semanticType=[4] dataType=[0] text=[ nvarchar(6) ]\n " +
                std::string(kFieldD) +
                " text=[[T].d]\n"
                " tag primary=['yymmdd'] outDesc=['yymmdd'] symbol=[14] dataType=[0]"
                " content=['yymmdd'] transType=[1] targetDesc=[12] text=[12]\n");
}

TEST_F(Attributes, OfAPattern) {
  EXPECT_EQ(Translated(kLogicDataType, u"'a' like 'b'"),
            "tag symbol=[19] semanticType=[0] dataType=[2] text=[ like ]\n"
            " tag primary=['a'] outDesc=['a'] symbol=[0] dataType=[2] content=['a'] text=[N'a']\n"
            " tag symbol=[18] semanticType=[0] inBrackets=[1] text=[+]\n"
            "  tag symbol=[0] semanticType=[4] dataType=[2] text=['%']\n"
            "  tag symbol=[18] semanticType=[0] inBrackets=[0] text=[+]\n"
            "   tag primary=['b'] outDesc=['b'] symbol=[0] dataType=[2] content=['b'] text=[N'b']\n"
            "   tag symbol=[0] semanticType=[4] dataType=[2] text=['%']\n");
}

TEST_F(Attributes, OfASetOfOneField) {
  EXPECT_EQ(Translated(kLogicDataType, u"1 in thisSet(T.a)"),
            "tag primary=[in] outDesc=[in] symbol=[23] dataType=[5] content=[in] semanticType=[0]"
            " text=[in]\n"
            " tag primary=[1] outDesc=[1] symbol=[0] dataType=[1] content=[1] text=[1]\n"
            " tag symbol=[28] semanticType=[2] dataType=[0] text=[select ] inBrackets=[1]\n  " +
                std::string(kFieldA) +
                " text=[[T].a] inSubQry=[1]\n"
                "  tag symbol=[0] semanticType=[4] dataType=[0] text=[ from [T]]\n");
}

/// The fields inside an expression are marked, a constant beside it is not.
TEST_F(Attributes, OfASetOfExpressions) {
  EXPECT_EQ(Translated(kLogicDataType, u"1 in thisSet(2 + T.a, 3)"),
            "tag primary=[in] outDesc=[in] symbol=[23] dataType=[5] content=[in] semanticType=[0]"
            " text=[in]\n"
            " tag primary=[1] outDesc=[1] symbol=[0] dataType=[1] content=[1] text=[1]\n"
            " tag symbol=[18] semanticType=[0] dataType=[0] text=[ union ] inBrackets=[1]\n"
            "  tag symbol=[28] semanticType=[2] dataType=[0] text=[select ]\n"
            "   tag primary=[+] outDesc=[+] symbol=[16] dataType=[1] content=[+] semanticType=[0]"
            " text=[+]\n"
            "    tag primary=[2] outDesc=[2] symbol=[0] dataType=[1] content=[2] text=[2]\n    " +
                std::string(kFieldA) +
                " text=[[T].a] inSubQry=[1]\n"
                "   tag symbol=[0] semanticType=[4] dataType=[0] text=[ from [T]]\n"
                "  tag symbol=[28] semanticType=[2] dataType=[0] text=[select ]\n"
                "   tag primary=[3] outDesc=[3] symbol=[0] dataType=[1] content=[3] text=[3]\n");
}

// --- form fields

constexpr const char* kTotal =
    "tag primary=[thisReport.Header.Total] outDesc=[thisReport.Header.Total] symbol=[13]"
    " dataType=[1] content=[thisReport.Header.Total] rttId=[71] rttName=[Header] rtfId=[1604]"
    " rtfName=[Total]";

TEST_F(Attributes, OfAFieldOfTheMainTable) {
  rules_.SetRt(u"7");
  EXPECT_EQ(Translated(kNumDataType, u"thisReport.Header.Total"),
            kTotal + std::string(" text=[<F1604>]\n"));
  rules_.set_formDataIn(1);
  EXPECT_EQ(Translated(kNumDataType, u"thisReport.Header.Total"),
            kTotal + std::string(" created=[1] text=[t_7_thisCaseVar_71.Total]\n"));
}

/// Its symbol changes where it stands.
TEST_F(Attributes, OfAFieldOfTheDetailTable) {
  rules_.SetRt(u"7");
  const std::string names =
      " dataType=[1] content=[thisReport.Lines.Qty] rttId=[72] rttName=[Lines] rtfId=[1702]"
      " rtfName=[Qty]";
  const std::string head = "tag primary=[thisReport.Lines.Qty] outDesc=[thisReport.Lines.Qty]";
  EXPECT_EQ(Translated(kNumDataType, u"thisReport.Lines.Qty"),
            head + " symbol=[15]" + names +
                " tempTabName=[#t_7_repvar_72] text=[#t_7_repvar_72.F1702]\n");
  rules_.set_formDataIn(1);
  EXPECT_EQ(Translated(kNumDataType, u"thisReport.Lines.Qty"),
            head + " symbol=[13]" + names + " created=[1] text=[t_7_thisCaseVar_72.Qty]\n");
}

TEST_F(Attributes, OfAFieldOfATableThatDoesNotExist) {
  const TempDatabase database(SourceText("examples/shop.sql") +
                              "update template_tables set state = 0;");
  ConnectTo(rules_, database);
  rules_.SetRt(u"7");
  rules_.set_formDataIn(1);
  EXPECT_EQ(Translated(kNumDataType, u"thisReport.Header.Total"),
            kTotal + std::string(" created=[0] text=[<F1604>]\n"));
}

TEST_F(Attributes, OfAFieldOfACadDocument) {
  rules_.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
  EXPECT_EQ(Translated(kNumDataType, u"thisDoc.TitleBlock.Scale"),
            "tag primary=[thisDoc.Title.Scale] outDesc=[thisDoc.TitleBlock.Scale] symbol=[9]"
            " dataType=[1] content=[thisDoc.TitleBlock.Scale] caxTName=[Title] caxFName=[Scale]"
            " text=[#t_CAX_Title.Scale]\n");
  EXPECT_EQ(
      Translated(kNumDataType, u"AutoCADEnum.Unit.inch"),
      "tag primary=[AutoCADEnum.Unit.in] outDesc=[AutoCADEnum.Unit.inch] symbol=[29]"
      " dataType=[1] content=[AutoCADEnum.Unit.inch] transType=[1] targetDesc=[1] text=[1]\n");
}

TEST_F(Attributes, OfAKeyColumn) {
  EXPECT_EQ(Translated(kNumDataType, u"T.RcId"),
            "tag primary=[T.RcId] outDesc=[T.RcId] symbol=[4] dataType=[5] content=[T.RcId]"
            " text=[t.rcid]\n");
  EXPECT_EQ(Translated(kNumDataType, u"T.LumentaRN"),
            "tag primary=[T.LumentaRN] outDesc=[T.LumentaRN] symbol=[4] dataType=[5]"
            " content=[T.LumentaRN] dtId=[0] fldId=[0] text=[.]\n");
}

}  // namespace
}  // namespace ORKBASE
