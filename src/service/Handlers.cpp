#include "service/Handlers.h"

#include "service/Call.h"
#include "service/Fields.h"

#include "OrkPlatform.h"

#include <utility>

namespace ORKBASE {
namespace {

MXRULE_DATATYPE TypeField(const Call& call) {
  return static_cast<MXRULE_DATATYPE>(call.Integer("type"));
}

ORKDB_DSType_ENUM DsTypeField(const Call& call) {
  return static_cast<ORKDB_DSType_ENUM>(call.Integer("dsType"));
}

/// The texts of `GetSpec`, "" until it has run.
struct Translated {
  std::u16string translated;
  std::u16string a;
  std::u16string b;
};

bool Translate(Call& call, const std::u16string& document, Translated& texts) {
  return call.Engine().GetSpec(document, DsTypeField(call), texts.translated, texts.a, texts.b,
                               call.Boolean("twoParts"));
}

void GiveTranslated(Call& call, Translated& texts) {
  call.Give("translated", std::move(texts.translated));
  call.Give("a", std::move(texts.a));
  call.Give("b", std::move(texts.b));
}

}  // namespace

void RunNew(Call& call) {
  call.AllEngines()[call.Object()] = std::make_unique<NamedEngine>();
}

void RunCopy(Call& call) {
  const MxExpression& from = KnownEngine(call.AllEngines(), call.Text("from")).rules;
  call.AllEngines()[call.Object()] = std::make_unique<NamedEngine>(from);
}

void RunDrop(Call& call) {
  call.AllEngines().erase(call.Object());
}

void RunSetThreadLanguage(Call& call) {
  SetThreadLanguage(call.Text("language"));
}

void RunConnect(Call& call) {
  call.Engine().Connect(call.Text("server"), call.Integer("port"), call.Text("proxy"),
                        call.Text("dbArgA"), call.Text("dbArgB"), DsTypeField(call),
                        call.Boolean("flagA"), call.Boolean("flagB"), call.Text("dbArgC"));
}

void RunSetRt(Call& call) {
  call.Give("result", call.Engine().SetRt(call.Text("id_")));
}

void RunSetDts(Call& call) {
  call.Give("result", call.Engine().SetDts(call.Text("list")));
}

void RunSetCAXDD(Call& call) {
  call.Give("result", call.Engine().SetCAXDD(call.Integer("type"), call.Text("document")));
}

void RunSet(Call& call) {
  MxExpression& engine = call.Engine();
  if (call.Has("formDataIn")) engine.set_formDataIn(call.Integer("formDataIn"));
  if (call.Has("useIsNull")) engine.set_useIsNull(call.Boolean("useIsNull"));
  if (call.Has("rtId")) engine.set_rtId(call.Text("rtId"));
  if (call.Has("thiscaseVarOn1RcId")) {
    engine.set_thiscaseVarOn1RcId(call.Boolean("thiscaseVarOn1RcId"));
  }
}

void RunGet(Call& call) {
  const MxExpression& engine = call.Engine();
  call.Give("formDataIn", std::int64_t{engine.get_formDataIn()});
  call.Give("useIsNull", engine.get_useIsNull());
  call.Give("rtId", engine.get_rtId());
  call.Give("thiscaseVarOn1RcId", engine.get_thiscaseVarOn1RcId());
}

void RunVerify(Call& call) {
  std::u16string document;
  const bool good = call.Engine().Verify(TypeField(call), call.Text("expression"), document);
  call.set_refused(!good);
  call.Give("result", good);
  call.Give("document", std::move(document));
}

void RunGetSpec(Call& call) {
  Translated texts;
  const bool good = Translate(call, call.Text("document"), texts);
  call.set_refused(!good);
  call.Give("result", good);
  GiveTranslated(call, texts);
}

void RunCompose(Call& call) {
  std::u16string a;
  std::u16string b;
  MxExpression& engine = call.Engine();
  const std::u16string& document = call.Text("document");
  const std::int32_t result =
      call.Boolean("twoParts") ? engine.Compose(document, a, b) : engine.Compose(document, a);
  call.Give("result", std::int64_t{result});
  call.Give("a", std::move(a));
  call.Give("b", std::move(b));
}

void RunAddIsNull(Call& call) {
  std::u16string expression = call.Text("expression");
  call.Engine().AddIsNull(TypeField(call), expression);
  call.Give("expression", std::move(expression));
}

void RunRemoveDt(Call& call) {
  std::u16string expression = call.Text("expression");
  call.Engine().RemoveDt(expression, call.Text("tables"), TypeField(call));
  call.Give("expression", std::move(expression));
}

void RunIsDtsInExp(Call& call) {
  call.Give("result", call.Engine().IsDtsInExp(call.Text("tables"), call.Text("expression")));
}

void RunReplaceDtOrDfNames(Call& call) {
  const std::int32_t result =
      call.Engine().ReplaceDtOrDfNames(call.Text("tableRenames"), call.Text("fieldRenames"));
  call.Give("result", std::int64_t{result});
}

void RunChangeExpWithNewDtDfNames(Call& call) {
  call.Give("expression",
            call.Engine().ChangeExpWithNewDtDfNames(
                call.Text("tableRenames"), call.Text("fieldRenames"), call.Text("expression")));
}

void RunGetDict(Call& call) {
  const std::u16string& which = call.Text("which");
  if (which == u"funcs") {
    call.Give("document", call.Engine().GetDict_funcs());
  } else if (which == u"operators") {
    call.Give("document", call.Engine().GetDict_operators());
  } else if (which == u"sysVar") {
    call.Give("document", call.Engine().GetDict_sysVar());
  } else {
    throw BadRequest{uR"(the field "which" has to be "funcs", "operators" or "sysVar")"};
  }
}

void RunGetSysTabName(Call& call) {
  const auto symbol = static_cast<MXRULE_SYMBOL_TYPE>(call.Integer("symbol"));
  call.Give("name", call.Engine().GetSysTabName(symbol, call.Text("text")));
}

void RunTranslate(Call& call) {
  Translated texts;
  std::u16string document;
  const bool good = call.Engine().Verify(TypeField(call), call.Text("expression"), document) &&
                    Translate(call, document, texts);
  call.set_refused(!good);
  call.Give("result", good);
  call.Give("document", std::move(document));
  GiveTranslated(call, texts);
}

}  // namespace ORKBASE
