#include "service/Calls.h"

#include "service/Handlers.h"

#include <algorithm>

namespace ORKBASE {
namespace {

using enum FieldType;
using enum Order;
using enum Reach;

constexpr Required kRequired;
constexpr Optional kOptional;
constexpr EmptyList kNoIntegers;

// What goes in, in the order in which it is checked.
// clang-format off
constexpr FieldIn kCopyIn[] = {
    {"from", kText, kRequired},
};
constexpr FieldIn kLanguageIn[] = {
    {"language", kText, kRequired},
};
constexpr FieldIn kConnectIn[] = {
    {"server", kText,    kRequired},
    {"port",   kInteger, 0},
    {"proxy",  kText,    u""},
    {"dbArgA", kText,    u""},
    {"dbArgB", kText,    u""},
    {"dsType", kInteger, 0},
    {"flagA",  kBoolean, false},
    {"flagB",  kBoolean, false},
    {"dbArgC", kText,    u""},
};
constexpr FieldIn kRtIn[] = {
    {"id_", kText, kRequired},
};
constexpr FieldIn kDtsIn[] = {
    {"list", kText, kRequired},
};
constexpr FieldIn kCaxIn[] = {
    {"type",     kInteger, kRequired},
    {"document", kText,    kRequired},
};
constexpr FieldIn kModesIn[] = {
    {"formDataIn",         kInteger, kOptional},
    {"useIsNull",          kBoolean, kOptional},
    {"rtId",               kText,    kOptional},
    {"thiscaseVarOn1RcId", kBoolean, kOptional},
};
constexpr FieldIn kVerifyIn[] = {
    {"type",       kInteger, kRequired},
    {"expression", kText,    kRequired},
};
constexpr FieldIn kSpecIn[] = {
    {"document", kText,    kRequired},
    {"dsType",   kInteger, 0},
    {"twoParts", kBoolean, false},
};
constexpr FieldIn kComposeIn[] = {
    {"document", kText,    kRequired},
    {"twoParts", kBoolean, false},
};
constexpr FieldIn kIsNullIn[] = {
    {"expression", kText,    kRequired},
    {"type",       kInteger, kRequired},
};
constexpr FieldIn kRemoveIn[] = {
    {"expression", kText,    kRequired},
    {"tables",     kText,    kRequired},
    {"type",       kInteger, kRequired},
};
constexpr FieldIn kTablesIn[] = {
    {"tables",     kText, kRequired},
    {"expression", kText, kRequired},
};
constexpr FieldIn kRenamesIn[] = {
    {"tableRenames", kText, kRequired},
    {"fieldRenames", kText, kRequired},
};
constexpr FieldIn kRenamesInTextIn[] = {
    {"tableRenames", kText, kRequired},
    {"fieldRenames", kText, kRequired},
    {"expression",   kText, kRequired},
};
constexpr FieldIn kDictIn[] = {
    {"which", kText, kRequired},
};
constexpr FieldIn kSysTabIn[] = {
    {"symbol", kInteger, kRequired},
    {"text",   kText,    kRequired},
};
constexpr FieldIn kTranslateIn[] = {
    {"type",       kInteger, kRequired},
    {"expression", kText,    kRequired},
    {"dsType",     kInteger, 0},
    {"twoParts",   kBoolean, false},
};
constexpr FieldIn kCheckIn[] = {
    {"type",       kInteger,  kRequired},
    {"expression", kText,     kRequired},
    {"dsTypes",    kIntegers, kNoIntegers},
    {"twoParts",   kBoolean,  false},
    {"language",   kText,     u""},
};
constexpr FieldIn kCompleteIn[] = {
    {"type",       kInteger, kRequired},
    {"expression", kText,    kRequired},
    {"offset",     kInteger, kRequired},
    {"limit",      kInteger, 100},
    {"all",        kBoolean, false},
    {"language",   kText,    u""},
};
constexpr FieldIn kPlaceIn[] = {
    {"expression", kText,    kRequired},
    {"offset",     kInteger, kRequired},
    {"language",   kText,    u""},
};
constexpr FieldIn kUsesIn[] = {
    {"expression", kText, kRequired},
    {"language",   kText, u""},
};
constexpr FieldIn kWriteIn[] = {
    {"document", kText, kRequired},
    {"language", kText, u""},
};
constexpr FieldIn kFormatIn[] = {
    {"expression", kText,    kRequired},
    {"width",      kInteger, 100},
    {"language",   kText,    u""},
};
constexpr FieldIn kCapabilitiesIn[] = {
    {"language", kText, u""},
};
constexpr FieldIn kTableNamesIn[] = {
    {"like",     kText, u""},
    {"language", kText, u""},
};
constexpr FieldIn kFieldNamesIn[] = {
    {"table",    kText, kRequired},
    {"language", kText, u""},
};

// What comes out, in the order in which it is written.
constexpr FieldOut kHelpOut[] = {
    {"operations", kRecords},
};
constexpr FieldOut kTruthOut[] = {
    {"result", kBoolean},
};
constexpr FieldOut kNumberOut[] = {
    {"result", kInteger},
};
constexpr FieldOut kModesOut[] = {
    {"formDataIn",         kInteger},
    {"useIsNull",          kBoolean},
    {"rtId",               kText},
    {"thiscaseVarOn1RcId", kBoolean},
};
constexpr FieldOut kVerifyOut[] = {
    {"result",   kBoolean},
    {"document", kText},
};
constexpr FieldOut kSpecOut[] = {
    {"result",     kBoolean},
    {"translated", kText},
    {"a",          kText},
    {"b",          kText},
};
constexpr FieldOut kComposeOut[] = {
    {"result", kInteger},
    {"a",      kText},
    {"b",      kText},
};
constexpr FieldOut kExpressionOut[] = {
    {"expression", kText},
};
constexpr FieldOut kDocumentOut[] = {
    {"document", kText},
};
constexpr FieldOut kNameOut[] = {
    {"name", kText},
};
constexpr FieldOut kTranslateOut[] = {
    {"result",     kBoolean},
    {"document",   kText},
    {"translated", kText},
    {"a",          kText},
    {"b",          kText},
};
constexpr FieldOut kCheckOut[] = {
    {"problems", kRecords},
};
constexpr FieldOut kCompleteOut[] = {
    {"offset",    kInteger},
    {"length",    kInteger},
    {"items",     kRecords},
    {"more",      kBoolean},
    {"unsure",    kBoolean},
    {"constants", kTexts},
};
constexpr FieldOut kSignatureOut[] = {
    {"name",       kText},
    {"text",       kText},
    {"parameters", kRecords},
    {"active",     kInteger},
    {"offset",     kInteger},
};
constexpr FieldOut kExplainOut[] = {
    {"offset",   kInteger},
    {"length",   kInteger},
    {"kind",     kText},
    {"name",     kText},
    {"dataType", kText},
    {"text",     kText},
    {"sql",      kRecord},
};
constexpr FieldOut kUsesOut[] = {
    {"uses", kRecords},
};
constexpr FieldOut kWriteOut[] = {
    {"result",     kBoolean},
    {"expression", kText},
};
constexpr FieldOut kCapabilitiesOut[] = {
    {"functions", kRecords},
};
constexpr FieldOut kTableNamesOut[] = {
    {"tables", kTexts},
    {"more",   kBoolean},
};
constexpr FieldOut kFieldNamesOut[] = {
    {"fields", kRecords},
};

constexpr CallRow kCalls[] = {
    {"help",                      kNoObject,  kStrict,       {},               kHelpOut,         RunHelp},
    {"new",                       kNoObject,  kStrict,       {},               {},               RunNew},
    {"copy",                      kNoObject,  kStrict,       kCopyIn,          {},               RunCopy},
    {"drop",                      kSession,   kStrict,       {},               {},               RunDrop},
    {"SetThreadLanguage",         kSession,   kStrict,       kLanguageIn,      {},               RunSetThreadLanguage},
    {"Connect",                   kSession,   kStrict,       kConnectIn,       {},               RunConnect},
    {"SetRt",                     kSession,   kStrict,       kRtIn,            kTruthOut,        RunSetRt},
    {"SetDts",                    kSession,   kStrict,       kDtsIn,           kTruthOut,        RunSetDts},
    {"SetCAXDD",                  kSession,   kStrict,       kCaxIn,           kTruthOut,        RunSetCAXDD},
    {"set",                       kSession,   kStrict,       kModesIn,         {},               RunSet},
    {"get",                       kSession,   kReads,        {},               kModesOut,        RunGet},
    {"Verify",                    kStateless, kReads,        kVerifyIn,        kVerifyOut,       RunVerify},
    {"GetSpec",                   kStateless, kReads,        kSpecIn,          kSpecOut,         RunGetSpec},
    {"Compose",                   kStateless, kReads,        kComposeIn,       kComposeOut,      RunCompose},
    {"AddIsNull",                 kSession,   kReads,        kIsNullIn,        kExpressionOut,   RunAddIsNull},
    {"RemoveDt",                  kStateless, kReads,        kRemoveIn,        kExpressionOut,   RunRemoveDt},
    {"IsDtsInExp",                kStateless, kReads,        kTablesIn,        kTruthOut,        RunIsDtsInExp},
    {"ReplaceDtOrDfNames",        kSession,   kStrict,       kRenamesIn,       kNumberOut,       RunReplaceDtOrDfNames},
    {"ChangeExpWithNewDtDfNames", kStateless, kReads,        kRenamesInTextIn, kExpressionOut,   RunChangeExpWithNewDtDfNames},
    {"GetDict",                   kStateless, kReads,        kDictIn,          kDocumentOut,     RunGetDict},
    {"GetSysTabName",             kSession,   kStrict,       kSysTabIn,        kNameOut,         RunGetSysTabName},
    {"Translate",                 kStateless, kReads,        kTranslateIn,     kTranslateOut,    RunTranslate},
    {"Check",                     kStateless, kReadsEditing, kCheckIn,         kCheckOut,        RunCheck},
    {"Complete",                  kStateless, kReadsEditing, kCompleteIn,      kCompleteOut,     RunComplete},
    {"Signature",                 kStateless, kReadsEditing, kPlaceIn,         kSignatureOut,    RunSignature},
    {"Explain",                   kStateless, kReadsEditing, kPlaceIn,         kExplainOut,      RunExplain},
    {"Uses",                      kStateless, kReadsEditing, kUsesIn,          kUsesOut,         RunUses},
    {"Write",                     kStateless, kReadsEditing, kWriteIn,         kWriteOut,        RunWrite},
    {"Format",                    kStateless, kReadsEditing, kFormatIn,        kExpressionOut,   RunFormat},
    {"Capabilities",              kStateless, kReadsEditing, kCapabilitiesIn,  kCapabilitiesOut, RunCapabilities},
    {"Tables",                    kStateless, kStrict,       kTableNamesIn,    kTableNamesOut,   RunTables},
    {"Fields",                    kStateless, kStrict,       kFieldNamesIn,    kFieldNamesOut,   RunFields},
};
// clang-format on

constexpr bool HasUniqueNames() {
  for (const CallRow& row : kCalls) {
    const auto same = [&row](const CallRow& other) { return row.name == other.name; };
    if (std::count_if(std::begin(kCalls), std::end(kCalls), same) != 1) return false;
  }
  return true;
}
static_assert(HasUniqueNames());

}  // namespace

std::span<const CallRow> AllCalls() noexcept {
  return kCalls;
}

const CallRow* FindCall(std::u16string_view name) noexcept {
  const auto is = [name](const CallRow& row) {
    return std::equal(name.begin(), name.end(), row.name.begin(), row.name.end());
  };
  const auto found = std::find_if(std::begin(kCalls), std::end(kCalls), is);
  return found == std::end(kCalls) ? nullptr : &*found;
}

}  // namespace ORKBASE
