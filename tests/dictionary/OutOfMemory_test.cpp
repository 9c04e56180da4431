// What dictionaries hold when memory runs out in the middle of a change: all of it, or none. The
// program's operator new gives out after as many calls as a test allows.
#include "dictionary/MxDictionarys.h"

#include "DictionaryWords.h"
#include "SampleDatabase.h"
#include "ScarceNew.h"
#include "ScopedLanguage.h"

#include <gtest/gtest.h>

#include <new>

using namespace ORKBASE;

namespace {

/// Keys and words of a set, but for the vocabulary.
std::string Everything(const MxDictionarys& set) {
  std::string all = KeysOf(set);
  for (const auto& entry : set.dictionaries()) {
    if (entry.first != u"base") all += ";" + WordsOf(set, entry.first);
  }
  return all;
}

class OutOfMemory : public testing::Test {
 protected:
  void SetUp() override {
    set_.Connect(database_.Server(), 0, ORKDB::MxProxyInfo(), u"", u"", kSqlServerDs, false, true,
                 u"");
    ASSERT_EQ(set_.LoadReportTemplate(u"7"), 0);
    ASSERT_EQ(set_.LoadDataTables(u"Orders,T"), 0);
  }

  /// Runs `change` on a copy with one allocation, two, three, ... until it has enough. Before that
  /// the set and its copy stay as they were. Returns how often memory ran out.
  template <class Change>
  int ChangeWithLittleMemory(Change change) {
    MxDictionarys copy(set_);
    const std::string before = Everything(set_);
    for (int count = 1;; ++count) {
      allowance = count;
      bool isDone = false;
      try {
        isDone = change(copy) == 0;
      } catch (const std::bad_alloc&) {
      }
      const bool hadEnough = allowance != 0;
      allowance = -1;
      set_.BeginCall();
      if (isDone) return count - 1;
      EXPECT_FALSE(hadEnough);
      EXPECT_EQ(Everything(set_), before) << count;
      EXPECT_EQ(Everything(copy), before) << count;
      if (HasFailure()) return count;
    }
  }

  const ScopedLanguage language_{u"en"};
  const TempDatabase database_{SourceText("examples/shop.sql")};
  MxDictionarys set_;
};

}  // namespace

TEST_F(OutOfMemory, RenamesAllWordsOrNone) {
  const auto rename = [](MxDictionarys& copy) {
    return copy.ReplaceNames(u"Header:Kopf,Lines:Zeilen", u"Kopf.Total:Summe,Orders.Qty:Menge");
  };
  EXPECT_GT(ChangeWithLittleMemory(rename), 100);
  EXPECT_EQ(ByPrimary(set_, u"thisReport.Kopf.Summe"), "thisReport.Kopf.Summe");
  EXPECT_EQ(ByPrimary(set_, u"Kopf.Summe"), "Kopf.Summe");
  EXPECT_EQ(ByPrimary(set_, u"Orders.Menge"), "Orders.Menge");
  EXPECT_EQ(ByPrimary(set_, u"Header.Total"), "-");
}

TEST_F(OutOfMemory, ReadsAllTablesAnewOrNone) {
  database_.Run("update data_fields set fldName = 'b2' where fldId = 302;");
  const auto refresh = [](MxDictionarys& copy) { return copy.Refresh(); };
  EXPECT_GT(ChangeWithLittleMemory(refresh), 100);
  EXPECT_EQ(ByPrimary(set_, u"T.b2"), "T.b2");
  EXPECT_EQ(ByPrimary(set_, u"T.b"), "-");
}
