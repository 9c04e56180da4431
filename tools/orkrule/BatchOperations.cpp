#include "BatchOperations.h"

#include "Text.h"

#include "Mx_Exception.h"
#include "OrkPlatform.h"

#include <optional>
#include <stdexcept>

namespace ORKTOOL {
namespace {

using ORKBASE::MxExpression;

/// One call: its fields, the object that it goes to, and the answer to fill. A handler reads all of
/// its fields before it touches the object, so that a bad line changes nothing.
struct Call {
  const BatchLine& in;
  Json& out;
  BatchSession::Objects& objects;
  const std::string& name;
  MxExpression* object;  // null only where the operation needs none
};

ORKBASE::MXRULE_DATATYPE TypeField(const Call& call) {
  return static_cast<ORKBASE::MXRULE_DATATYPE>(call.in.Integer("type"));
}

ORKBASE::ORKDB_DSType_ENUM DsTypeField(const Call& call) {
  return static_cast<ORKBASE::ORKDB_DSType_ENUM>(call.in.Integer("dsType", 0));
}

MxExpression& KnownObject(BatchSession::Objects& objects, const std::string& name) {
  const auto found = objects.find(name);
  if (found == objects.end()) throw BadLine{"there is no object \"" + name + "\""};
  return *found->second;
}

void New(Call& call) {
  call.objects[call.name] = std::make_unique<MxExpression>();
}

void Copy(Call& call) {
  call.in.Text("from");
  const MxExpression& from = KnownObject(call.objects, call.in.Name("from", ""));
  call.objects[call.name] = std::make_unique<MxExpression>(from);
}

void Drop(Call& call) {
  call.objects.erase(call.name);
}

void SetThreadLanguage(Call& call) {
  ORKBASE::SetThreadLanguage(call.in.Text("language"));
}

void Connect(Call& call) {
  const BatchLine& in = call.in;
  const std::u16string server = in.Text("server");
  const std::int32_t port = in.Integer("port", 0);
  const std::u16string proxy = in.Text("proxy", u"");
  const std::u16string dbArgA = in.Text("dbArgA", u"");
  const std::u16string dbArgB = in.Text("dbArgB", u"");
  const ORKBASE::ORKDB_DSType_ENUM dsType = DsTypeField(call);
  const bool flagA = in.Boolean("flagA", false);
  const bool flagB = in.Boolean("flagB", false);
  const std::u16string dbArgC = in.Text("dbArgC", u"");
  call.object->Connect(server, port, proxy, dbArgA, dbArgB, dsType, flagA, flagB, dbArgC);
}

void SetRt(Call& call) {
  call.out["result"] = call.object->SetRt(call.in.Text("id_"));
}

void SetDts(Call& call) {
  call.out["result"] = call.object->SetDts(call.in.Text("list"));
}

void SetCAXDD(Call& call) {
  const std::int32_t type = call.in.Integer("type");
  call.out["result"] = call.object->SetCAXDD(type, call.in.Text("document"));
}

void Set(Call& call) {
  const BatchLine& in = call.in;
  std::optional<std::int32_t> formDataIn;
  std::optional<bool> useIsNull;
  std::optional<std::u16string> rtId;
  std::optional<bool> thisCase;
  if (in.Has("formDataIn")) formDataIn = in.Integer("formDataIn");
  if (in.Has("useIsNull")) useIsNull = in.Boolean("useIsNull");
  if (in.Has("rtId")) rtId = in.Text("rtId");
  if (in.Has("thiscaseVarOn1RcId")) thisCase = in.Boolean("thiscaseVarOn1RcId");
  if (formDataIn) call.object->set_formDataIn(*formDataIn);
  if (useIsNull) call.object->set_useIsNull(*useIsNull);
  if (rtId) call.object->set_rtId(*rtId);
  if (thisCase) call.object->set_thiscaseVarOn1RcId(*thisCase);
}

void Get(Call& call) {
  call.out["formDataIn"] = call.object->get_formDataIn();
  call.out["useIsNull"] = call.object->get_useIsNull();
  call.out["rtId"] = ToUtf8(call.object->get_rtId());
  call.out["thiscaseVarOn1RcId"] = call.object->get_thiscaseVarOn1RcId();
}

void Verify(Call& call) {
  std::u16string document;
  const ORKBASE::MXRULE_DATATYPE type = TypeField(call);
  call.out["result"] = call.object->Verify(type, call.in.Text("expression"), document);
  call.out["document"] = ToUtf8(document);
}

/// The texts of `GetSpec`, "" until it has run.
struct Translated {
  std::u16string translated;
  std::u16string a;
  std::u16string b;
};

void AddTranslated(Call& call, const Translated& texts) {
  call.out["translated"] = ToUtf8(texts.translated);
  call.out["a"] = ToUtf8(texts.a);
  call.out["b"] = ToUtf8(texts.b);
}

void GetSpec(Call& call) {
  Translated texts;
  const std::u16string document = call.in.Text("document");
  const ORKBASE::ORKDB_DSType_ENUM dsType = DsTypeField(call);
  const bool twoParts = call.in.Boolean("twoParts", false);
  call.out["result"] =
      call.object->GetSpec(document, dsType, texts.translated, texts.a, texts.b, twoParts);
  AddTranslated(call, texts);
}

void Compose(Call& call) {
  std::u16string a;
  std::u16string b;
  const std::u16string document = call.in.Text("document");
  const bool twoParts = call.in.Boolean("twoParts", false);
  call.out["result"] =
      twoParts ? call.object->Compose(document, a, b) : call.object->Compose(document, a);
  call.out["a"] = ToUtf8(a);
  call.out["b"] = ToUtf8(b);
}

void AddIsNull(Call& call) {
  std::u16string expression = call.in.Text("expression");
  call.object->AddIsNull(TypeField(call), expression);
  call.out["expression"] = ToUtf8(expression);
}

void RemoveDt(Call& call) {
  std::u16string expression = call.in.Text("expression");
  const std::u16string tables = call.in.Text("tables");
  call.object->RemoveDt(expression, tables, TypeField(call));
  call.out["expression"] = ToUtf8(expression);
}

void IsDtsInExp(Call& call) {
  const std::u16string tables = call.in.Text("tables");
  call.out["result"] = call.object->IsDtsInExp(tables, call.in.Text("expression"));
}

void ReplaceDtOrDfNames(Call& call) {
  const std::u16string tableRenames = call.in.Text("tableRenames");
  const std::u16string fieldRenames = call.in.Text("fieldRenames");
  call.out["result"] = call.object->ReplaceDtOrDfNames(tableRenames, fieldRenames);
}

void ChangeExpWithNewDtDfNames(Call& call) {
  const std::u16string tableRenames = call.in.Text("tableRenames");
  const std::u16string fieldRenames = call.in.Text("fieldRenames");
  const std::u16string expression = call.in.Text("expression");
  call.out["expression"] =
      ToUtf8(call.object->ChangeExpWithNewDtDfNames(tableRenames, fieldRenames, expression));
}

void GetDict(Call& call) {
  const std::u16string which = call.in.Text("which");
  std::u16string document;
  if (which == u"funcs") {
    document = call.object->GetDict_funcs();
  } else if (which == u"operators") {
    document = call.object->GetDict_operators();
  } else if (which == u"sysVar") {
    document = call.object->GetDict_sysVar();
  } else {
    throw BadLine{R"(the field "which" has to be "funcs", "operators" or "sysVar")"};
  }
  call.out["document"] = ToUtf8(document);
}

void GetSysTabName(Call& call) {
  const auto symbol = static_cast<ORKBASE::MXRULE_SYMBOL_TYPE>(call.in.Integer("symbol"));
  call.out["name"] = ToUtf8(call.object->GetSysTabName(symbol, call.in.Text("text")));
}

void Translate(Call& call) {
  Translated texts;
  std::u16string document;
  const ORKBASE::MXRULE_DATATYPE type = TypeField(call);
  const std::u16string expression = call.in.Text("expression");
  const ORKBASE::ORKDB_DSType_ENUM dsType = DsTypeField(call);
  const bool twoParts = call.in.Boolean("twoParts", false);
  bool good = call.object->Verify(type, expression, document);
  if (good) {
    good = call.object->GetSpec(document, dsType, texts.translated, texts.a, texts.b, twoParts);
  }
  call.out["result"] = good;
  call.out["document"] = ToUtf8(document);
  AddTranslated(call, texts);
}

/// One operation. `makesObject`: its object need not be there before the call.
struct Operation {
  std::string_view name;
  bool makesObject;
  void (*run)(Call& call);
};

// clang-format off
constexpr Operation kOperations[] = {
    {"new",                       true,  New},
    {"copy",                      true,  Copy},
    {"drop",                      false, Drop},
    {"SetThreadLanguage",         false, SetThreadLanguage},
    {"Connect",                   false, Connect},
    {"SetRt",                     false, SetRt},
    {"SetDts",                    false, SetDts},
    {"SetCAXDD",                  false, SetCAXDD},
    {"set",                       false, Set},
    {"get",                       false, Get},
    {"Verify",                    false, Verify},
    {"GetSpec",                   false, GetSpec},
    {"Compose",                   false, Compose},
    {"AddIsNull",                 false, AddIsNull},
    {"RemoveDt",                  false, RemoveDt},
    {"IsDtsInExp",                false, IsDtsInExp},
    {"ReplaceDtOrDfNames",        false, ReplaceDtOrDfNames},
    {"ChangeExpWithNewDtDfNames", false, ChangeExpWithNewDtDfNames},
    {"GetDict",                   false, GetDict},
    {"GetSysTabName",             false, GetSysTabName},
    {"Translate",                 false, Translate},
};
// clang-format on

const Operation& OperationOf(const BatchLine& line) {
  if (!line.Has("op")) throw BadLine{"the field \"op\" is missing"};
  const std::string name = line.Name("op", "");
  for (const Operation& operation : kOperations) {
    if (name == operation.name) return operation;
  }
  throw BadLine{"there is no operation \"" + name + "\""};
}

/// Runs the call. Of a call that leaves by an exception only that is answered.
void RunCall(const Operation& operation, Call& call) {
  Json thrown;
  try {
    operation.run(call);
    return;
  } catch (const ORKBASE::Mx_Exception& refused) {
    thrown = {{"type", "Mx_Exception"},
              {"message", ToUtf8(refused.message)},
              {"module", ToUtf8(refused.module)},
              {"function", ToUtf8(refused.function)},
              {"location", refused.location}};
  } catch (const char16_t* text) {
    thrown = {{"type", "text"}, {"message", ToUtf8(text)}};
  } catch (const std::out_of_range&) {
    thrown = {{"type", "std::out_of_range"}};
  } catch (const std::exception& other) {
    thrown = {{"type", "std::exception"}, {"message", other.what()}};
  }
  call.out = {{"thrown", thrown}};
}

}  // namespace

BatchSession::BatchSession() {
  objects_["main"] = std::make_unique<MxExpression>();
}

void BatchSession::Run(const BatchLine& line, Json& answer) {
  const Operation& operation = OperationOf(line);
  const std::string name = line.Name("object", "main");
  MxExpression* const object = operation.makesObject ? nullptr : &KnownObject(objects_, name);
  Call call{line, answer, objects_, name, object};
  RunCall(operation, call);
  const auto after = objects_.find(name);
  if (after == objects_.end()) return;
  answer["errNumber"] = after->second->errNumber();
  answer["errDescription"] = ToUtf8(after->second->errDescription());
}

}  // namespace ORKTOOL
