#include "NameCase.h"

#include "Text.h"

#include "MxLexicalAnalyzer.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace ORKTOOL {
namespace {

std::u16string Lowered(std::u16string_view text) {
  std::u16string lowered(text);
  for (char16_t& unit : lowered) unit = static_cast<char16_t>(u_tolower(unit));
  return lowered;
}

std::vector<Stretch> PiecesOf(std::u16string_view text, Stretch token) {
  std::vector<Stretch> pieces;
  std::size_t begin = token.offset;
  const std::size_t end = token.offset + token.length;
  for (std::size_t at = begin; at < end; ++at) {
    if (text[at] != u'.') continue;
    pieces.push_back({begin, at - begin});
    begin = at + 1;
  }
  pieces.push_back({begin, end - begin});
  return pieces;
}

/// The name that a word would be but for its case; null where it is one, or none.
template <typename Names>
const std::u16string* OtherCase(std::u16string_view word, const Names& names, NamesFound& found) {
  const auto known = names.find(Lowered(word));
  if (known == names.end()) return nullptr;
  const auto same = std::ranges::find(known->second, word);
  if (same == known->second.end()) return &known->second.front();
  found.exact.insert(*same);
  return nullptr;
}

std::u16string_view TextOf(Stretch stretch, const NamesFound& found) {
  return std::u16string_view(found.text).substr(stretch.offset, stretch.length);
}

/// Notes a word, and gives it the case of the name, which is as long as it.
void Tell(Stretch word, const std::u16string& name, NamesFound& found,
          std::vector<CaseDifference>& differences) {
  const std::u16string written = found.text.substr(word.offset, word.length);
  found.text.replace(word.offset, word.length, name);
  if (found.told.insert(written).second) differences.push_back({written, name});
}

}  // namespace

NameCase::NameCase(const std::vector<std::u16string>& tables,
                   const std::vector<std::u16string>& fields, std::u16string_view quotes)
    : tables_(Sorted(tables)), fields_(Sorted(fields)), quotes_(quotes) {}

NameCase::Names NameCase::Sorted(const std::vector<std::u16string>& names) {
  Names sorted;
  for (const std::u16string& name : names) sorted[Lowered(name)].push_back(name);
  return sorted;
}

NamesFound NameCase::In(const std::u16string& rule) const {
  NamesFound found;
  found.text = rule;
  std::vector<std::u16string> tokens;
  ORKBASE::MxLexicalAnalyzer().GenerateOriginalTokens(rule, tokens);
  Stretch stretch;
  for (const std::u16string& token : tokens) {
    stretch.length = token.size();
    LookAtPieces(stretch, found);
    LookAtQuoted(stretch, found);
    stretch.offset += stretch.length;
  }
  return found;
}

void NameCase::LookAtTable(Stretch word, NamesFound& found) const {
  const std::u16string* const name = OtherCase(TextOf(word, found), tables_, found);
  if (name) Tell(word, *name, found, found.tables);
}

/// A table stands before a full stop. A field with its table alone is renamed in any case; behind
/// another word it is not, and the case of its table is looked at first.
void NameCase::LookAtPieces(Stretch token, NamesFound& found) const {
  const std::vector<Stretch> pieces = PiecesOf(found.text, token);
  for (std::size_t i = 0; i + 1 < pieces.size(); ++i) LookAtTable(pieces[i], found);
  if (pieces.size() < 3) return;
  const std::size_t begin = pieces[pieces.size() - 2].offset;
  const Stretch word = {begin, token.offset + token.length - begin};
  const std::u16string* const name = OtherCase(TextOf(word, found), fields_, found);
  if (name) Tell(word, *name, found, found.fields);
}

void NameCase::LookAtQuoted(Stretch token, NamesFound& found) const {
  const char16_t open = quotes_.front();
  const char16_t close = quotes_.back();
  std::optional<std::size_t> begin;
  for (std::size_t at = token.offset; at < token.offset + token.length; ++at) {
    if (found.text[at] == close && begin) LookAtTable({*begin, at - *begin}, found);
    if (found.text[at] == open) begin = at + 1;
  }
}

std::string CaseNotice(const Rule& rule, const CaseDifference& difference, const char* what) {
  return "orkrule: " + (rule.place.empty() ? "" : rule.place + ": ") + "\"" +
         ToUtf8(difference.written) + "\" differs from \"" + ToUtf8(difference.name) +
         "\" only in case and " + what + "\n";
}

Json CaseJson(const std::vector<CaseDifference>& differences) {
  Json list = Json::array();
  for (const CaseDifference& each : differences) {
    list.push_back({{"written", ToUtf8(each.written)}, {"name", ToUtf8(each.name)}});
  }
  return list;
}

}  // namespace ORKTOOL
