// What the facade knows of a translator.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "MxErrorRecord.h"
#include "document/TagTree.h"

namespace ORKBASE {

class MxDictionarys;

/// Turns a parsed expression document into the same tree with an SQL fragment in each node's
/// "text". Made anew for every request, used by one thread at a time; the tree that it works in
/// belongs to its maker and outlives it.
class IMxTranslator {
 public:
  IMxTranslator() = default;
  IMxTranslator(const IMxTranslator&) = delete;
  IMxTranslator& operator=(const IMxTranslator&) = delete;
  virtual ~IMxTranslator() = default;

  /// 0, or -1 with the error pair set and `out` untouched. Throws `Mx_Exception` for what the
  /// database has no form for.
  virtual std::int32_t Translate(std::u16string_view parsed, std::u16string& out) = 0;
  /// Makes the enumerations of the CAX dictionaries known; 0.
  virtual std::int32_t InitCaxEnums() = 0;
  /// Name of the temporary table that holds operands of this kind.
  virtual std::u16string GetTempColumnName(std::int32_t symbol,
                                           std::u16string_view extra) const = 0;
  /// The tree of the last translation, as a reader of its text would find it: the null tag where
  /// the text holds a character that keeps it from being read.
  virtual Tag TranslatedRoot() = 0;

  MxErrorRecord error;                          ///< of the last translation that failed
  const MxDictionarys* dictionaries = nullptr;  ///< not owned
  std::u16string rtId;                          ///< report template; part of temporary names
  std::int32_t formDataIn = 0;                  ///< 1: form fields are read from existing tables
  bool useIsNull = true;                        ///< whether operands get the is-null form
};

}  // namespace ORKBASE
