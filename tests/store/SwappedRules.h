// Stores of rules for tests of changes, and a change that shows when it is made twice: it swaps the
// letters A and B.
#pragma once

#include <unistd.h>

#include <string>
#include <vector>

#include "SampleDatabase.h"
#include "StoreChanges.h"
#include "Utf8.h"

inline std::u16string Swapped(std::u16string text) {
  for (char16_t& unit : text) {
    if (unit == u'A' || unit == u'B') unit = unit == u'A' ? u'B' : u'A';
  }
  return text;
}

/// SQL that makes so many rules: 1 `A.x1`, 2 `B.x2`, 3 `A.x3` and so on.
inline std::string RulesTable(int count, const std::string& textType = "text") {
  std::string sql =
      "create table rules (id integer, expression " + textType + ", note " + textType + ");\n";
  for (int i = 1; i <= count; ++i) {
    const std::string id = std::to_string(i);
    sql += "insert into rules values (" + id + ", '" + (i % 2 == 1 ? "A.x" : "B.x") + id + "', 'n" +
           id + "');\n";
  }
  return sql;
}

inline ORKDB::ChangeSettings SwapSettings(const std::u16string& server,
                                          std::int64_t commitEvery = 0,
                                          const std::u16string& ledger = u"") {
  ORKDB::ChangeSettings settings;
  settings.store.server = server;
  settings.store.loadSeconds = 5;
  settings.select = u"select id, expression from rules";
  settings.update = u"update rules set expression = :expression where id = :id";
  settings.guarded = {u"expression"};
  settings.commitEvery = commitEvery;
  settings.ledger = ledger;
  settings.run = u"swap A:B";
  return settings;
}

/// Adds the swap of every rule that the store has now, as a run does that begins.
template <typename Changes>
void AddSwaps(Changes& changes, const ORKDB::ChangeSettings& settings) {
  const auto store = ORKDB::OpenStore(settings.store);
  const auto rows = store->Select(u"select id, expression from rules order by id");
  for (ORKDB::StoreRow row; rows->Next(row);) {
    const auto* text = std::get_if<std::u16string>(&row[1]);
    ORKDB::StoreValue swapped;
    if (text != nullptr) swapped = Swapped(*text);
    changes.Add({row[0], {row[1]}, {swapped, row[0]}});
  }
}

/// `1 A.x1;2 B.x2`
inline std::string RulesIn(const ORKDB::ChangeSettings& settings) {
  const auto store = ORKDB::OpenStore(settings.store);
  const auto rows = store->Select(u"select id, expression from rules order by id, note");
  std::string shown;
  for (ORKDB::StoreRow row; rows->Next(row);) {
    const auto* id = std::get_if<std::int64_t>(&row[0]);
    const auto* text = std::get_if<std::u16string>(&row[1]);
    shown += (shown.empty() ? "" : ";") + (id != nullptr ? std::to_string(*id) : "?") + " " +
             (text != nullptr ? U8(*text) : "NULL");
  }
  return shown;
}

/// The rules of `RulesTable` after one swap.
inline std::string SwappedOnce(int count) {
  std::string shown;
  for (int i = 1; i <= count; ++i) {
    const std::string id = std::to_string(i);
    shown += (i > 1 ? ";" : "") + id + (i % 2 == 1 ? " B.x" : " A.x") + id;
  }
  return shown;
}

/// `3 written, 1 before; left 2 changed, 4 gone; not complete`
inline std::string Shown(const ORKDB::ChangeReport& report) {
  const char* const kReasons[] = {" changed", " gone", " not unique"};
  std::string shown = std::to_string(report.written) + " written";
  if (report.doneBefore > 0) shown += ", " + std::to_string(report.doneBefore) + " before";
  if (report.leftCount > 0) shown += "; left";
  for (const ORKDB::LeftChange& left : report.left) {
    const auto* id = std::get_if<std::int64_t>(&left.id);
    shown += (shown.ends_with("left") ? " " : ", ") + (id != nullptr ? std::to_string(*id) : "?") +
             kReasons[left.reason];
  }
  return shown + (report.isComplete ? "" : "; not complete");
}

inline bool Always(const ORKDB::ChangeReport&) {
  return true;
}

/// A path for a ledger; the file goes with the object.
struct LedgerPath {
  explicit LedgerPath(const TempDatabase& file) : path(file.Path() + ".ledger") {}
  ~LedgerPath() { unlink(path.c_str()); }
  LedgerPath(const LedgerPath&) = delete;
  LedgerPath& operator=(const LedgerPath&) = delete;

  std::u16string Text() const { return U16(path); }

  const std::string path;
};
