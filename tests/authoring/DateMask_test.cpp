// Dates in the order of a mask.
#include "authoring/DateMask.h"

#include "Utf8.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

struct MaskRow {
  const char* mask;
  const char* date;
  bool reads;
  const char* rewritten;  ///< where it is not read
};

// clang-format off
constexpr MaskRow kRows[] = {
    {"mm/dd/yyyy hh24:mi:ss", "1/15/2024",         true,  ""},
    {"mm/dd/yyyy hh24:mi:ss", "01-15-2024",        true,  ""},
    {"mm/dd/yyyy hh24:mi:ss", " 01/15/2024 ",      true,  ""},
    {"mm/dd/yyyy hh24:mi:ss", "1/15/2024 9:05",    true,  ""},
    {"mm/dd/yyyy hh24:mi:ss", "May 17 2024",       true,  ""},
    {"mm/dd/yyyy hh24:mi:ss", "2024-01-15",        false, "01/15/2024"},
    {"mm/dd/yyyy hh24:mi:ss", "2024-1-5 23:59:59", false, "01/05/2024 23:59:59"},
    {"mm/dd/yyyy hh24:mi:ss", "15/1/2024",         false, "01/15/2024"},
    {"mm/dd/yyyy hh24:mi:ss", "2024年1月15日",      false, "01/15/2024"},
    // not sure which date, or no date that can be written so
    {"mm/dd/yyyy hh24:mi:ss", "1/15/24",           false, ""},
    {"mm/dd/yyyy hh24:mi:ss", "17 May 2024",       false, ""},
    {"mm/dd/yyyy hh24:mi:ss", "1/15/2024 9:05 pm", false, ""},
    {"mm/dd/yyyy hh24:mi:ss", "2024-01-15 24:00",  false, ""},
    {"mm/dd/yyyy hh24:mi:ss", "12:30",             false, ""},
    {"mm/dd/yyyy hh24:mi:ss", "",                  false, ""},
    {"yyyy/mm/dd hh24:mi:ss", "2024-01-15",        true,  ""},
    {"yyyy/mm/dd hh24:mi:ss", "5/17/2024",         false, "2024/05/17"},
    {"yyyy/mm/dd hh24:mi:ss", "17/5/2024",         false, "2024/05/17"},
    {"yyyy/mm/dd hh24:mi:ss", "5/5/2024",          false, "2024/05/05"},
    {"yyyy/mm/dd hh24:mi:ss", "5/6/2024",          false, ""},
    {"yyyy/mm/dd hh24:mi:ss", "2024年1月15日",      false, "2024/01/15"},
    {"dd.mm.yyyy hh24:mi:ss", "15-1-2024",         true,  ""},
    {"dd.mm.yyyy hh24:mi:ss", "2024-01-15",        false, "15.01.2024"},
};
// clang-format on

TEST(DateMask, ReadsAndRewritesDates) {
  for (const MaskRow& row : kRows) {
    SCOPED_TRACE(std::string(row.date) + " by " + row.mask);
    const DateMask mask(U16(row.mask));
    ASSERT_TRUE(mask.IsWhole());
    EXPECT_EQ(mask.Reads(U16(row.date)), row.reads);
    if (!row.reads) {
      EXPECT_EQ(U8(mask.Rewritten(U16(row.date))), row.rewritten);
    }
  }
}

TEST(DateMask, IsNoneWithoutYearMonthAndDay) {
  for (const char* text : {"", " hh24:mi:ss", "mm/dd hh24:mi:ss", "x/y/z"}) {
    EXPECT_FALSE(DateMask(U16(text)).IsWhole()) << text;
  }
  EXPECT_EQ(U8(DateMask(u"dd.mm.yyyy hh24:mi:ss").text()), "dd.mm.yyyy");
}

}  // namespace
}  // namespace ORKBASE
