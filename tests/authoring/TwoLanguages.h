// Engines over the same tables in English and in Chinese, and the calls of an editor over one of
// them.
#pragma once

#include "MxExpression.h"
#include "RuleAuthoring.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

constexpr const char16_t* kLanguages[] = {u"en", u"zh-CN"};

/// Loads what a test wants into an engine; runs in the language of the engine.
using Loading = std::function<void(ORKBASE::MxExpression&)>;

/// An engine that was made and has loaded under a language, and answers under it.
class SpokenEngine {
 public:
  SpokenEngine(std::u16string tag, const TempDatabase& database, const Loading& load)
      : tag_(std::move(tag)), engine_(Make(database, load)) {}

  /// The document, or the error between bars where the rule is refused.
  std::u16string Verify(ORKBASE::MXRULE_DATATYPE type, const std::u16string& rule) {
    const ScopedLanguage language(tag_);
    std::u16string document;
    if (engine_.Verify(type, rule, document)) return document;
    return u"|" + engine_.errDescription() + u"|";
  }

  const std::u16string& Tag() const { return tag_; }
  ORKBASE::MxExpression& Engine() { return engine_; }

 private:
  ORKBASE::MxExpression Make(const TempDatabase& database, const Loading& load) const {
    const ScopedLanguage language(tag_);
    ORKBASE::MxExpression engine;
    ConnectTo(engine, database);
    if (load) load(engine);
    EXPECT_EQ(engine.errNumber(), 0) << U8(engine.errDescription());
    return engine;
  }

  std::u16string tag_;
  ORKBASE::MxExpression engine_;
};

/// The text of a document that `Verify` gave, without what tells how words were written.
inline std::u16string WithoutSpelling(std::u16string document) {
  for (const std::u16string_view name : {u" outDesc=\"", u" content=\""}) {
    std::u16string rest;
    std::size_t from = 0;
    for (std::size_t at; (at = document.find(name, from)) != document.npos;) {
      rest.append(document, from, at - from);
      from = document.find(u'"', at + name.size()) + 1;
    }
    document = rest.append(document, from, document.npos);
  }
  return document;
}

inline bool IsRefused(std::u16string_view document) {
  return document.starts_with(u'|');
}
