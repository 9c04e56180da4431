// Golden files: blocks of one rule and the SQL that it becomes in each database, derived by hand.
//
//   # a remark
//   modes noIsNull                  for all blocks of the file, when it stands before the first
//   == title
//   modes rt=7 twoParts             optional, replaces those of the file
//   logic: T.a = 1                  type and rule
//   default |[T].a = 1|             one or more databases, or `rest`, or `all`; blanks show
//   oracle A |T.a = 1|              in the two-text form two lines, A and B
//   oracle error: 6256 The text.    the message of an `Mx_Exception`
//   rest throws: out_of_range       a standard exception
//   all refused: 6260 The text.     a rule that does not verify
//
// Modes: noIsNull, twoParts, formDataIn=N, rt=ID, rtId=TEXT, tables=A,B, cax=TYPE, language=TAG,
// locale=NAME.
#pragma once

#include "MxExpression.h"
#include "MxRuleEnums.h"

#include <map>
#include <string>
#include <vector>

/// What a rule comes to: the text or the two texts, or a failure such as "error: 6256 ...".
struct GoldenResult {
  std::string a;
  std::string b;
  std::string failure;
  bool operator==(const GoldenResult&) const = default;
};

struct GoldenBlock {
  std::string file;
  int line = 0;  ///< of the title
  std::string title;
  std::map<std::string, std::string> modes;
  ORKBASE::MXRULE_DATATYPE type = ORKBASE::kNoDataType;
  std::string rule;
  std::map<std::string, GoldenResult> expected;  ///< by the name of the dialect, all of them

  bool Has(const std::string& mode) const { return modes.count(mode) != 0; }
  std::string Mode(const std::string& mode) const { return Has(mode) ? modes.at(mode) : ""; }
};

/// The golden files of the source tree, sorted by name.
std::vector<std::string> GoldenFiles();
/// Throws, naming file and line, for a file that breaks the form above or leaves a database out.
std::vector<GoldenBlock> ReadGoldenFile(const std::string& path);
/// Connects an engine to the tables of the golden files and sets the modes of a block.
void PrepareForBlock(ORKBASE::MxExpression& rules, const GoldenBlock& block,
                     ORKBASE::ORKDB_DSType_ENUM dsType);
/// Verifies and translates the rule of a block for one database.
GoldenResult RunGoldenBlock(const GoldenBlock& block, ORKBASE::ORKDB_DSType_ENUM dsType);
