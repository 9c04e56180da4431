// The base translator: the default dialect, and what the other dialects share.
//
// A document goes through three passes. The first gives every node its text, by the replacement map
// or else by its kind of word. The second rebuilds the functions that have a handler, in one walk
// in document order: an outer function before those in its arguments. The third marks the
// aggregates.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "MxWord.h"
#include "document/TagTree.h"
#include "translator/IMxTranslator.h"
#include "translator/ReplacementMap.h"

namespace ORKBASE {

/// The five values in which dialects differ.
struct DialectFields {
  std::int32_t dbType;                ///< `ORKDB_DSType_ENUM`; Oracle keeps 0
  std::u16string_view unicodePrefix;  ///< in front of text constants
  std::u16string_view isNullName;     ///< function of the is-null form
  std::u16string_view concatOp;       ///< operator "&"
  std::u16string_view dateStyles;     ///< what the sixteen style literals become, "|" between
};

/// The sixteen date style literals, and the `dateStyles` of dialects that keep them as they are.
inline constexpr std::u16string_view kDateStyleLiterals =
    u"'yyyymmdd'|'yyyy-mm-dd'|'mm-dd-yyyy'|'dd-mm-yyyy'|'yyyy/mm/dd'|'mm/dd/yyyy'|'dd/mm/yyyy'|"
    u"'yymmdd'|'yy-mm-dd'|'mm-dd-yy'|'dd-mm-yy'|'yy/mm/dd'|'mm/dd/yy'|'dd/mm/yy'|'hh:mm:ss'|"
    u"'hh:mm:ss:mmm'";

/// Nodes that a translated document may have.
inline constexpr std::size_t kMostNodes = 1'000'000;

class MxSql92Translator : public IMxTranslator {
 public:
  MxSql92Translator();

  std::int32_t Translate(std::u16string_view parsed, std::u16string& out) override;
  std::int32_t InitCaxEnums() override;
  std::u16string GetTempColumnName(std::int32_t symbol, std::u16string_view extra) const override;
  Tag TranslatedRoot() override;

  /// The map of this class. A dialect fills its own in the same steps.
  static const ReplacementMap& Map();
  static void InitOperators(ReplacementMap& map, const DialectFields& fields);
  static void InitFunctions(ReplacementMap& map);
  /// The map of a class: what it begins with, the operators with its fields, then its functions.
  static ReplacementMap MakeMap(ReplacementMap begin, const DialectFields& fields,
                                void (*initFunctions)(ReplacementMap&));

  // Names and constants.
  virtual std::u16string QuoteName(std::u16string_view name) const;
  virtual std::u16string TransColumnName(std::u16string_view name) const;
  virtual std::u16string TransDateConstant(std::u16string_view text) const;

  // The common forms of the families below.
  virtual Tag TransDatePart(Tag node, std::u16string_view part);
  virtual Tag TransFisDatePart(Tag node, std::u16string_view part);
  virtual Tag TransPeriodBound(Tag node, bool start, std::u16string_view part, bool fiscal);

