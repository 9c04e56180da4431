// The frame of every translator: what a translation is whatever the database. Which words are
// rebuilt, and how, is said by the rows, fields and overrides of the dialects.
//
// A document goes through three passes. The first gives every node its text, by the replacement map
// or else by its kind of word. The second rebuilds the functions whose row says so, in one walk in
// document order: an outer function before those in its arguments. The third marks the aggregates.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MxWord.h"
#include "document/TagTree.h"
#include "translator/DialectFields.h"
#include "translator/IMxTranslator.h"
#include "translator/ReplacementMap.h"

namespace ORKBASE {

/// Nodes that a translated document may have.
inline constexpr std::size_t kMostNodes = 1'000'000;

/// Whether a word of a rule is a function over the rows of a group. Heeds its case.
bool IsAggregate(std::u16string_view primary);

class TranslatorFrame : public IMxTranslator {
 public:
  std::int32_t Translate(std::u16string_view parsed, std::u16string& out) override;
  std::int32_t InitCaxEnums() override;
  std::u16string GetTempColumnName(std::int32_t symbol, std::u16string_view extra) const override;
  Tag TranslatedRoot() override;

  // The parts of `Translate`, in their order.
  bool ReadDocument(std::u16string_view parsed);
  void TransNodes();
  bool RunHandlers();
  void MarkGroupBy();

  /// What a row makes of a function node: moves its arguments, and returns null where the node is
  /// to stay. A refusal is thrown before the node is looked at; the others leave a node without
  /// arguments.
  Tag Rebuild(const Replacement& what, Tag node);

  /// The rows that every dialect begins with.
  static const ReplacementMap& SharedMap();
  /// The map of a class: what it begins with, what follows from its fields, then its own rows.
  static ReplacementMap MakeMap(ReplacementMap begin, const DialectFields& fields,
                                std::span<const ReplacementRow> rows);

  // Names and constants.
  std::u16string QuoteName(std::u16string_view name) const;
  virtual std::u16string TransColumnName(std::u16string_view name) const;
  virtual std::u16string TransDateConstant(std::u16string_view text) const;

  // The common forms of the rows of dates and periods.
  virtual Tag TransDatePart(Tag node, std::u16string_view part) = 0;
  virtual Tag TransFisDatePart(Tag node, std::u16string_view part);
  virtual Tag TransPeriodBound(Tag node, bool start, std::u16string_view part, bool fiscal);

  // Handlers. Public, so that the rows of tables may name them.
  virtual Tag TransLike(Tag node);
  virtual Tag TransCount1(Tag node);
  virtual Tag TransSwitch(Tag node);
  virtual Tag TransThisSet(Tag node);
  virtual Tag TransToText(Tag node) = 0;
  virtual Tag TransToDate(Tag node) = 0;
  virtual Tag TransToNumber(Tag node) = 0;

 protected:
  /// All three outlive the translator.
  TranslatorFrame(const DialectFields& fields, const ReplacementMap& map, TagTree& doc);

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
  [[noreturn]] static void Refuse(const Refusal& refusal);

 private:
  // The map.
  static void InitOperators(ReplacementMap& map, const DialectFields& fields);
  static void InitUserFunctions(ReplacementMap& map, const DialectFields& fields);
  static void InitFunctions(ReplacementMap& map);
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
  // Second pass: one operation a kind of row.
  Tag RebuildAs(std::u16string_view word, Tag node);
  Tag RebuildBy(std::u16string_view text, Tag node);
  Tag RebuildBy(OwnWord row, Tag node);
  Tag RebuildBy(Handler handler, Tag node);
  Tag RebuildBy(const DatePart& row, Tag node);
  Tag RebuildBy(const FisDatePart& row, Tag node);
  Tag RebuildBy(const PeriodBound& row, Tag node);
  Tag RebuildBy(const WholePeriod& row, Tag node);
  Tag RebuildBy(const OneLess& row, Tag node);
  Tag RebuildBy(const Refusal& row, Tag node);
  bool IsTooLarge();
  std::u16string UserFunction(std::u16string_view name) const;

  const DialectFields& fields_;
  const ReplacementMap& map_;
  TagTree& doc_;
  std::vector<const KeyMap<std::u16string>*> caxEnums_;
  std::size_t nextCount_ = kMostNodes;
};

}  // namespace ORKBASE
