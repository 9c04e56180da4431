// The message file: the order of languages, the shapes of blocks, and files that are damaged.
#include "platform/MessageFile.h"

#include "OrkPlatform.h"
#include "SampleDatabase.h"
#include "StringTableFile.h"
#include "Utf8.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <thread>

namespace ORKBASE {
namespace {

using Bytes = std::vector<std::byte>;

constexpr LanguageId kChina = 0x0804;
constexpr LanguageId kTaiwan = 0x0404;
constexpr LanguageId kUnitedStates = 0x0409;
constexpr LanguageId kBritain = 0x0809;
constexpr LanguageId kGermany = 0x0407;
constexpr LanguageId kFrance = 0x040C;
const std::u16string kUnfilled(512, u' ');

Bytes ReadRealFile() {
  std::ifstream file(ORKRULE_BINARY_DIR "/bin/Hearth.resource.dll", std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const auto* const first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

std::string Text(const Bytes& file, std::int32_t number, LanguageId thread, LanguageId user = 0) {
  return U8(MessageFile(file).Text(number, thread, user));
}

TEST(LanguageId, SplitsIntoPrimaryAndSubLanguage) {
  EXPECT_EQ(PrimaryLanguage(0x0804), 4);
  EXPECT_EQ(SubLanguage(0x0804), 2);
  EXPECT_EQ(PrimaryLanguage(0x0409), 9);
  EXPECT_EQ(SubLanguage(0x0409), 1);
  EXPECT_EQ(ExactLanguage(0x0804), 0x0804);
}

TEST(LanguageId, HasSubLanguageOneBelow1024) {
  EXPECT_EQ(SubLanguage(0x0004), 1);
  EXPECT_EQ(ExactLanguage(0x0004), 0x0404);
  EXPECT_EQ(ExactLanguage(0x03FF), 0x07FF);
  EXPECT_EQ(SubLanguage(0x0400), 1);
}

TEST(MessageFile, ReadsTheRealFile) {
  const Bytes file = ReadRealFile();
  ASSERT_FALSE(file.empty());
  EXPECT_EQ(Text(file, 6306, kUnitedStates), "and");
  EXPECT_EQ(Text(file, 6306, kChina), "且");
  EXPECT_EQ(Text(file, kMsgUnknownWord, kUnitedStates), "The word \"%s\" is unknown.");
  EXPECT_EQ(Text(file, kMsgUnknownWord, kChina), "“%s”是未知的词。");
  EXPECT_EQ(Text(file, 6101, kUnitedStates), "toLower");
  EXPECT_EQ(Text(file, kMsgResultTooLarge, kUnitedStates),
            "The translated rule becomes too large.");
}

TEST(MessageFile, TellsItsLanguages) {
  const Bytes bytes = ReadRealFile();
  EXPECT_EQ(MessageFile(bytes).Languages(), (std::vector<LanguageId>{kUnitedStates, kChina}));
  EXPECT_TRUE(MessageFile().Languages().empty());
  for (std::size_t size = 0; size < bytes.size(); size += 97) {
    const Bytes damaged(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_LE(MessageFile(damaged).Languages().size(), 2u) << size;
  }
}

TEST(MessageFile, OfThisProcessIsToldWithItsLanguages) {
  EXPECT_EQ(MessageFilePath(), Utf8ToWide(ORKRULE_BINARY_DIR "/bin/Hearth.resource.dll"));
  EXPECT_EQ(MessageLanguages(), (std::vector<std::u16string>{u"en-US", u"zh-CN"}));
  for (const char16_t* tag : {u"en", u"en-US", u"en-GB", u"zh", u"ZH-tw", u"zh_CN", u"zh-Hans"}) {
    EXPECT_TRUE(HasMessageLanguage(tag)) << U8(tag);
  }
  for (const char16_t* tag : {u"", u"de", u"xx", u"nonsense!", u"zh-", u"\xD800"}) {
    EXPECT_FALSE(HasMessageLanguage(tag)) << U8(tag);
  }
}

/// The rows of a source of the message file: a number and a quoted text each.
std::size_t RowsOf(const std::string& source) {
  std::size_t count = 0;
  std::istringstream lines(source);
  for (std::string line; std::getline(lines, line);) {
    count += !line.empty() && line[0] >= '0' && line[0] <= '9' ? 1U : 0U;
  }
  return count;
}

TEST(MessageFile, GivesEveryLanguageATextForEveryNumber) {
  const Bytes file = ReadRealFile();
  std::size_t count = 0;
  for (std::int32_t number = 0; number <= 0xFFFF; ++number) {
    const std::string english = Text(file, number, kUnitedStates);
    EXPECT_EQ(english.empty(), Text(file, number, kChina).empty()) << number;
    count += english.empty() ? 0U : 1U;
  }
  EXPECT_GT(count, 171U);  // 115 words, and more names and sentences
  EXPECT_EQ(count, RowsOf(SourceText("messages/en.rc")));
}

/// Where a text ends with what is filled in, that brings its own full stop.
TEST(MessageFile, MakesSentencesOfWarningsAndProblemsAndNoneOfLabels) {
  const Bytes file = ReadRealFile();
  const auto isSentence = [&file](std::int32_t number, LanguageId language, const char* stop) {
    const std::string text = Text(file, number, language);
    return text.empty() || text.ends_with(stop) || text.ends_with("%s");
  };
  for (std::int32_t number = kMsgOrBeforeAnd; number < kMsgFixWideSigns; ++number) {
    EXPECT_TRUE(isSentence(number, kUnitedStates, ".")) << number;
    EXPECT_TRUE(isSentence(number, kChina, "。")) << number;
  }
  for (std::int32_t number = kMsgFixWideSigns; number <= kMsgAnAttachment; ++number) {
    EXPECT_FALSE(Text(file, number, kUnitedStates).ends_with(".")) << number;
    EXPECT_FALSE(Text(file, number, kChina).ends_with("。")) << number;
  }
}

TEST(MessageFile, HasNoTextForAStrangeNumber) {
  const Bytes file = ReadRealFile();
  for (const std::int32_t number : {-1, 0, 6102, 6303, 99999, INT32_MAX, INT32_MIN})
    EXPECT_EQ(Text(file, number, kUnitedStates), "") << number;
}

/// One text in each of these languages, named after it.
Bytes FileOfManyLanguages(PeWidth width = PeWidth::k64) {
  return MakeStringTableFile(
      {MakeBlock(kFrance, {{7, u"France"}}), MakeBlock(kUnitedStates, {{7, u"United States"}}),
       MakeBlock(kChina, {{7, u"China"}}), MakeBlock(0, {{7, u"neutral"}}),
       MakeBlock(kGermany, {{7, u"Germany"}})},
      width);
}

TEST(MessageFile, TriesTheLanguagesInOrder) {
  struct Row {
    LanguageId thread;
    LanguageId user;
    const char* text;
  };
  const Row rows[] = {
      // clang-format off
      {kChina,        kGermany,      "China"},          // the thread's own
      {kTaiwan,       kGermany,      "China"},          // its primary language
      {0x0004,        kGermany,      "China"},
      {kBritain,      kGermany,      "United States"},
      {0x0411,        kGermany,      "Germany"},        // the user's own
      {0,             kGermany,      "Germany"},
      {0,             kTaiwan,       "China"},          // the primary language of that
      {0x0411,        0x0412,        "neutral"},
      {0,             0,             "neutral"},
      // clang-format on
  };
  for (const PeWidth width : {PeWidth::k32, PeWidth::k64}) {
    const Bytes file = FileOfManyLanguages(width);
    for (const Row& row : rows)
      EXPECT_EQ(Text(file, 7, row.thread, row.user), row.text) << row.thread << ' ' << row.user;
  }
}

TEST(MessageFile, FallsBackToEnglishThenToTheFirst) {
  const Bytes withEnglish = MakeStringTableFile(
      {MakeBlock(kFrance, {{7, u"France"}}), MakeBlock(kUnitedStates, {{7, u"English"}})});
  EXPECT_EQ(Text(withEnglish, 7, kChina, kGermany), "English");
  const Bytes without = MakeStringTableFile(
      {MakeBlock(kFrance, {{7, u"France"}}), MakeBlock(kGermany, {{7, u"Germany"}})});
  EXPECT_EQ(Text(without, 7, kChina), "France");
}

TEST(MessageFile, PassesOverAnEmptyText) {
  const Bytes file = MakeStringTableFile(
      {MakeBlock(kChina, {{6, u"six"}, {7, u""}}), MakeBlock(0, {{7, u""}, {8, u"eight"}}),
       MakeBlock(kUnitedStates, {{7, u"seven"}}), MakeBlock(kGermany, {{9, u"nine"}})});
  EXPECT_EQ(Text(file, 6, kChina), "six");
  EXPECT_EQ(Text(file, 7, kChina), "seven");
  EXPECT_EQ(Text(file, 8, kChina), "eight");
  EXPECT_EQ(Text(file, 9, kChina), "nine");
  EXPECT_EQ(Text(file, 10, kChina), "");
}

TEST(MessageFile, TakesEachBlockByItself) {
  const Bytes file = MakeStringTableFile(
      {MakeBlock(kChina, {{15, u"fifteen"}}), MakeBlock(kUnitedStates, {{16, u"sixteen"}})});
  EXPECT_EQ(Text(file, 15, kUnitedStates), "fifteen");
  EXPECT_EQ(Text(file, 16, kChina), "sixteen");
  EXPECT_EQ(Text(file, 32, kChina), "");
}

TEST(MessageFile, EndsATextAtItsFirstZero) {
  const Bytes file =
      MakeStringTableFile({MakeBlock(kChina, {{1, std::u16string_view(u"a\0b", 3)}, {2, u"c"}})});
  EXPECT_EQ(Text(file, 1, kChina), "a");
  EXPECT_EQ(Text(file, 2, kChina), "c");
}

TEST(MessageFile, TriesNothingBehindAnEmptyBlockOfTheThread) {
  const Bytes file =
      MakeStringTableFile({{0, kChina, {}}, MakeBlock(kUnitedStates, {{1, u"one"}})});
  EXPECT_EQ(MessageFile(file).Text(1, kChina, 0), kUnfilled);
  EXPECT_EQ(Text(file, 1, kUnitedStates), "one");
}

TEST(MessageFile, PassesOverAnEmptyBlockOfAnyOtherLanguage) {
  const Bytes file = MakeStringTableFile({{0, 0, {}}, MakeBlock(kUnitedStates, {{1, u"one"}})});
  EXPECT_EQ(Text(file, 1, kChina), "one");
  EXPECT_EQ(Text(file, 1, 0), "one");
}

TEST(MessageFile, KnowsABlockThatIsTooShort) {
  StringBlock cut = MakeBlock(kChina, {{0, u"zero"}, {1, u"one"}, {3, u"three"}});
  cut.bytes.resize(2 + 8 + 2 + 4);  // "zero" whole, of "one" only two letters
  const Bytes file =
      MakeStringTableFile({cut, MakeBlock(kUnitedStates, {{1, u"English"}, {3, u"English"}})});
  EXPECT_EQ(Text(file, 0, kChina), "zero");
  EXPECT_EQ(MessageFile(file).Text(1, kChina, 0), kUnfilled);
  EXPECT_EQ(MessageFile(file).Text(3, kChina, 0), kUnfilled);
  EXPECT_EQ(Text(file, 3, kUnitedStates), "English");
  EXPECT_EQ(Text(file, 3, kTaiwan), "English");
}

TEST(MessageFile, HoldsNothingWithoutBytes) {
  EXPECT_EQ(MessageFile().Text(7, kChina, 0), u"");
  EXPECT_EQ(MessageFile(Bytes{}).Text(7, kChina, 0), u"");
  EXPECT_EQ(MessageFile(Bytes(4096)).Text(7, kChina, 0), u"");
}

/// Reads texts of a damaged file: any may come, but none that the file has no room for.
void ReadAll(const Bytes& file, std::initializer_list<std::int32_t> numbers) {
  const MessageFile messages(file);
  const std::size_t most = std::max(file.size(), kUnfilled.size());
  for (const std::int32_t number : numbers)
    for (const LanguageId thread : {kChina, kBritain, LanguageId{0}})
      EXPECT_LE(messages.Text(number, thread, kGermany).size(), most);
}

/// A copy in an allocation of its own size, so that a sanitizer sees a read behind its end.
Bytes Copy(const Bytes& file, std::size_t size) {
  return {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)};
}

TEST(MessageFile, GivesOnlyTrueTextsWhenItIsCut) {
  const std::set<std::string> small{"", "France", "United States", "China", "neutral", "Germany"};
  const Bytes many = FileOfManyLanguages();
  for (std::size_t size = 0; size < many.size(); ++size)
    for (const LanguageId thread : {kChina, kGermany, kFrance, LanguageId{0}})
      EXPECT_EQ(small.count(Text(Copy(many, size), 7, thread)), 1U) << size;
  const std::set<std::string> real{"", "thisReport", "本报表"};
  const Bytes file = ReadRealFile();
  for (std::size_t size = 0; size < file.size(); ++size) {
    const Bytes cut = Copy(file, size);
    for (const LanguageId thread : {kChina, kUnitedStates, LanguageId{0}})
      EXPECT_EQ(real.count(Text(cut, kMsgThisReport, thread)), 1U) << size;
  }
}

TEST(MessageFile, SurvivesEveryChangedByte) {
  for (const PeWidth width : {PeWidth::k32, PeWidth::k64}) {
    const Bytes file = MakeStringTableFile(
        {MakeBlock(kChina, {{7, u"seven"}}), MakeBlock(kUnitedStates, {{7, u"English"}}),
         MakeBlock(kUnitedStates, {{6260, u"other"}})},
        width);
    for (std::size_t at = 0; at < file.size(); ++at) {
      for (const unsigned pattern : {0x01U, 0x80U, 0xFFU, 0x55U}) {
        Bytes changed = Copy(file, file.size());
        changed[at] ^= static_cast<std::byte>(pattern);
        ReadAll(changed, {7, 6260});
      }
    }
  }
}

TEST(MessageFile, SurvivesEveryChangedByteOfTheRealFile) {
  const Bytes file = ReadRealFile();
  Bytes changed = Copy(file, file.size());
  for (std::size_t at = 0; at < file.size(); ++at) {
    for (const unsigned pattern : {0xFFU, 0x80U}) {
      changed[at] = file[at] ^ static_cast<std::byte>(pattern);
      ReadAll(changed, {6101, 6297});
    }
    changed[at] = file[at];
  }
}

TEST(MessageFile, SurvivesHugeNumbersEverywhere) {
  const Bytes file = FileOfManyLanguages();
  for (std::size_t at = 0; at + 4 <= file.size(); ++at) {
    for (const unsigned last : {0xFFU, 0x7FU}) {
      Bytes changed = Copy(file, file.size());
      for (std::size_t i = 0; i < 4; ++i) changed[at + i] = std::byte{0xFF};
      changed[at + 3] = static_cast<std::byte>(last);
      ReadAll(changed, {7});
    }
  }
}

TEST(MessageTexts, ComeFromTheFileBesideTheBinary) {
  SetThreadLanguage(u"en-US");
  EXPECT_EQ(U8(LoadMessage(6306)), "and");
  EXPECT_EQ(U8(MessageText(kMsgThisReport)), "thisReport");
  SetThreadLanguage(u"zh-CN");
  EXPECT_EQ(U8(LoadMessage(6306)), "且");
  EXPECT_EQ(U8(LoadMessage(1)), "");
  SetThreadLanguage(u"");
}

TEST(MessageTexts, FollowTheLanguageOfEachThread) {
  SetThreadLanguage(u"en-US");
  std::string other;
  std::thread([&other] {
    SetThreadLanguage(u"zh-CN");
    other = U8(LoadMessage(kMsgThisReport));
  }).join();
  EXPECT_EQ(other, "本报表");
  EXPECT_EQ(U8(LoadMessage(kMsgThisReport)), "thisReport");
  SetThreadLanguage(u"");
}

}  // namespace
}  // namespace ORKBASE