  // Handlers. Public, so that the rows of tables may name them.
  virtual Tag TransLike(Tag node);
  virtual Tag TransQuarter(Tag node);
  virtual Tag TransWeekDay(Tag node);
  virtual Tag TransFisYear(Tag node);
  virtual Tag TransFisMonth(Tag node);
  virtual Tag TransFisQuarter(Tag node);
  virtual Tag TransCount1(Tag node);
  virtual Tag TransToText(Tag node);
  virtual Tag TransFstDayOfMonth(Tag node);
  virtual Tag TransLstDayOfMonth(Tag node);
  virtual Tag TransFstDayOfFisMonth(Tag node);
  virtual Tag TransEndOfFisMonth(Tag node);
  virtual Tag TransFstDayOfYear(Tag node);
  virtual Tag TransEndOfYear(Tag node);
  virtual Tag TransFstDayOfFisYear(Tag node);
  virtual Tag TransEndOfFisYear(Tag node);
  virtual Tag TransFstDayOfQuarter(Tag node);
  virtual Tag TransEndOfQuarter(Tag node);
  virtual Tag TransFstDayOfFisQuarter(Tag node);
  virtual Tag TransEndOfFisQuarter(Tag node);
  virtual Tag TransToDate(Tag node);
  virtual Tag TransThisYear(Tag node);
  virtual Tag TransThisFisYear(Tag node);
  virtual Tag TransLastYear(Tag node);
  virtual Tag TransLastFisYear(Tag node);
  virtual Tag TransThisQuarter(Tag node);
  virtual Tag TransThisFisQuarter(Tag node);
  virtual Tag TransLastQuarter(Tag node);
  virtual Tag TransLastFisQuarter(Tag node);
  virtual Tag TransThisMonth(Tag node);
  virtual Tag TransThisFisMonth(Tag node);
  virtual Tag TransLastMonth(Tag node);
  virtual Tag TransLastFisMonth(Tag node);
  virtual Tag TransSwitch(Tag node);
  virtual Tag TransThisSet(Tag node);
  virtual Tag TransToNumber(Tag node);
  virtual Tag TransHour(Tag node);
  virtual Tag TransMinute(Tag node);
  // For the dialects: here each returns its node, and no row reaches it.
  virtual Tag TransLog10(Tag node);
  virtual Tag TransYear(Tag node);
  virtual Tag TransMonth(Tag node);
  virtual Tag TransDay(Tag node);
  virtual Tag TransDateAdd(Tag node);
  virtual Tag TransTimeInterval(Tag node);

 protected:
  /// For dialects; both outlive every translator.
  MxSql92Translator(const DialectFields& fields, const ReplacementMap& map);

  std::int32_t dbType() const noexcept { return fields_.dbType; }

  /// A node with "symbol", the "semanticType" that follows from it, "dataType" and "text".
  Tag MakeNode(std::int32_t symbol, std::int32_t dataType, std::u16string_view text);
  /// An operator between operands that says whether it is bracketed.
  Tag MakeInfix(std::u16string_view text, bool inBrackets);
  /// A new node with the head of `node` (symbol, semantic type, data type, brackets) and a text.
  Tag MakeWithHead(Tag node, std::u16string_view text);
  Tag MakeWithHead(Tag node);
  /// `MakeNode` with children; null ones are left out.
  Tag MakeCall(std::int32_t dataType, std::u16string_view name,
               std::initializer_list<Tag> children);
  static void SetSymbol(Tag node, std::int32_t symbol);
  Tag NewTag() { return doc_.NewTag(); }
  /// An operator of a rule between numbers, without operands yet.
  Tag MakeOperator(std::u16string_view word, std::int32_t symbol);
  /// `a * b`.
  Tag TimesNode(Tag a, Tag b);
  /// The " - " that counts a period down, without operands yet.
  virtual Tag MakeOneLess();

 private:
  // First pass.
  void TransNode(Tag node);
  std::u16string TransOperand(Tag node, std::u16string_view text);
  std::u16string TransConstant(Tag node, std::u16string_view text) const;
  std::u16string TransDataField(Tag node, std::u16string_view primary);
  std::u16string TransFormField(Tag node, std::u16string_view primary);
  std::u16string TransCAXField(Tag node, std::u16string_view primary);
  std::u16string TransSysVarCase(std::u16string_view primary) const;
  void AddIsNullForm(Tag node, std::u16string& text) const;
  const MxWord& FieldWord(std::u16string_view primary) const;
  // Second and third pass.
  bool RunHandlers();
  Handler HandlerOf(Tag node) const;
  bool IsTooLarge();
  void MarkGroupBy();
  // Conversions.
  Tag TransCast(Tag node, std::int32_t target);
  Tag TransConvert(Tag node);
  Tag CastToDate(Tag argument);
  // Periods.
  using Bound = Tag (MxSql92Translator::*)(Tag);
  Tag Period(Tag node, Bound lower, Bound upper);
  Tag OneLess(Tag node, std::int32_t argument);

  const DialectFields& fields_;
  const ReplacementMap& map_;
  std::vector<const KeyMap<std::u16string>*> caxEnums_;
  std::size_t nextCount_ = kMostNodes;
};

}  // namespace ORKBASE
