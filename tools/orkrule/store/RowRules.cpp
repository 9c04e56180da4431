#include "RowRules.h"

#include "Options.h"
#include "Output.h"
#include "StoreValues.h"
#include "Text.h"

#include <algorithm>

namespace ORKTOOL {
namespace {

using ORKBASE::StoredRule;

struct TextColumn {
  std::u16string_view name;
  std::optional<std::u16string> StoredRule::*member;
  bool isName;  ///< blanks at its end, which columns of a fixed width have, are not its own
};

// clang-format off
constexpr TextColumn kTextColumns[] = {
    {u"expression", &StoredRule::expression,     false},
    {u"document",   &StoredRule::document,       false},
    {u"template",   &StoredRule::reportTemplate, true},
    {u"cax",        &StoredRule::cax,            true},
    {u"language",   &StoredRule::language,       true},
};
// clang-format on

const TextColumn& RowOf(std::optional<std::u16string> StoredRule::*member) {
  const auto is = [member](const TextColumn& row) { return row.member == member; };
  return *std::find_if(std::begin(kTextColumns), std::end(kTextColumns) - 1, is);
}

void CutBlanks(std::u16string& text) {
  text.erase(text.find_last_not_of(u' ') + 1);
}

std::string Listed(const std::vector<std::u16string>& names) {
  std::string list;
  for (const std::u16string& name : names) {
    list.append(list.empty() ? "" : ", ").append(OneLine(name));
  }
  return list;
}

std::u16string_view BaseName(std::u16string_view path) {
  return path.substr(path.find_last_of(u'/') + 1);
}

std::u16string_view Stem(std::u16string_view path) {
  const std::u16string_view base = BaseName(path);
  const std::size_t point = base.find_last_of(u'.');
  return point == 0 ? base : base.substr(0, point);
}

std::u16string_view Whole(std::u16string_view path) {
  return path;
}

}  // namespace

StoreColumns::StoreColumns(std::vector<std::u16string> names) : names_(std::move(names)) {
  const std::optional<std::size_t> id = Find(u"id");
  if (!id) {
    throw Failure{kBadUsage, "the query of --select has no column id; it has: " + Listed(names_)};
  }
  if (!Find(u"expression") && !Find(u"document")) {
    throw Failure{
        kBadUsage,
        "the query of --select has no column expression and no column document; it has: " +
            Listed(names_)};
  }
  id_ = *id;
}

std::optional<std::size_t> StoreColumns::Find(std::u16string_view name) const {
  const auto is = [name](const std::u16string& each) { return IsSameName(each, name); };
  const auto at = std::find_if(names_.begin(), names_.end(), is);
  if (at == names_.end()) return std::nullopt;
  return static_cast<std::size_t>(at - names_.begin());
}

std::vector<ORKBASE::RuleDialect> StoreColumns::SqlDialects() const {
  std::vector<ORKBASE::RuleDialect> dialects;
  for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
    if (SqlOf(dialect)) dialects.push_back(dialect);
  }
  return dialects;
}

std::optional<std::size_t> StoreColumns::SqlOf(const ORKBASE::RuleDialect& dialect) const {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const ORKBASE::RuleDialect* const named = DialectOfColumn(names_[i]);
    if (named != nullptr && named->number == dialect.number) return i;
  }
  return std::nullopt;
}

const ORKBASE::RuleDialect* DialectOfColumn(std::u16string_view name) {
  const bool isSql = IsSameName(name.substr(0, kSqlColumn.size()), kSqlColumn);
  return isSql ? ORKBASE::FindRuleDialect(name.substr(kSqlColumn.size())) : nullptr;
}

RowRules::RowRules(const StoreColumns& columns, ORKBASE::MXRULE_DATATYPE type,
                   const ORKBASE::UpkeepSettings& settings,
                   const std::vector<ORKBASE::RuleDialect>& dialects)
    : columns_(columns), type_(type), typeColumn_(columns.Find(u"type")) {
  for (const TextColumn& text : kTextColumns) {
    texts_.emplace_back(columns.Find(text.name), text.member);
  }
  for (const ORKBASE::RuleDialect& dialect : dialects) sql_.push_back(columns.SqlOf(dialect));
  for (const ORKBASE::UpkeepCax& cax : settings.cax) documents_.push_back(cax.name);
}

std::optional<StoredRule> RowRules::RuleOf(const ORKDB::StoreRow& row,
                                           ORKBASE::UpkeepFinding& problem) const {
  problem.state = ORKBASE::kUnreadableState;
  StoredRule rule;
  if (std::holds_alternative<std::monostate>(row[columns_.Id()])) {
    problem.text = u"The column id has no value.";
    return std::nullopt;
  }
  if (!TakeType(row, rule.type, problem.text)) return std::nullopt;
  for (const auto& [column, member] : texts_) {
    if (!TakeText(row, column, rule.*member, problem.text)) return std::nullopt;
    if ((rule.*member) && RowOf(member).isName) CutBlanks(*(rule.*member));
  }
  if (rule.cax) rule.cax = DocumentName(*rule.cax);
  for (const Column& column : sql_) {
    if (!TakeText(row, column, rule.sql.emplace_back(), problem.text)) return std::nullopt;
  }
  return rule;
}

bool RowRules::TakeText(const ORKDB::StoreRow& row, Column column,
                        std::optional<std::u16string>& text, std::u16string& problem) const {
  if (!column) return true;
  text = TextOfValue(row[*column]);
  if (!std::holds_alternative<ORKDB::StoreBytes>(row[*column])) return true;
  problem = u"The column " + columns_.Names()[*column] + u" holds bytes, not text.";
  return false;
}

bool RowRules::TakeType(const ORKDB::StoreRow& row, ORKBASE::MXRULE_DATATYPE& type,
                        std::u16string& problem) const {
  type = type_;
  if (!typeColumn_) return true;
  std::optional<std::u16string> text = TextOfValue(row[*typeColumn_]);
  if (!text) {
    problem = u"The column type has no value.";
    return false;
  }
  CutBlanks(*text);
  std::string name = ToUtf8(*text);
  std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  const std::optional<ORKBASE::MXRULE_DATATYPE> named = TypeOf(name);
  if (named) type = *named;
  if (!named) problem = u"'" + *text + u"' is neither the name nor the number of a type.";
  return named.has_value();
}

/// The name of the one document that is meant by a whole path, by a file's name, or by that without
/// its extension. What means none or several stays as it is.
std::u16string RowRules::DocumentName(const std::u16string& name) const {
  for (const auto part : {Whole, BaseName, Stem}) {
    const auto is = [&](const std::u16string& path) { return part(path) == name; };
    const auto count = std::count_if(documents_.begin(), documents_.end(), is);
    if (count == 1) return *std::find_if(documents_.begin(), documents_.end(), is);
    if (count > 1) break;
  }
  return name;
}

}  // namespace ORKTOOL
