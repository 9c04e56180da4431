// Short ways to make and show words for the tests of the dictionaries.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Utf8.h"
#include "dictionary/MxDictionarys.h"

inline ORKBASE::MxWord WordOf(std::u16string primary, std::u16string outDesc,
                              std::int32_t symbol = ORKBASE::kDataFieldSymbol) {
  ORKBASE::MxWord word;
  word.primary = std::move(primary);
  word.outDesc = std::move(outDesc);
  word.symbol = symbol;
  return word;
}

/// The canonical spelling that a display form leads to, "-" for none.
inline std::string ByDesc(const ORKBASE::MxDictionarys& set, std::u16string_view text) {
  const ORKBASE::MxWord* word = set.FindByDesc(text);
  return word ? U8(word->primary) : "-";
}
inline std::string ByPrimary(const ORKBASE::MxDictionarys& set, std::u16string_view text) {
  const ORKBASE::MxWord* word = set.FindByPrimary(text);
  return word ? U8(word->primary) : "-";
}
inline std::string ByDesc(const ORKBASE::MxDictionary& dictionary, std::u16string_view text) {
  const ORKBASE::MxWord* word = dictionary.FindByDesc(ORKBASE::LookupKey(text));
  return word ? U8(word->primary) : "-";
}
inline std::string ByPrimary(const ORKBASE::MxDictionary& dictionary, std::u16string_view text) {
  const ORKBASE::MxWord* word = dictionary.FindByPrimary(ORKBASE::LookupKey(text));
  return word ? U8(word->primary) : "-";
}

/// The word with a canonical spelling; an empty one, and a failure of the test, without it.
inline ORKBASE::MxWord Word(const ORKBASE::MxDictionarys& set, std::u16string_view primary) {
  const ORKBASE::MxWord* word = set.FindByPrimary(primary);
  EXPECT_NE(word, nullptr) << U8(primary);
  return word ? *word : ORKBASE::MxWord();
}

/// All words of a dictionary in order, "-" without one.
inline std::string WordsOf(const ORKBASE::MxDictionarys& set, std::u16string_view key) {
  const ORKBASE::MxDictionary* dictionary = set.Find(key);
  if (!dictionary) return "-";
  std::string out;
  for (const ORKBASE::MxWord* word : dictionary->SortedWords()) {
    if (!out.empty()) out += ' ';
    out += U8(word->primary);
    if (word->outDesc != word->primary) out += "=" + U8(word->outDesc);
  }
  return out;
}

/// The keys of a set but for the base vocabulary's.
inline std::string KeysOf(const ORKBASE::MxDictionarys& set) {
  std::string out;
  for (const auto& [key, dictionary] : set.dictionaries()) {
    if (key == u"base") continue;
    if (!out.empty()) out += ' ';
    out += U8(key);
    if (dictionary->name != key) out += "(" + U8(dictionary->name) + ")";
  }
  return out;
}
