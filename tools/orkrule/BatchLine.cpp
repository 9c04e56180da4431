#include "BatchLine.h"

#include "Text.h"

#include <limits>

namespace ORKTOOL {
namespace {

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// Walks the text of one JSON object that is known to be well-formed.
class ObjectWalk {
 public:
  explicit ObjectWalk(std::string_view text) : text_(text), at_(text.find('{') + 1) {}

  /// Moves to the next member; false at the end of the object.
  bool Next() {
    SkipSpaceAnd(',');
    if (text_[at_] == '}') return false;
    name_ = Value();
    SkipSpaceAnd(':');
    value_ = Value();
    return true;
  }

  std::string_view Name() const { return name_; }  // with its quotes
  std::string_view RawValue() const { return value_; }

 private:
  void SkipSpaceAnd(char mark) {
    while (IsSpace(text_[at_]) || text_[at_] == mark) ++at_;
  }

  std::string_view Value() {
    const std::size_t begin = at_;
    std::size_t depth = 0;
    do {
      const char c = text_[at_];
      if (c == '"') {
        SkipString();
      } else if (c == '{' || c == '[') {
        ++depth, ++at_;
      } else if (c == '}' || c == ']') {
        --depth, ++at_;
      } else if (depth == 0) {
        SkipScalar();
      } else {
        ++at_;
      }
    } while (depth > 0);
    return text_.substr(begin, at_ - begin);
  }

  void SkipString() {
    for (++at_; text_[at_] != '"'; ++at_) {
      if (text_[at_] == '\\') ++at_;
    }
    ++at_;
  }

  void SkipScalar() {
    while (!IsSpace(text_[at_]) && text_[at_] != ',' && text_[at_] != '}') ++at_;
  }

  std::string_view text_;
  std::size_t at_;
  std::string_view name_;
  std::string_view value_;
};

/// The last `id`: of two members of one name, the parser too keeps the last.
std::string RawId(std::string_view line) {
  std::string id;
  for (ObjectWalk walk(line); walk.Next();) {
    const bool escaped = walk.Name().find('\\') != std::string_view::npos;
    const bool isId =
        escaped ? nlohmann::json::parse(walk.Name()) == "id" : walk.Name() == "\"id\"";
    if (isId) id = walk.RawValue();
  }
  return id;
}

/// True for a character that can stand in a number, or in one that is none.
bool IsOfNumber(char c) {
  return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
}

/// Whether a text is a JSON number, however large.
bool IsNumber(std::string_view text) {
  std::size_t at = text.starts_with('-') ? 1 : 0;
  const auto digits = [&] {
    const std::size_t begin = at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
    return at - begin;
  };
  const bool zero = text.substr(at).starts_with('0');
  const std::size_t whole = digits();
  if (whole == 0 || (zero && whole > 1)) return false;
  if (text.substr(at).starts_with('.') && (++at, digits() == 0)) return false;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    if (digits() == 0) return false;
  }
  return at == text.size();
}

/// The line with a small number in place of each one that a double cannot hold. The parser refuses
/// those, though they are JSON; none of them is an integer that a call could take.
std::string WithoutLargeNumbers(std::string_view line) {
  std::string out;
  bool inString = false;
  for (std::size_t at = 0; at < line.size();) {
    const char c = line[at];
    std::size_t end = at + 1;
    if (inString && c == '\\') {
      end = std::min(at + 2, line.size());
    } else if (c == '"') {
      inString = !inString;
    } else if (!inString && (c == '-' || (c >= '0' && c <= '9'))) {
      while (end < line.size() && IsOfNumber(line[end])) ++end;
    }
    const std::string_view piece = line.substr(at, end - at);
    const bool number = !inString && c != '"' && IsNumber(piece);
    const bool large = number && !std::isfinite(std::strtod(std::string(piece).c_str(), nullptr));
    out += large ? "0.5" : piece;
    at = end;
  }
  return out;
}

nlohmann::json Parsed(const std::string& line) {
  try {
    return nlohmann::json::parse(line);
  } catch (const nlohmann::json::out_of_range&) {
    return nlohmann::json::parse(WithoutLargeNumbers(line));
  }
}

[[noreturn]] void Mistyped(const char* name, const char* kind) {
  throw BadLine{std::string("the field \"") + name + "\" has to be " + kind};
}

}  // namespace

void BatchLine::Read(const std::string& line) {
  // The parser takes a zero for the end of its input.
  if (line.find('\0') != line.npos) throw BadLine{"the line is not JSON: it holds a zero byte"};
  try {
    fields_ = Parsed(line);
  } catch (const nlohmann::json::parse_error& error) {
    // The parser's own text quotes the line, which may be long and no text at all.
    throw BadLine{"the line is not JSON from its byte " + std::to_string(error.byte) + " on"};
  }
  if (!fields_.is_object()) throw BadLine{"the line is not a JSON object"};
  if (fields_.contains("id")) id_ = RawId(line);
}

std::u16string BatchLine::Text(const char* name) const {
  const nlohmann::json& field = Field(name);
  if (!field.is_string()) Mistyped(name, "a text");
  return FromUtf8(field.get_ref<const std::string&>()).value_or(std::u16string());
}

std::u16string BatchLine::Text(const char* name, const char16_t* otherwise) const {
  return Has(name) ? Text(name) : otherwise;
}

std::string BatchLine::Name(const char* name, const char* otherwise) const {
  if (!Has(name)) return otherwise;
  const nlohmann::json& field = Field(name);
  if (!field.is_string()) Mistyped(name, "a text");
  return field.get<std::string>();
}

std::int32_t BatchLine::Integer(const char* name) const {
  using Limits = std::numeric_limits<std::int32_t>;
  const nlohmann::json& field = Field(name);
  const bool whole = field.is_number_integer();
  const bool large = field.is_number_unsigned() && field.get<std::uint64_t>() > Limits::max();
  const auto number = whole && !large ? field.get<std::int64_t>() : std::int64_t{Limits::max()} + 1;
  if (number < Limits::min() || number > Limits::max()) Mistyped(name, "an integer of 32 bits");
  return static_cast<std::int32_t>(number);
}

std::int32_t BatchLine::Integer(const char* name, std::int32_t otherwise) const {
  return Has(name) ? Integer(name) : otherwise;
}

bool BatchLine::Boolean(const char* name) const {
  const nlohmann::json& field = Field(name);
  if (!field.is_boolean()) Mistyped(name, "true or false");
  return field.get<bool>();
}

bool BatchLine::Boolean(const char* name, bool otherwise) const {
  return Has(name) ? Boolean(name) : otherwise;
}

const nlohmann::json& BatchLine::Field(const char* name) const {
  const auto found = fields_.find(name);
  if (found == fields_.end()) throw BadLine{std::string("the field \"") + name + "\" is missing"};
  return *found;
}

}  // namespace ORKTOOL
