// What the lexer asks for words: whoever knows them. The lexer itself reads no file and no
// database.
#pragma once

#include <string_view>

#include "MxErrorRecord.h"
#include "MxWord.h"

namespace ORKBASE {

class MxDictionarys;

/// Finds words. Used by one thread at a time.
class WordSource {
 public:
  /// The word with this display form, in any case, or null. Valid until the next call of the engine
  /// begins.
  virtual const MxWord* FindByDesc(std::u16string_view text) const = 0;
  /// Sees to it that the words of a data table can be found. False, with the error, when the table
  /// cannot be loaded.
  virtual bool BindTable(std::u16string_view name, MxErrorRecord& error) = 0;

 protected:
  WordSource() = default;
  WordSource(const WordSource&) = default;
  WordSource& operator=(const WordSource&) = default;
  ~WordSource() = default;
};

/// The dictionary set as the lexer knows it; null for null. Defined where the set is.
WordSource* WordsIn(MxDictionarys* dictionarys) noexcept;

}  // namespace ORKBASE
