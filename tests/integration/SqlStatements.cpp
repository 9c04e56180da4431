// Quoted texts are passed over whole, so that a brace or a point inside one means nothing.
#include "SqlStatements.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <regex>
#include <set>
#include <vector>

namespace {

struct Renamed {
  const char* printed;
  const char* known;
};

// clang-format off
constexpr std::array<Renamed, 7> kUnits = {{
    {"' yy')", "' year')"}, {"' mm')", "' month')"}, {"' ww')", "' week')"},  {"' dd')", "' day')"},
    {"' hh')", "' hour')"}, {"' mi')", "' minute')"}, {"' ss')", "' second')"},
}};

/// Tables whose name in rules is not their real one.
constexpr std::array<Renamed, 2> kRealNames = {{{"Stock", "tbl_stock_2019"}, {"Alias", "T"}}};

/// Real tables that tests/data/postgres/tables.sql makes.
constexpr std::array kTables = {
    "Orders", "Customer", "T", "tbl_stock_2019", "客户", "Header", "Lines",
    "K", "n", "is", "items", "Odd", "[Boxed]", "Quoted",
    "t_7_thiscasevar_71", "t_7_thiscasevar_72", "t_a_b_c_thiscasevar_71", "t__thiscasevar_71",
    "##t_7_repvar_72", "##t_8_repvar_82", "##t_a_b_c_repvar_72",
    "t_sysvar_case", "t_sysvar_case_orders", "t_sysvar_case_t",
};

/// Form fields of the sample templates that are no text.
constexpr std::array kNumberFields = {"F1604", "F1702", "F1703", "F3401"};
constexpr std::array kDateFields = {"F1603", "F1704"};
// clang-format on

constexpr const char* kDate = "date '2024-05-17'";
constexpr const char* kMoment = "timestamp '2024-05-17 10:20:30'";
constexpr const char* kNumber = "5";
constexpr const char* kText = "text 'hanna'";

std::string Lower(std::string text) {
  for (char& letter : text) {
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return text;
}

template <typename Names>
bool Holds(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The value for what stands between the braces or angles.
std::string ValueFor(const std::string& name) {
  const std::string lower = Lower(name);
  if (name == "vNow") return kMoment;
  if (name == "vDate" || lower.ends_with("[d]") || Holds(kDateFields, name)) return kDate;
  if (lower.ends_with("[n]") || Holds(kNumberFields, name)) return kNumber;
  return kText;
}

/// Calls `plain` with every piece of the text outside single quotes and joins what it returns.
template <typename Change>
std::string OutsideQuotes(const std::string& sql, Change plain) {
  std::string out;
  std::size_t from = 0;
  while (from < sql.size()) {
    const std::size_t quote = std::min(sql.find('\'', from), sql.size());
    out += plain(sql.substr(from, quote - from));
    const std::size_t end = sql.find('\'', std::min(quote + 1, sql.size()));
    from = end == std::string::npos ? sql.size() : end + 1;
    if (quote < sql.size()) out += sql.substr(quote, from - quote);
  }
  return out;
}

std::string FillPiece(const std::string& piece) {
  static const std::regex mark(R"(\{(v\w+)\}|<([\w.]*(\[\w\])?)>)");
  std::string out;
  auto from = piece.cbegin();
  for (std::sregex_iterator i(piece.begin(), piece.end(), mark), end; i != end; ++i) {
    const std::string name = (*i)[1].matched ? (*i)[1].str() : (*i)[2].str();
    out.append(from, (*i)[0].first);
    // An empty pair of angles is the relation "differs".
    out += name.empty() ? (*i)[0].str() : ValueFor(name);
    from = (*i)[0].second;
  }
  return out.append(from, piece.cend());
}

/// Quoted name of the real table that a name in the text means; empty when there is none. Case
/// counts in a name with quotes.
std::string RealTable(const std::string& printed) {
  const bool quoted = printed.front() == '"';
  std::string name = quoted ? printed.substr(1, printed.size() - 2) : printed;
  const auto isName = [&](const char* known) {
    return quoted ? name == known : Lower(name) == Lower(known);
  };
  const auto renamed = std::find_if(kRealNames.begin(), kRealNames.end(),
                                    [&](const Renamed& row) { return isName(row.printed); });
  if (renamed != kRealNames.end()) name = renamed->known;
  const auto table = std::find_if(kTables.begin(), kTables.end(), isName);
  return table == kTables.end() ? "" : '"' + std::string(*table) + '"';
}

/// Names that stand before a point outside quotes, each once however it is written.
std::vector<std::string> Qualifiers(const std::string& sql) {
  static const std::regex qualifier(
      R"re(("[^"]+"|[A-Za-z_\x80-\xff][\w#\x80-\xff]*)\.[A-Za-z_\x80-\xff"\[])re");
  std::vector<std::string> names;
  std::set<std::string> seen;
  OutsideQuotes(sql, [&](const std::string& piece) {
    for (std::sregex_iterator i(piece.begin(), piece.end(), qualifier), end; i != end; ++i) {
      const std::string name = (*i)[1].str();
      if (seen.insert(name.front() == '"' ? name : '"' + Lower(name) + '"').second) {
        names.push_back(name);
      }
    }
    return std::string();
  });
  return names;
}

bool HasAggregate(const std::string& sql) {
  static const std::regex aggregate(R"(\b(sum|avg|count|max|min|string_agg|listagg)\()",
                                    std::regex::icase);
  return std::regex_search(sql, aggregate);
}

}  // namespace

std::string FillPlaceholders(const std::string& sql) {
  std::string filled = OutsideQuotes(sql, FillPiece);
  for (const Renamed& unit : kUnits) {
    const std::string printed = std::string(unit.printed) + " ::INTERVAL";
    for (std::size_t at = 0; (at = filled.find(printed, at)) != std::string::npos;) {
      filled.replace(at, std::string(unit.printed).size(), unit.known);
    }
  }
  return filled;
}

std::string FromList(const std::string& sql, std::string& keys) {
  std::string list = "date_parts";
  keys = "date_parts.yy";
  for (const std::string& name : Qualifiers(sql)) {
    const std::string table = RealTable(name);
    if (table.empty()) continue;
    list += ", " + table + " as " + name;
    keys += ", " + name + ".rcid";
  }
  return list;
}

std::string QueryOf(const RuleSql& rule) {
  const std::string sql = FillPlaceholders(rule.sql);
  std::string keys;
  const std::string from = " from " + FromList(sql, keys);
  const bool grouped = HasAggregate(sql);
  const std::string by = grouped ? " group by " + keys : "";
  // In brackets the text has to be one whole expression: `a b` would else name a column.
  if (!rule.isCondition) return "select (" + sql + ")" + from + by;
  return "select 1" + from + by + (grouped ? " having (" : " where (") + sql + ")";
}

std::string ResultQueryOf(const RuleSql& rule) {
  const std::string sql = FillPlaceholders(rule.sql);
  std::string keys;
  const std::string from = " from " + FromList(sql, keys);
  if (HasAggregate(sql)) return "select (" + sql + ")::text" + from;
  const std::string key = keys.substr(keys.rfind(' ') + 1);
  const auto joined = [&key](const std::string& value) {
    return "select string_agg(" + value + ", '; ' order by " + key + ")";
  };
  if (rule.isCondition) return joined(key) + from + " where (" + sql + ")";
  return joined("coalesce((" + sql + ")::text, 'NULL')") + from;
}
