#include "foundation/TextWriter.h"

#include "Utf8.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace ORKBASE {
namespace {

TEST(TextWriter, JoinsWhatItIsGiven) {
  TextWriter out;
  EXPECT_EQ(U8(out.text()), "");
  out += u"<tag primary=\"";
  out += std::u16string_view();
  out += std::u16string(u"客户");
  out += u'"';
  EXPECT_EQ(U8(out.text()), "<tag primary=\"客户\"");
}

TEST(TextWriter, GrowsWithTheText) {
  TextWriter out;
  std::u16string expected;
  for (int i = 0; i < 5000; ++i) {
    const std::u16string piece(static_cast<std::size_t>(i % 37),
                               static_cast<char16_t>(u'a' + i % 26));
    out += piece;
    expected += piece;
  }
  EXPECT_EQ(out.text(), expected);
}

TEST(TextWriter, CountsOfTheRoomWhatWasWritten) {
  TextWriter out;
  out += u"ab";
  char16_t* const at = out.Room(1000);
  at[0] = u'c';
  at[1] = u'd';
  out.WroteUpTo(at + 1);
  EXPECT_EQ(U8(out.text()), "abc");
}

TEST(TextWriter, KeepsItsMemoryForTheNextTextButNotThatOfAHugeOne) {
  TextWriter out;
  out += std::u16string(100'000, u'x');
  const char16_t* const memory = out.text().data();
  out.Clear();
  EXPECT_EQ(U8(out.text()), "");
  out += std::u16string(100'000, u'y');
  EXPECT_EQ(out.text().data(), memory);
  out += std::u16string(5'000'000, u'z');
  out.Clear();
  EXPECT_EQ(out.text().data(), nullptr);
  out += u"again";
  EXPECT_EQ(U8(out.text()), "again");
}

TEST(TextWriter, WritesDecimals) {
  TextWriter out;
  for (const std::int32_t value : {0, 9, 10, -1, 27, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    AppendDecimal(out, value);
    out += u' ';
  }
  EXPECT_EQ(U8(out.text()), "0 9 10 -1 27 2147483647 -2147483648 ");
}

}  // namespace
}  // namespace ORKBASE
