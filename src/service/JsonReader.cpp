#include "service/JsonReader.h"

#include "foundation/Text.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace ORKBASE {
namespace {

/// Stands where the parser would keep the value of a number that is not whole. No call takes one,
/// so its text is all that counts, and none is too large to be read.
struct NoFraction {
  NoFraction(double) noexcept {}
  operator double&() noexcept { return parsed; }
  operator double() const noexcept { return 0; }
  double parsed = 0;
};

using Json = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, NoFraction>;

/// Walks over the text and leaves its place where others can see it, as the parser does not tell
/// where a value begins and ends.
class Place {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Place(const char* at, const char*& seen) : at_(at), seen_(&seen) {}
  const char& operator*() const { return *at_; }
  Place& operator++() {
    *seen_ = ++at_;
    return *this;
  }
  bool operator==(const Place& other) const { return at_ == other.at_; }
  bool operator!=(const Place& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  const char** seen_;
};

/// The parser lets nothing but well-formed UTF-8 through.
std::u16string Widened(const std::string& text) {
  std::u16string wide(text.size(), u'\0');  // no sequence takes more units than bytes
  std::size_t length = 0;
  for (std::size_t at = 0; at < text.size();) {
    UChar32 point = 0;
    U8_NEXT_UNSAFE(text.data(), at, point);
    U16_APPEND_UNSAFE(wide.data(), length, point);
  }
  wide.resize(length);
  return wide;
}

/// Takes the parser's events, whose names are the parser's. Members of the outermost object become
/// fields; of what lies deeper only a list of nothing but texts, or of nothing but integers, is
/// kept.
class RequestReader {
 public:
  explicit RequestReader(JsonRequest& request) : request_(request) {}

  void Read(std::string_view text) {
    at_ = text.data();
    const char* const end = at_ + text.size();
    Json::sax_parse(Place(at_, at_), Place(end, at_), this);
    if (!fault_.empty()) throw BadRequest{fault_};
    if (!isObject_) throw BadRequest{u"the line is not a JSON object"};
  }

  bool null() { return Take({}, at_); }
  bool boolean(bool value) { return Take(value, at_); }
  // Only the character behind a number shows the parser that it has ended.
  bool number_integer(std::int64_t value) { return Take(value, at_ - 1); }
  bool number_unsigned(std::uint64_t value) {
    if (value > std::numeric_limits<std::int64_t>::max()) return Take({}, at_ - 1);
    return Take(static_cast<std::int64_t>(value), at_ - 1);
  }
  bool number_float(NoFraction, const std::string&) { return Take({}, at_ - 1); }
  bool string(const std::string& value) { return Take(Widened(value), at_); }
  bool binary(const Json::binary_t&) { return Take({}, at_); }

  bool start_object(std::size_t) {
    if (depth_ == 0) isObject_ = true;
    isList_ = false;
    return Enter();
  }
  bool key(std::string& name) {
    if (depth_ != 1) return true;
    name_ = std::move(name);
    value_ = at_;
    return true;
  }
  bool end_object() { return Leave({}); }

  bool start_array(std::size_t) {
    isList_ = depth_ == 1;
    texts_.clear();
    integers_.clear();
    return Enter();
  }
  bool end_array() { return Leave(TakeList()); }

  bool parse_error(std::size_t byte, const std::string&, const nlohmann::detail::exception&) {
    fault_ =
        u"the line is not JSON from its byte " + Decimal(static_cast<std::int64_t>(byte)) + u" on";
    return false;
  }

 private:
  bool Take(Value value, const char* end) {
    if (depth_ == 1) {
      AddField(std::move(value), end);
    } else if (std::u16string* const text = std::get_if<std::u16string>(&value)) {
      if (isList_) texts_.push_back(std::move(*text));
    } else if (const std::int64_t* const number = std::get_if<std::int64_t>(&value)) {
      if (isList_) integers_.push_back(*number);
    } else {
      isList_ = false;
    }
    return true;
  }

  Value TakeList() {
    if (!isList_ || (!texts_.empty() && !integers_.empty())) return {};
    if (!integers_.empty()) return std::move(integers_);
    return std::move(texts_);
  }

  bool Enter() {
    if (depth_ == kJsonDepth) {
      fault_ = u"the line is nested more than " + Decimal(kJsonDepth) + u" levels deep";
      return false;
    }
    ++depth_;
    return true;
  }

  bool Leave(Value value) {
    if (--depth_ == 1) AddField(std::move(value), at_);
    return true;
  }

  void AddField(Value value, const char* end) {
    if (name_ == "id") request_.id = {value_, end};
    request_.fields.Add(std::move(name_), std::move(value));
  }

  JsonRequest& request_;
  const char* at_ = nullptr;  // behind the last character that the parser has read
  std::u16string fault_;      // why the parser stopped
  std::size_t depth_ = 0;
  bool isObject_ = false;
  std::string name_;             // of the field that is being read
  const char* value_ = nullptr;  // where its colon and its value begin
  Texts texts_;
  Integers integers_;
  bool isList_ = false;  // nothing but texts and integers so far
};

/// A value without the colon and the white space around it.
std::string_view Trimmed(std::string_view value) {
  constexpr std::string_view kSpace = " \t\r\n";
  value.remove_prefix(std::min(value.size(), value.find_first_not_of(kSpace)));
  if (value.starts_with(':')) value.remove_prefix(1);
  value.remove_prefix(std::min(value.size(), value.find_first_not_of(kSpace)));
  return value;
}

}  // namespace

JsonRequest ReadJson(std::string_view text) {
  JsonRequest request;
  if (text.find('\0') != text.npos) throw BadRequest{u"the line is not JSON: it holds a zero byte"};
  RequestReader(request).Read(text);
  request.id = Trimmed(request.id);
  return request;
}

}  // namespace ORKBASE
