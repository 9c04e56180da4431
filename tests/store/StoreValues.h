// Values of a store as texts that a test can read and compare.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "RuleStore.h"
#include "Utf8.h"

/// `NULL`, `int 5`, `real 0.5`, `text abc`, `bytes 00ff`.
inline std::string Shown(const ORKDB::StoreValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    return "int " + std::to_string(*whole);
  }
  char text[40];
  if (const auto* fraction = std::get_if<double>(&value)) {
    std::snprintf(text, sizeof(text), "real %.17g", *fraction);
    return text;
  }
  if (const auto* units = std::get_if<std::u16string>(&value)) return "text " + U8(*units);
  if (const auto* bytes = std::get_if<ORKDB::StoreBytes>(&value)) {
    std::string shown = "bytes ";
    for (const std::byte byte : *bytes) {
      std::snprintf(text, sizeof(text), "%02x", std::to_integer<unsigned>(byte));
      shown += text;
    }
    return shown;
  }
  return "NULL";
}

/// The rows as `value,value;value,value`.
inline std::string Shown(ORKDB::StoreRows& rows) {
  std::string shown;
  for (ORKDB::StoreRow row; rows.Next(row);) {
    if (!shown.empty()) shown += ';';
    for (std::size_t i = 0; i < row.size(); ++i) shown += (i > 0 ? "," : "") + Shown(row[i]);
  }
  return shown;
}

inline std::string Selected(ORKDB::StoreConnection& store, const std::u16string& statement) {
  return Shown(*store.Select(statement));
}

/// What the work throws, as `outage TEXT` or `refusal TEXT`; `nothing`.
inline std::string FailureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const ORKDB::StoreFailure& failure) {
    return (failure.IsOutage() ? "outage " : "refusal ") + U8(failure.Text());
  }
  return "nothing";
}
