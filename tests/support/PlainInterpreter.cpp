// The plain interpreter.
#include "PlainInterpreter.h"

#include "foundation/Format.h"
#include "foundation/Text.h"
#include "parser/SyntaxRules.h"
#include "platform/MessageTexts.h"

#include <libxml/tree.h>

#include <algorithm>
#include <utility>

using namespace ORKBASE;

namespace {

std::u16string Trimmed(const std::u16string& text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

std::u16string GetToken(const std::u16string& body, std::size_t start, std::size_t& next) {
  std::u16string copy = body;
  for (char16_t& c : copy) {
    if (c == u'\n' || c == u'\r') c = u' ';
  }
  if (Trimmed(copy).empty()) {
    next = copy.size();
    return copy;
  }
  int state = 0;
  std::size_t i = start;
  for (bool finished = false; i < copy.size() && !finished;) {
    const char16_t c = copy[i];
    bool consume = true;
    if (state == 0) {
      if (c == u'{') {
        state = 1;
      } else if (c == u'[') {
        state = 2;
      } else if (c == u'<') {
        state = 3;
      } else if (c == u'(' || c == u')' || c == u',') {
        finished = true;
      } else if (c != u' ') {
        state = 4;
      }
    } else if (state == 4) {
      if (std::u16string(u" <[{(),").find(c) != std::u16string::npos) {
        finished = true;
        consume = false;
      }
    } else {
      finished = c == (state == 1 ? u'}' : state == 2 ? u']' : u'>');
    }
    if (consume) ++i;
  }
  next = i;
  return Trimmed(copy.substr(start, i - start));
}

std::int32_t NameOfType(std::int32_t dataType) {
  switch (dataType) {
    case 0:
      return 6265;
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
      return 6312 + dataType;
    case 6:
    case 7:
      return 6318 + dataType;
    case 8:
    case 9:
    case 10:
      return 6258 + dataType;
  }
  return 6269;
}

/// Only kinds that a terminal of the grammar can ask for.
std::int32_t NameOfSymbol(std::int32_t symbol) {
  static const std::map<std::int32_t, std::int32_t> names = {
      {0, 6270},  {4, 6271},  {7, 6272},  {8, 6273},  {9, 6279},
      {10, 6274}, {11, 6275}, {12, 6276}, {13, 6277}, {29, 6280}};
  return names.at(symbol);
}

/// Folds nodes one by one, as a rule's semantic type tells.
class Fold {
 public:
  explicit Fold(std::int32_t semanticType) : semanticType_(semanticType) {}

  void Take(MxXmlNode x) {
    if (ReadInt(x.GetAttr(u"symbol")) == kDelimiterSymbol) return;
    switch (semanticType_) {
      case 0:
        TakeInChain(x);
        break;
      case 1:
      case 2:
        if (!result) {
          result = x;
        } else {
          result.AddChild(x);
        }
        break;
      case 3:
        if (result) x.AddChild(result);
        result = x;
        break;
    }
  }

  MxXmlNode result;

 private:
  void TakeInChain(MxXmlNode x) {
    if (state_ == 0) {
      result = x;
      state_ = 1;
    } else if (state_ == 1) {
      x.AddChild(result);
      result = x;
      x.SetAttr(u"semanticType", 0);
      state_ = 2;
    } else {
      result.AddChild(x);
      state_ = 1;
    }
  }

  std::int32_t semanticType_;
  int state_ = 0;
};

/// The pieces of a body, split once for each text.
const std::vector<std::u16string>& Alternatives(const std::u16string& body) {
  static std::map<std::u16string, std::vector<std::u16string>> split;
  const auto [found, isNew] = split.try_emplace(body);
  for (std::size_t at = 0; isNew && at <= body.size();) {
    const std::size_t end = std::min(body.find(u'|', at), body.size());
    found->second.push_back(body.substr(at, end - at));
    at = end + 1;
  }
  return found->second;
}

xmlNodePtr NodeOf(const XmlNode& made) {
  const auto xml = [](const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
  };
  xmlNodePtr node = xmlNewNode(nullptr, xml(WideToUtf8(made.name)));
  for (const auto& [name, value] : made.attributes) {
    xmlSetProp(node, xml(WideToUtf8(name)), xml(WideToUtf8(value)));
  }
  return node;
}

/// libxml2's own dump, so that our writer is held against it too.
std::u16string DumpOf(MxXmlNode root) {
  if (!root) return {};
  xmlDocPtr doc = xmlNewDoc(nullptr);
  xmlNodePtr node = NodeOf(*root.get());
  xmlDocSetRootElement(doc, node);
  for (const XmlNode* from = root.get(); from;) {
    if (from->first) {
      from = from->first;
      node = xmlAddChild(node, NodeOf(*from));
      continue;
    }
    for (; from != root.get() && !from->next; from = from->parent) node = node->parent;
    from = from == root.get() ? nullptr : from->next;
    if (from) node = xmlAddChild(node->parent, NodeOf(*from));
  }
  xmlBufferPtr buffer = xmlBufferCreate();
  xmlNodeDump(buffer, doc, xmlDocGetRootElement(doc), 0, 1);
  std::u16string text = Utf8ToWide(reinterpret_cast<const char*>(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  xmlFreeDoc(doc);
  return text;
}

}  // namespace

const std::vector<std::u16string>& PlainItems(const std::u16string& body) {
  static std::map<std::u16string, std::vector<std::u16string>> cut;
  const auto [found, isNew] = cut.try_emplace(body);
  const std::u16string text = isNew ? Trimmed(body) : std::u16string();
  for (std::size_t at = 0; at < text.size();) {
    std::u16string item = GetToken(text, at, at);
    if (!item.empty()) found->second.push_back(std::move(item));
  }
  return found->second;
}

PlainInterpreter::PlainInterpreter() {
  for (const SyntaxRule& rule : kSyntaxRules) {
    rules_.emplace(rule.name, Rule{std::u16string(rule.body), rule.dataType, rule.semanticType,
                                   rule.checkDataType});
  }
  for (const StartRule& start : kStartRules) startRules_.emplace(start.dataType, start.name);
  for (const TerminalSymbol& each : kTerminalSymbols) {
    terminalSymbols_.emplace(each.name, each.symbol);
  }
}

void PlainInterpreter::Raise(std::int32_t number, std::u16string description) {
  errNumber_ = number;
  errDescription_ = std::move(description);
}

bool PlainInterpreter::ParseExpr(MXRULE_DATATYPE expected, const std::vector<MxWord>* words,
                                 std::u16string& document) {
  Raise(0, {});
  position_ = furthest_ = 0;
  attempts_ = 0;
  triedAtEnd_.clear();
  isWhole_ = false;
  const auto start = startRules_.find(expected);
  if (start == startRules_.end()) {
    Raise(-1, Format(LoadMessage(6293), {LoadMessage(NameOfType(expected))}));
    return false;
  }
  candidates_.clear();
  doc_.Free();
  words_ = words;
  MxXmlNode root;
  if (!Parse(start->second, root)) {
    const ErrorRecord& last = candidates_.back();
    const std::u16string text = LoadMessage(last.message);
    Raise(last.code, last.message == 6294 ? text : Format(text, {last.word, last.expected}));
    return false;
  }
  if (position_ < static_cast<std::int32_t>(words_->size())) {
    Raise(-1, LoadMessage(6222));
    return false;
  }
  isWhole_ = true;
  document = DumpOf(root);
  return true;
}

bool PlainInterpreter::TakesAtEnd(const MxWord& word) const {
  return std::any_of(triedAtEnd_.begin(), triedAtEnd_.end(), [&](const TriedAtEnd& tried) {
    const auto terminal = terminalSymbols_.find(tried.item);
    if (terminal == terminalSymbols_.end()) return EqualsIgnoringCase(tried.item, word.primary);
    const bool isAnyType = word.dataType == kNoDataType || word.dataType == kVarDataType;
    return terminal->second == word.symbol &&
           (!tried.check || isAnyType || word.dataType == tried.dataType);
  });
}

bool PlainInterpreter::Parse(const std::u16string& name, MxXmlNode& out) {
  const Rule& rule = rules_.at(name);
  Nodes nodes;
  if (!SyntaxCheck(rule.body, nodes, rule.checkDataType, rule.dataType, false)) return false;
  ComposeToTree(nodes, rule.semanticType, out);
  matched.insert(name);
  return true;
}

bool PlainInterpreter::SyntaxCheck(const std::u16string& body, Nodes& out, bool check,
                                   std::int32_t dataType, bool optional) {
  if (++attempts_ > attemptLimit) throw TooLong{};
  const std::int32_t s = position_;
  out.clear();
  if (body.find(u'|') != body.npos) {
    for (const std::u16string& alternative : Alternatives(body)) {
      Nodes own;
      if (!SyntaxCheck(alternative, own, check, dataType, false)) continue;
      out.insert(out.end(), own.begin(), own.end());
      return true;
    }
    position_ = s;
    return false;
  }
  const bool ok = SequenceCheck(body, out, check, dataType);
  if (optional && out.empty()) {
    position_ = s;
    return true;
  }
  if (ok && (optional || !out.empty())) return true;
  position_ = s;
  return false;
}

bool PlainInterpreter::SequenceCheck(const std::u16string& body, Nodes& out, bool check,
                                     std::int32_t dataType) {
  const std::vector<std::u16string>& items = PlainItems(body);
  for (std::size_t i = 0; i < items.size(); ++i) {
    const std::u16string& item = items[i];
    if (item.front() == u'{' || item.front() == u'[') {
      const std::u16string inner = item.substr(1, item.size() - 2);
      for (bool again = true; again;) {
        Nodes scratch;
        const bool matches = SyntaxCheck(inner, scratch, check, dataType, true);
        if (!matches && i + 1 == items.size()) return false;
        again = matches && !scratch.empty() && item.front() == u'{';
        if (matches) out.insert(out.end(), scratch.begin(), scratch.end());
      }
      continue;
    }
    MxXmlNode node;
    bool symbolMatched = false;
    const bool matches = rules_.contains(item)
                             ? Parse(item, node)
                             : TerminalCheck(item, check, dataType, symbolMatched, node);
    if (!matches) return false;
    out.push_back(node);
  }
  return true;
}

bool PlainInterpreter::TerminalCheck(const std::u16string& item, bool check, std::int32_t dataType,
                                     bool& symbolMatched, MxXmlNode& out) {
  if (position_ >= static_cast<std::int32_t>(words_->size())) {
    PushErr({-1, 6294, 0, {}, {}});
    triedAtEnd_.insert({item, check, dataType});
    return false;
  }
  const MxWord& w = (*words_)[static_cast<std::size_t>(position_)];
  const auto terminal = terminalSymbols_.find(item);
  if (terminal != terminalSymbols_.end() && terminal->second != -1) {
    if (terminal->second != w.symbol) {
      PushErr({-1, 6295, 2, w.content, LoadMessage(NameOfSymbol(terminal->second))});
      return false;
    }
    symbolMatched = true;
    if (check && w.dataType != dataType && w.dataType != 0 && w.dataType != 5) {
      PushErr({-1, 6264, 1, w.content, LoadMessage(NameOfType(dataType))});
      return false;
    }
  } else if (!EqualsIgnoringCase(item, w.primary)) {
    PushErr({-1, 6296, 999, w.content, item});
    return false;
  }
  MxWordToXml(w, out);
  ++position_;
  return true;
}

void PlainInterpreter::PushErr(ErrorRecord record) {
  const std::int32_t p = position_;
  if (p < furthest_) return;
  if (p == furthest_ && !candidates_.empty()) {
    if (record.priority < candidates_.back().priority) candidates_.push_back(std::move(record));
    return;
  }
  furthest_ = p;
  candidates_.push_back(std::move(record));
}

void PlainInterpreter::MxWordToXml(const MxWord& word, MxXmlNode& out) {
  out = doc_.NewNode(u"tag");
  out.SetAttr(u"primary", word.primary);
  out.SetAttr(u"outDesc", word.outDesc);
  out.SetAttr(u"symbol", word.symbol);
  out.SetAttr(u"dataType", word.dataType);
  out.SetAttr(u"content", word.content);
}

void PlainInterpreter::ComposeToTree(const Nodes& nodes, std::int32_t semanticType,
                                     MxXmlNode& out) {
  const std::size_t k = nodes.size();
  if (k == 1) {
    out = nodes[0];
    return;
  }
  const bool bracketed = nodes[0].GetAttr(u"primary") == u"(";
  if (bracketed && k <= 3) {
    out = nodes[1];
    out.SetAttr(u"inBrackets", 1);
    return;
  }
  Fold fold(semanticType);
  for (std::size_t i = bracketed ? 1 : 0; i < (bracketed ? k - 1 : k); ++i) fold.Take(nodes[i]);
  out = fold.result;
  if (bracketed) out.SetAttr(u"inBrackets", 1);
  out.SetAttr(u"semanticType", semanticType);
}
