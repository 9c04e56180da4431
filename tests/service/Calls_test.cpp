// The table of calls: what each takes and gives, and that the handlers do what their rows tell.
#include "service/Calls.h"

#include "Utf8.h"
#include "service/JsonWriter.h"
#include "service/Session.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace ORKBASE {
namespace {

// Every operation as the protocol documents it: fields in (`*` required, `?` optional, else the
// default), fields out.
// clang-format off
const std::vector<std::string> kDocumented = {
    R"(help -> operations:records)",
    R"(new ->)",
    R"(copy from:text* ->)",
    R"(drop ->)",
    R"(SetThreadLanguage language:text* ->)",
    R"(Connect server:text* port:integer=0 proxy:text="" dbArgA:text="" dbArgB:text="" dsType:integer=0 flagA:boolean=false flagB:boolean=false dbArgC:text="" ->)",
    R"(SetRt id_:text* -> result:boolean)",
    R"(SetDts list:text* -> result:boolean)",
    R"(SetCAXDD type:integer* document:text* -> result:boolean)",
    R"(set formDataIn:integer? useIsNull:boolean? rtId:text? thiscaseVarOn1RcId:boolean? ->)",
    R"(get -> formDataIn:integer useIsNull:boolean rtId:text thiscaseVarOn1RcId:boolean)",
    R"(Verify type:integer* expression:text* -> result:boolean document:text)",
    R"(GetSpec document:text* dsType:integer=0 twoParts:boolean=false -> result:boolean translated:text a:text b:text)",
    R"(Compose document:text* twoParts:boolean=false -> result:integer a:text b:text)",
    R"(AddIsNull expression:text* type:integer* -> expression:text)",
    R"(RemoveDt expression:text* tables:text* type:integer* -> expression:text)",
    R"(IsDtsInExp tables:text* expression:text* -> result:boolean)",
    R"(ReplaceDtOrDfNames tableRenames:text* fieldRenames:text* -> result:integer)",
    R"(ChangeExpWithNewDtDfNames tableRenames:text* fieldRenames:text* expression:text* -> expression:text)",
    R"(GetDict which:text* -> document:text)",
    R"(GetSysTabName symbol:integer* text:text* -> name:text)",
    R"(Translate type:integer* expression:text* dsType:integer=0 twoParts:boolean=false -> result:boolean document:text translated:text a:text b:text)",
    R"(Check type:integer* expression:text* dsTypes:integers=[] twoParts:boolean=false language:text="" -> problems:records)",
    R"(Complete type:integer* expression:text* offset:integer* limit:integer=100 all:boolean=false language:text="" -> offset:integer length:integer items:records more:boolean unsure:boolean constants:texts)",
    R"(Signature expression:text* offset:integer* language:text="" -> name:text text:text parameters:records active:integer offset:integer)",
    R"(Explain expression:text* offset:integer* language:text="" -> offset:integer length:integer kind:text name:text dataType:text text:text sql:record)",
    R"(Uses expression:text* language:text="" -> uses:records)",
    R"(Write document:text* language:text="" -> result:boolean expression:text)",
    R"(Format expression:text* width:integer=100 language:text="" -> expression:text)",
    R"(Capabilities language:text="" -> functions:records)",
    R"(Tables like:text="" language:text="" -> tables:texts more:boolean)",
    R"(Fields table:text* language:text="" -> fields:records)",
};
// clang-format on

std::string Printed(const Value& value) {
  if (const bool* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* list = std::get_if<Integers>(&value)) return list->empty() ? "[]" : "[...]";
  return '"' + U8(std::get<std::u16string>(value)) + '"';
}

const Value* Find(const Record& record, std::string_view name) {
  for (const Field& field : record) {
    if (field.name == name) return &field.value;
  }
  return nullptr;
}

std::string TextOf(const Record& record, std::string_view name) {
  return U8(std::get<std::u16string>(*Find(record, name)));
}

/// One operation of the answer to `help`, in the form of the table above.
std::string Printed(const Record& operation) {
  std::string line = TextOf(operation, "name");
  for (const Record& field : std::get<Records>(*Find(operation, "in"))) {
    line += " " + TextOf(field, "name") + ":" + TextOf(field, "type");
    const Value* const otherwise = Find(field, "default");
    const bool required = std::get<bool>(*Find(field, "required"));
    EXPECT_FALSE(required && otherwise != nullptr) << line;
    line += required ? "*" : otherwise == nullptr ? "?" : "=" + Printed(*otherwise);
  }
  line += " ->";
  for (const Record& field : std::get<Records>(*Find(operation, "out")))
    line += " " + TextOf(field, "name") + ":" + TextOf(field, "type");
  return line;
}

/// Values with which every call does its work to the end.
Value Sample(const FieldIn& field) {
  if (field.name == "type") return std::int64_t{kVarDataType};
  if (field.name == "expression") return u"ROUND(1, 2)";
  if (field.name == "offset") return std::int64_t{6};  // inside the call
  if (field.name == "document") return u"<tag text='1' semanticType='4'/>";
  if (field.name == "which") return u"operators";
  if (field.name == "from") return u"main";
  if (field.name == "language") return u"en";
  switch (field.type) {
    case FieldType::kText:
      return u"T";
    case FieldType::kInteger:
      return std::int64_t{3};
    case FieldType::kBoolean:
      return true;
    case FieldType::kTexts:
      return Texts{u"T"};
    case FieldType::kIntegers:
      return Integers{kOracleDs};
    case FieldType::kRecord:
    case FieldType::kRecords:
      break;
  }
  return {};
}

Request RequestFor(const CallRow& row, std::string_view without = "") {
  Request request;
  request.Add("op", std::u16string(row.name.begin(), row.name.end()));
  for (const FieldIn& field : row.in) {
    if (field.name != without) request.Add(std::string(field.name), Sample(field));
  }
  return request;
}

/// What a session answers; of a bad request the text that says so.
std::string Refusal(Request request) {
  Session session;
  try {
    session.Run(request);
  } catch (const BadRequest& bad) {
    return U8(bad.what);
  }
  return "";
}

TEST(Calls, AreDocumented) {
  Session session;
  Request help;
  help.Add("op", u"help");
  const Record answer = session.Run(help);
  std::vector<std::string> found;
  for (const Record& operation : std::get<Records>(*Find(answer, "operations")))
    found.push_back(Printed(operation));
  EXPECT_EQ(found, kDocumented);
}

TEST(Calls, OpenToStrangersAreThese) {
  const std::set<std::string_view> expected = {
      "Verify",   "Translate",  "GetSpec",   "Compose",
      "RemoveDt", "IsDtsInExp", "GetDict",   "ChangeExpWithNewDtDfNames",
      "Check",    "Complete",   "Signature", "Explain",
      "Uses",     "Write",      "Format",    "Capabilities",
      "Tables",   "Fields"};
  std::set<std::string_view> found;
  for (const CallRow& row : AllCalls()) {
    if (row.reach == Reach::kStateless) found.insert(row.name);
  }
  EXPECT_EQ(found, expected);
}

TEST(Calls, OpenToStrangersLeaveTheObjectAsItIs) {
  for (const CallRow& row : AllCalls()) {
    if (row.reach != Reach::kStateless) continue;
    Session session;
    const auto modes = [&session] {
      Request get;
      get.Add("op", u"get");
      std::string printed;
      for (const Field& field : session.Run(get)) {
        if (!field.name.starts_with("err")) printed += Printed(field.value) + " ";
      }
      return printed;
    };
    Request request = RequestFor(row);
    const std::string before = modes();
    session.Run(request);
    EXPECT_EQ(modes(), before) << row.name;
    EXPECT_EQ(before, "0 true \"\" true ");
  }
}

TEST(Calls, GiveTheFieldsOfTheirRows) {
  constexpr std::size_t kForms[] = {3, 2, 1, 4, 5, 6, 7};  // of FieldType in Value
  for (const CallRow& row : AllCalls()) {
    Session session;
    Request request = RequestFor(row);
    const Record answer = session.Run(request);
    const std::size_t pair = row.name == "drop" ? 0 : 2;
    ASSERT_EQ(answer.size(), row.out.size() + pair) << row.name;
    for (std::size_t i = 0; i < row.out.size(); ++i) {
      EXPECT_EQ(answer[i].name, row.out[i].name) << row.name;
      EXPECT_EQ(answer[i].value.index(), kForms[static_cast<std::size_t>(row.out[i].type)])
          << row.name << " " << row.out[i].name;
    }
    if (pair == 0) continue;
    EXPECT_EQ(answer[row.out.size()].name, "errNumber");
    EXPECT_EQ(answer[row.out.size() + 1].name, "errDescription");
  }
}

TEST(Calls, RefuseARequestWithoutARequiredField) {
  for (const CallRow& row : AllCalls()) {
    for (const FieldIn& field : row.in) {
      const bool required = std::holds_alternative<Required>(field.otherwise);
      const std::string expected =
          required ? "the field \"" + std::string(field.name) + "\" is missing" : "";
      EXPECT_EQ(Refusal(RequestFor(row, field.name)), expected) << row.name;
    }
  }
}

TEST(Calls, RefuseAFieldOfAnotherType) {
  struct Row {
    Value value;
    std::set<FieldType> fits;
  };
  const Row rows[] = {
      // clang-format off
      {{},                           {}},
      {true,                         {FieldType::kBoolean}},
      {std::int64_t{1},              {FieldType::kInteger}},
      {std::int64_t{2147483648},     {}},
      {std::int64_t{-2147483649},    {}},
      {u"1",                         {FieldType::kText}},
      {Texts{},                      {FieldType::kTexts, FieldType::kIntegers}},
      {Texts{u"1"},                  {FieldType::kTexts}},
      {Integers{1, -1},              {FieldType::kIntegers}},
      {Integers{1, 2147483648},      {}},
      // clang-format on
  };
  const std::map<FieldType, std::string> wanted = {
      {FieldType::kText, "a text"},
      {FieldType::kInteger, "an integer of 32 bits"},
      {FieldType::kBoolean, "true or false"},
      {FieldType::kIntegers, "a list of integers of 32 bits"},
  };
  for (const CallRow& call : AllCalls()) {
    for (const FieldIn& field : call.in) {
      const std::string expected =
          "the field \"" + std::string(field.name) + "\" has to be " + wanted.at(field.type);
      for (const Row& row : rows) {
        if (row.fits.contains(field.type)) continue;
        Request request = RequestFor(call);
        request.Add(std::string(field.name), row.value);
        EXPECT_EQ(Refusal(std::move(request)), expected) << call.name;
      }
    }
  }
}

TEST(Calls, TakeTheDefaultsThatTheyTell) {
  for (const CallRow& row : AllCalls()) {
    if (row.in.empty()) continue;
    Request given;
    Request left;
    for (Request* request : {&given, &left})
      request->Add("op", std::u16string(row.name.begin(), row.name.end()));
    for (const FieldIn& field : row.in) {
      const Value otherwise = DefaultOf(field);
      const bool hasDefault = !std::holds_alternative<std::monostate>(otherwise);
      if (!hasDefault && !std::holds_alternative<Required>(field.otherwise)) continue;
      given.Add(std::string(field.name), hasDefault ? otherwise : Sample(field));
      if (!hasDefault) left.Add(std::string(field.name), Sample(field));
    }
    Session one;
    Session other;
    std::string expected;
    std::string found;
    AppendMembers(expected, one.Run(given));
    AppendMembers(found, other.Run(left));
    EXPECT_EQ(found, expected) << row.name;
  }
}

/// Runs the handler of a row that lacks one of its fields: the handler misses it if it reads it.
bool MissesField(const CallRow& row, const FieldIn& missing) {
  std::vector<FieldIn> fields;
  for (const FieldIn& field : row.in) {
    if (field.name != missing.name) fields.push_back(field);
  }
  CallRow cut = row;
  cut.in = fields;
  Engines engines;
  engines[u"main"] = std::make_unique<NamedEngine>();
  Request request = RequestFor(row);
  const std::u16string object = u"main";
  Call call(cut, request, engines, object, nullptr);
  try {
    row.run(call);
  } catch (const std::bad_variant_access&) {
    return true;
  }
  return false;
}

TEST(Calls, ReadEveryFieldOfTheirRowsAndNoOther) {
  for (const CallRow& row : AllCalls()) {
    for (const FieldIn& field : row.in) {
      // A field without a default is asked for first, so its handler misses nothing.
      const bool asked = std::holds_alternative<Optional>(field.otherwise);
      EXPECT_EQ(MissesField(row, field), !asked) << row.name << " " << field.name;
    }
    // With all fields no handler misses one: it reads none that its row does not have.
    Session session;
    Request request = RequestFor(row);
    EXPECT_EQ(Find(session.Run(request), "thrown"), nullptr) << row.name;
  }
}

TEST(Calls, AreFoundByTheirWholeNames) {
  EXPECT_EQ(FindCall(u"Verify")->name, "Verify");
  for (const char16_t* name : {u"", u"verify", u"Verif", u"Verify ", u"\x0156erify"})
    EXPECT_EQ(FindCall(name), nullptr);
}

}  // namespace
}  // namespace ORKBASE
