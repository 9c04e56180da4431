// What shells complete: through the scripts that the tool prints for them, in the shells
// themselves.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace {

/// What a program prints; nothing where it fails.
std::string OutputOf(const std::string& command) {
  std::string out;
  std::FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return out;
  std::array<char, 4096> block;
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe)) {
    out.append(block.data(), size);
  }
  return pclose(pipe) == 0 ? out : "";
}

/// A word as a shell reads it back.
std::string Quoted(const std::string& word) {
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string List(const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& word : words) list += Quoted(word) + " ";
  return list;
}

/// What the function of the script replies to words as that shell splits them; the last one is
/// being typed. Options of the completion come first, in brackets.
std::string Bash(std::vector<std::string> words) {
  words.insert(words.begin(), "orkrule");
  const std::string script = "unset ORKRULE_DB; source <(" + Quoted(ORKRULE_TOOL) +
                             " completion bash)\n"
                             "compopt() { echo \"[$2]\"; }\n"
                             "COMP_WORDS=(" +
                             List(words) +
                             ")\n"
                             "COMP_CWORD=" +
                             std::to_string(words.size() - 1) +
                             "\n"
                             "_orkrule " +
                             Quoted(ORKRULE_TOOL) +
                             "\n"
                             "((${#COMPREPLY[@]})) && printf '%s\\n' \"${COMPREPLY[@]}\"; true\n";
  return OutputOf("LC_ALL=C bash --norc --noprofile -c " + Quoted(script));
}

TEST(Completion, InBashKnowsCommandsOptionsAndValues) {
  struct Row {
    std::vector<std::string> words;
    const char* replies;
  };
  const Row rows[] = {
      // clang-format off
      {{"ver"},                               "verify\n"},
      {{"te"},                                ""},
      {{"sql", "--dial"},                     "--dialect\n"},
      {{"--ver"},                             "--version\n"},
      {{"sql", "--type", "n"},                "number\n"},
      {{"sql", "--type", "=", "n"},           "number\n"},
      {{"sql", "--type", "="},                "auto\nnumber\ntext\ndate\nlogic\nany\npicture\nlink\n"},
      {{"sql", "--dialect", "or"},            "[nospace]\noracle\n"},
      {{"sql", "--dialect", "dm,o"},          "[nospace]\ndm,oracle\ndm,opengauss\n"},
      {{"rename", "--dialect", "k"},          "kingbase\n"},
      {{"sql", "--language", "z"},            "zh-CN\n"},
      {{"check", "--color", "al"},            "always\n"},
      {{"vocabulary", "o"},                   "operators\n"},
      {{"vocabulary", "operators", ""},       ""},
      {{"completion", ""},                    "bash\nzsh\n"},
      {{"help", "voc"},                       "vocabulary\n"},
      {{"help", "sql", ""},                   ""},
      {{"sql", "--file", "x"},                "[default]\n"},
      {{"sql", "--db", "x"},                  "[default]\n"},
      {{"sql", "--db", "=", "x"},             "[default]\n"},
      {{"sql", "--user", "x"},                ""},
      {{"sql", "1", "2"},                     ""},
      {{"refer"},                             ""},  // hidden from the help, too
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Bash(row.words), row.replies) << testing::PrintToString(row.words);
  }
}

TEST(Completion, InBashKnowsTheWordsOfRulesAndTheNamesOfTheDatabase) {
  const std::string db = kSampleDb;
  struct Row {
    std::vector<std::string> words;
    const char* replies;
  };
  const Row rows[] = {
      // clang-format off
      {{"sql", "1 + ro"},                                           "[nospace]\n1\\ +\\ ROUND\n"},
      {{"sql", "\"1 + ro"},                                         "[nospace]\n1 + ROUND\n"},
      {{"sql", "'1 + ro"},                                          "[nospace]\n1 + ROUND\n"},
      {{"sql", "--", "-ro"},                                        "[nospace]\n-ROUND\n"},
      {{"sql", "--db", db, "\"1 + Orders.Am"},                      "[nospace]\n1 + Orders.Amount\n"},
      {{"sql", "--db", "=", db, "\"1 + Orders.am"},                 "[nospace]\n1 + Orders.Amount\n"},
      {{"sql", "--db", "\"" + db + "\"", "Orders.Am"},              "[nospace]\nOrders.Amount\n"},
      {{"sql", "--db", db, "--type", "text", "\"Customer.Na"},      "[nospace]\nCustomer.Name\n"},
      {{"sql", "--language", "zh-CN", "--db", db, "\"T.b > 1 \xE4\xB8\x94 T.b"}, "[nospace]\nT.b > 1 \xE4\xB8\x94 T.b\n"},
      {{"strip", "--db", db, "--tables", "Orders,Sto"},             "[nospace]\nOrders,Stock\n"},
      {{"rename", "--db", db, "--tables", "Orders", ":", "Sales,Sto"}, "[nospace]\nSales,Stock\n"},
      {{"rename", "--db", db, "--tables", "Orders", ":", "Sto"},    "[nospace]\n"},
      {{"rename", "--db", db, "--fields", "Orders.Am"},             "[nospace]\nOrders.Amount\n"},
      {{"fields", "--db", db, "Ord"},                               "Orders\n"},
      {{"tables", "--db", db, "Ord"},                               "Orders\n"},
      {{"sql", "--db", "/nowhere/x.db", "T."},                      ""},
      {{"fields", "T"},                                             ""},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Bash(row.words), row.replies) << testing::PrintToString(row.words);
  }
  const std::string fields = Bash({"sql", "--db", db, "\"T.a > 1 and Stock"});
  EXPECT_NE(fields.find("T.a > 1 and Stock.Count\n"), fields.npos) << fields;
}

