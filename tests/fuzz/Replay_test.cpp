// Replays generated input through the fuzz targets: random bytes, random words of the language, and
// documents with pieces cut, doubled and changed. The seeds are fixed, so a failure comes again.
#include "FuzzTargets.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kRuns = 2000;

const std::vector<std::string>& Words() {
  static const std::vector<std::string> words = {"(",
                                                 ")",
                                                 ",",
                                                 "+",
                                                 "-",
                                                 "*",
                                                 "/",
                                                 "=",
                                                 "<>",
                                                 ">=",
                                                 "*=",
                                                 "&",
                                                 "and",
                                                 "or",
                                                 "not",
                                                 "in",
                                                 "not_in",
                                                 "between",
                                                 "null",
                                                 "not_null",
                                                 "like",
                                                 "1",
                                                 "2.5",
                                                 "'a'",
                                                 "'2020-1-2'",
                                                 "'",
                                                 "T.a",
                                                 "T.rcid",
                                                 "sum",
                                                 "count1",
                                                 "max",
                                                 "switch",
                                                 "thisSet",
                                                 "IsNull",
                                                 "ToText",
                                                 "ToDate",
                                                 "ToNumber",
                                                 "year",
                                                 "quarter",
                                                 "weekDay",
                                                 "dateAdd",
                                                 "timeInterval",
                                                 "yy",
                                                 "qq",
                                                 "dd",
                                                 "thisYear",
                                                 "lastMonth",
                                                 "fstDayOfYear",
                                                 "RAND",
                                                 "Input.x[N]",
                                                 "Sms.y[S]",
                                                 "sysVar.userName",
                                                 "sysVar.RepState",
                                                 "Constant.Null",
                                                 "'yyyy-mm-dd'",
                                                 "[",
                                                 "]",
                                                 ".",
                                                 "\t",
                                                 "\n",
                                                 "%",
                                                 "中文",
                                                 "1e999"};
  return words;
}

std::string RandomBytes(std::mt19937& random) {
  std::string bytes(random() % 40, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random() & 0xFF);
  return bytes;
}

std::string RandomWords(std::mt19937& random) {
  std::string text;
  for (auto count = random() % 14; count > 0; --count) {
    text += Words()[random() % Words().size()];
    if (random() % 4 != 0) text += ' ';
  }
  return text;
}

/// Calls nested around a constant: much of this verifies.
std::string RandomCall(std::mt19937& random, int depth) {
  if (depth == 0) return random() % 2 ? "1" : "'x'";
  static const std::vector<std::string> calls = {"sum",    "ToText", "max",          "ToNumber",
                                                 "log10",  "length", "fstDayOfYear", "year",
                                                 "ToDate", "IsNull"};
  const std::string& name = calls[random() % calls.size()];
  std::string text = name + "(" + RandomCall(random, depth - 1);
  if (name == "IsNull") text += "," + RandomCall(random, depth - 1);
  return text + ")";
}

const std::string kDocument =
    "<tag primary=\"and\" outDesc=\"and\" symbol=\"20\" dataType=\"4\" content=\"and\" "
    "semanticType=\"0\">\n  <tag primary=\"in\" symbol=\"23\" semanticType=\"0\">"
    "<tag primary=\"T.a\" symbol=\"4\" dataType=\"1\"/><tag primary=\"thisSet\" symbol=\"27\" "
    "semanticType=\"1\"><tag primary=\"items.rcid\" symbol=\"4\"/></tag></tag>\n  "
    "<tag primary=\"&gt;\" symbol=\"19\" semanticType=\"0\" inBrackets=\"1\">"
    "<tag primary=\"switch\" symbol=\"27\" semanticType=\"1\"><tag primary=\"dateAdd\" "
    "symbol=\"27\" semanticType=\"1\"><tag primary=\"qq\" symbol=\"14\"/></tag></tag>"
    "<tag primary=\"count1\" symbol=\"27\" semanticType=\"1\" transType=\"2\"/></tag></tag>";

const std::string kCaxDocument =
    "<dd><tabs><t name=\"t\" dispName=\"t\"><flds><f name=\"f\" dispName=\"f\" dt=\"1\"/>"
    "<f name=\"g\" dispName=\"100%s\" dt=\"9\"/></flds></t></tabs><enums><e name=\"e\" "
    "dispName=\"e\"><v name=\"a|b\" dispName=\"v\" val=\"1|2\"/></e></enums></dd>";

std::string Mutated(std::string text, std::mt19937& random) {
  for (auto count = random() % 4; count > 0 && !text.empty(); --count) {
    const std::size_t at = random() % text.size();
    const std::size_t length = random() % 12;
    switch (random() % 4) {
      case 0:
        text.erase(at, length);
        break;
      case 1:
        text.insert(at, text.substr(random() % text.size(), length));
        break;
      case 2:
        text[at] = static_cast<char>(random() & 0xFF);
        break;
      case 3:
        text.resize(at);
        break;
    }
  }
  return text;
}

TEST(FuzzReplay, RandomBytesAsRules) {
  std::mt19937 random(1);
  for (int i = 0; i < kRuns; ++i) ORKFUZZ::TryRule(RandomBytes(random));
}

TEST(FuzzReplay, RandomWordsAsRules) {
  std::mt19937 random(2);
  for (int i = 0; i < kRuns; ++i) ORKFUZZ::TryRule(RandomWords(random));
}

TEST(FuzzReplay, NestedCallsAsRules) {
  std::mt19937 random(3);
  for (int i = 0; i < kRuns; ++i) {
    ORKFUZZ::TryRule(RandomCall(random, static_cast<int>(random() % 6)));
  }
}

/// A rule text behind the bytes that choose how it is asked about.
std::string AuthoringInput(std::mt19937& random, const std::string& text) {
  std::string bytes(4, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random() & 0xFF);
  return bytes + text;
}

TEST(FuzzReplay, RandomTextsInAnEditor) {
  std::mt19937 random(7);
  for (int i = 0; i < kRuns; ++i) {
    ORKFUZZ::TryAuthoring(AuthoringInput(random, RandomBytes(random)));
    ORKFUZZ::TryAuthoring(AuthoringInput(random, RandomWords(random)));
  }
}

TEST(FuzzReplay, NestedCallsInAnEditor) {
  std::mt19937 random(8);
  for (int i = 0; i < kRuns; ++i) {
    const std::string call = RandomCall(random, static_cast<int>(random() % 6));
    ORKFUZZ::TryAuthoring(AuthoringInput(random, Mutated(call, random)));
  }
}

TEST(FuzzReplay, DocumentsInAnEditor) {
  std::mt19937 random(9);
  for (int i = 0; i < kRuns; ++i) {
    ORKFUZZ::TryAuthoring(AuthoringInput(random, Mutated(kDocument, random)));
  }
}

TEST(FuzzReplay, ChangedDocuments) {
  std::mt19937 random(4);
  for (int i = 0; i < kRuns; ++i) ORKFUZZ::TryDocument(Mutated(kDocument, random));
}

TEST(FuzzReplay, RandomBytesAsDocuments) {
  std::mt19937 random(5);
  for (int i = 0; i < kRuns; ++i) ORKFUZZ::TryDocument(RandomBytes(random));
}

TEST(FuzzReplay, ChangedCaxDocuments) {
  std::mt19937 random(6);
  for (int i = 0; i < kRuns; ++i) ORKFUZZ::TryCaxDocument(Mutated(kCaxDocument, random));
}

}  // namespace
