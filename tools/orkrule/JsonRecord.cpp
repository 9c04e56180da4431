#include "JsonRecord.h"

#include <utility>

namespace ORKTOOL {
namespace {

/// Walks over the members of an object that is known to be JSON, however deep they are nested.
class MemberWalk {
 public:
  explicit MemberWalk(std::string_view text) : text_(text), at_(text.find('{') + 1) {}

  /// Stands at the name of the next member; false at the end of the object.
  bool Next() {
    at_ = text_.find_first_not_of(" \t\r\n,", at_);
    return text_[at_] != '}';
  }

  std::string_view Name() {
    const std::size_t begin = at_;
    SkipString();
    const std::string_view name = text_.substr(begin, at_ - begin);
    at_ = text_.find_first_not_of(" \t\r\n:", at_);
    return name;
  }

  std::string_view Value() {
    const std::size_t begin = at_;
    if (text_[at_] == '"') {
      SkipString();
    } else if (text_[at_] == '{' || text_[at_] == '[') {
      SkipNested();
    } else {
      at_ = text_.find_first_of(" \t\r\n,}", at_);
    }
    return text_.substr(begin, at_ - begin);
  }

 private:
  void SkipString() {
    for (++at_; text_[at_] != '"'; ++at_) {
      if (text_[at_] == '\\') ++at_;
    }
    ++at_;
  }

  void SkipNested() {
    std::size_t depth = 0;
    do {
      const char unit = text_[at_];
      if (unit == '"') {
        SkipString();
        continue;
      }
      if (unit == '{' || unit == '[') ++depth;
      if (unit == '}' || unit == ']') --depth;
      ++at_;
    } while (depth > 0);
  }

  std::string_view text_;
  std::size_t at_;
};

/// JSON of a value. The name of a file may stand in a message, and need not be UTF-8.
std::string Written(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// The text of a JSON string that is known to be one.
std::string Unquoted(const std::string& written) {
  if (written.find('\\') == written.npos) return written.substr(1, written.size() - 2);
  return Json::parse(written).get<std::string>();
}

void AppendMember(std::string& line, std::string_view name, std::string_view value) {
  if (line.size() > 1) line += ',';
  line.append(name).append(":").append(value);
}

}  // namespace

std::optional<JsonRecord> JsonRecord::Read(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == text.npos || text[begin] != '{' || !Json::accept(text)) return std::nullopt;
  JsonRecord record;
  for (MemberWalk walk(text); walk.Next();) {
    const std::string written(walk.Name());
    record.Put({Unquoted(written), written, std::string(walk.Value())});
  }
  return record;
}

const std::string* JsonRecord::Find(const std::string& name) const {
  const auto place = places_.find(name);
  return place == places_.end() ? nullptr : &members_[place->second].value;
}

void JsonRecord::Add(const std::string& name, std::string value) {
  Put({name, Json(name).dump(), std::move(value)});
}

void JsonRecord::Remove(const std::string& name) {
  const auto place = places_.find(name);
  if (place == places_.end()) return;
  members_[place->second].written.clear();
  places_.erase(place);
}

void JsonRecord::Put(Member member) {
  const auto [place, isNew] = places_.emplace(member.name, members_.size());
  if (isNew) {
    members_.push_back(std::move(member));
  } else {
    members_[place->second].value = std::move(member.value);
  }
}

std::string JsonRecord::With(const Json& own) const {
  std::string line = "{";
  for (const Member& member : members_) {
    if (member.written.empty()) continue;
    const auto mine = own.find(member.name);
    AppendMember(line, member.written, mine == own.end() ? member.value : Written(*mine));
  }
  for (const auto& [name, value] : own.items()) {
    if (!places_.contains(name)) AppendMember(line, Json(name).dump(), Written(value));
  }
  return line + "}";
}

}  // namespace ORKTOOL