TEST(Completion, TakesTheDatabaseOfTheEnvironment) {
  const ToolResult result =
      RunTool({"complete-line", "sql", "Orders.Am"}, "", {"ORKRULE_DB=" + kSampleDb});
  EXPECT_EQ(result.out, "parts\nOrders.Amount\n");
  EXPECT_EQ(result.err, "");
}

TEST(Completion, OfAnyWordsEndsInSilence) {
  const std::string db = "--db=" + kSampleDb;
  const std::vector<std::vector<std::string>> lines = {
      {},
      {""},
      {"--"},
      {"-"},
      {"--="},
      {"sql", "--type"},
      {"sql", "--port", "x", "T."},
      {"sql", "--nonsense=", "1"},
      {"sql", "'"},
      {"sql", "\\"},
      {"sql", "\xFF"},
      {"sql", db, std::string(100'000, '(')},
      {"sql", db, "T.a\n + T."},
      {"rename", db, "--fields", "..."},
  };
  for (const std::vector<std::string>& words : lines) {
    std::vector<std::string> arguments = words;
    arguments.insert(arguments.begin(), "complete-line");
    const ToolResult result = RunTool(arguments);
    EXPECT_EQ(result.status, 0) << testing::PrintToString(words).substr(0, 200);
    EXPECT_EQ(result.err, "");
  }
}

TEST(Completion, InZshOffersWhatTheToolFinds) {
  if (OutputOf("command -v zsh").empty()) GTEST_SKIP() << "there is no zsh on this machine";
  const auto zsh = [](const std::vector<std::string>& words) {
    const std::string script =
        "compdef() { :; }\n"
        "compset() { :; }\n"
        "_files() { print -r -- '[files]'; }\n"
        "compadd() { local -a options; while [[ $1 != -- ]]; do options+=($1); shift; done\n"
        "  [[ ${options[1]} == -S ]] && print -r -- '[nospace]'\n"
        "  print -rl -- ${(P)2}; }\n"
        "source <(" +
        Quoted(ORKRULE_TOOL) +
        " completion zsh)\n"
        "words=(" +
        Quoted(ORKRULE_TOOL) + " " + List(words) +
        ")\n"
        "CURRENT=$#words\n"
        "unset ORKRULE_DB\n"
        "_orkrule\n";
    return OutputOf("LC_ALL=C zsh -f -c " + Quoted(script));
  };
  EXPECT_EQ(zsh({"ver"}), "verify\n");
  EXPECT_EQ(zsh({"sql", "--type=n"}), "--type=number\n");
  EXPECT_EQ(zsh({"sql", "--dialect", "dm,o"}), "[nospace]\ndm,oracle\ndm,opengauss\n");
  EXPECT_EQ(zsh({"sql", "--db", kSampleDb, "\"1 + Orders.Am"}), "[nospace]\n1 + Orders.Amount\n");
  EXPECT_EQ(zsh({"sql", "--file", "x"}), "[files]\n");
}

TEST(Completion, ScriptsAreValid) {
  EXPECT_EQ(OutputOf(Quoted(ORKRULE_TOOL) + " completion bash | bash -n && echo good"), "good\n");
  const ToolResult unknown = RunTool({"completion", "bsh"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_NE(unknown.err.find("did you mean \"bash\"?"), unknown.err.npos) << unknown.err;
}

}  // namespace
