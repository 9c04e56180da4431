// Message formatting: templates hold names of tables and fields, so any template may come.
#include "foundation/Format.h"

#include "MxErrorState.h"
#include "Mx_Exception.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace ORKBASE;

TEST(Format, FillsTexts) {
  EXPECT_EQ(U8(Format(u"The word \"%s\" is unknown.", {u"x"})), "The word \"x\" is unknown.");
  EXPECT_EQ(U8(Format(u"%s%s.%s.%s", {u"AutoCAD", u"Enum", u"Color", u"Red"})),
            "AutoCADEnum.Color.Red");
  EXPECT_EQ(U8(Format(u"%s.", {u"本报表"})), "本报表.");
  EXPECT_EQ(U8(Format(u"%s", {u""})), "");
  EXPECT_EQ(U8(Format(u"no directive", {u"x"})), "no directive");
  EXPECT_EQ(U8(Format(u"", {u"x"})), "");
}

TEST(Format, FillsNumbersAndPercentSigns) {
  EXPECT_EQ(U8(Format(u"%d/%d", {7, -3})), "7/-3");
  EXPECT_EQ(U8(Format(u"100%%", {})), "100%");
  EXPECT_EQ(U8(Format(u"%%s%s%%", {u"x"})), "%sx%");
  EXPECT_EQ(U8(Format(u"%d %s", {2, u"x"})), "2 x");
}

TEST(Format, LeavesArgumentsAlone) {
  EXPECT_EQ(U8(Format(u"%s", {u"100%s"})), "100%s");
  EXPECT_EQ(U8(Format(u"%s %s", {u"%d", u"%"})), "%d %");
}

TEST(Format, GivesTheEmptyTextForWhatItCannotFill) {
  EXPECT_EQ(U8(Format(u"a %s b %s", {u"x"})), "");  // more directives than arguments
  EXPECT_EQ(U8(Format(u"a %s", {})), "");
  EXPECT_EQ(U8(Format(u"a %s", {1})), "");  // kinds differ
  EXPECT_EQ(U8(Format(u"a %d", {u"x"})), "");
  EXPECT_EQ(U8(Format(u"a %5s", {u"x"})), "");  // any other directive
  EXPECT_EQ(U8(Format(u"a %x", {1})), "");
  EXPECT_EQ(U8(Format(u"a %S", {u"x"})), "");
  EXPECT_EQ(U8(Format(u"%s.T.50% off", {u"x"})), "");
  EXPECT_EQ(U8(Format(u"a %", {u"x"})), "");
}

TEST(Format, EndsTextsAtTheirFirstZero) {
  EXPECT_EQ(U8(Format(u"<%s>", {std::u16string_view(u"a\0b", 3)})), "<a>");
  const std::u16string out = Format(std::u16string_view(u"a\0%q", 4), {});
  EXPECT_EQ(out.size(), 1u);
}

namespace {

struct WorkingObject : MxErrorState {
  using MxErrorState::myRaiseError;
  using MxErrorState::ResetError;
};

}  // namespace

TEST(ErrorState, KeepsATextBesideTheNumberZero) {
  WorkingObject object;
  EXPECT_EQ(object.ErrNumber(), 0);
  EXPECT_EQ(U8(object.ErrDescription()), "");
  object.myRaiseError(-1, u"wrong");
  EXPECT_EQ(object.ErrNumber(), -1);
  EXPECT_EQ(U8(object.ErrDescription()), "wrong");
  object.myRaiseError(0, u"kept");
  EXPECT_EQ(object.ErrNumber(), 0);
  EXPECT_EQ(U8(object.ErrDescription()), "kept");
  object.ResetError();
  EXPECT_EQ(object.ErrNumber(), 0);
  EXPECT_EQ(U8(object.ErrDescription()), "");
}

TEST(ErrorState, TakesItsOwnText) {
  WorkingObject object;
  object.myRaiseError(-1, u"own");
  object.myRaiseError(5, object.ErrDescription());
  EXPECT_EQ(object.ErrNumber(), 5);
  EXPECT_EQ(U8(object.ErrDescription()), "own");
}

TEST(MxException, CarriesItsFields) {
  static_assert(std::is_base_of_v<std::exception, Mx_Exception>);
  static_assert(std::is_nothrow_move_constructible_v<Mx_Exception>);
  const Mx_Exception made(u"text", u"mx_PLSql_translator", u"Fn_thisSet", 802);
  const Mx_Exception copy(made);  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_EQ(U8(copy.message), "text");
  EXPECT_EQ(U8(copy.module), "mx_PLSql_translator");
  EXPECT_EQ(U8(copy.function), "Fn_thisSet");
  EXPECT_EQ(copy.location, 802u);
  EXPECT_EQ(U8(copy.extra1), "");
  EXPECT_EQ(U8(copy.extra2), "");
  EXPECT_EQ(copy.extra3, 0u);
  EXPECT_STREQ(copy.what(), "text");
}

TEST(MxException, TellsOneSentenceInUtf8) {
  const Mx_Exception chinese(u"该数据库不支持 thisSet。\xD800", u"m", u"Fn_thisSet", 802);
  EXPECT_STREQ(chinese.what(), "该数据库不支持 thisSet。\uFFFD");
  const Mx_Exception silent(u"", u"mx_PLSql_translator", u"Fn_thisSet", 802);  // no message file
  EXPECT_STREQ(silent.what(), "The database has no form for the function Fn_thisSet.");
}
