// From words to the parsed expression document.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "MxErrorState.h"
#include "MxRuleEnums.h"
#include "MxWord.h"
#include "OrkExport.h"

namespace ORKBASE {

/// Decides whether words form an expression of an expected type. A value class, used by one thread
/// at a time; it needs no dictionary, only words that carry their symbol and type.
class ORKRULE_EXPORT MxParser : public MxErrorState {
 public:
  MxParser();
  MxParser(const MxParser& other);
  MxParser& operator=(const MxParser& other);
  ~MxParser();

  /// On success stores the document (UTF-16, indented, without an XML declaration, characters
  /// beyond ASCII as references) in `document` and returns true. Otherwise false, with number -1,
  /// the text of the failure that got furthest, and `document` untouched.
  bool ParseExpr(MXRULE_DATATYPE expected, const std::vector<MxWord>* words,
                 std::u16string& document);

 private:
  struct ORKRULE_LOCAL State;
  std::unique_ptr<State> state_;
};

}  // namespace ORKBASE
