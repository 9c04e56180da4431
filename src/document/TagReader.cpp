// Expression documents out of the events of the XML reader. Elements become tags one by one, what
// stands between them stays as it is written.
#include "document/TagReader.h"

#include "document/TagTree.h"
#include "foundation/Text.h"
#include "xml/XmlReader.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

namespace ORKBASE {
namespace {

/// What stands between the elements of an indented document lies here once.
constexpr std::u16string_view kIndents =
    u"\n                                                            ";

bool IsIndent(std::string_view run) noexcept {
  return run.front() == '\n' && run.size() <= kIndents.size() &&
         std::all_of(run.begin() + 1, run.end(), [](char c) { return c == ' '; });
}

bool IsTag(const XmlName& name) noexcept {
  return name.prefix.empty() && name.local == "tag";
}

/// Copies ASCII eight units at a time, as far as it goes; how many were copied.
std::size_t CopyAscii(std::string_view text, char16_t* out) noexcept {
  constexpr std::uint64_t kBeyondAscii = 0x8080808080808080;
  constexpr std::size_t kStep = sizeof kBeyondAscii;
  std::size_t at = 0;
  for (; text.size() - at >= kStep; at += kStep) {
    std::uint64_t units = 0;
    std::memcpy(&units, text.data() + at, kStep);
    if ((units & kBeyondAscii) != 0) break;
    std::copy_n(text.data() + at, kStep, out + at);
  }
  return at;
}

/// UTF-8 that the parser has checked, as UTF-16 in the arena.
std::u16string_view StoreUtf8(TagTree& tree, std::string_view text) {
  if (text.empty()) return {};
  char16_t* const out = tree.Allocate(text.size());
  std::size_t at = CopyAscii(text, out);
  std::size_t length = at;
  while (at < text.size()) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      out[length++] = static_cast<unsigned char>(text[at++]);
      continue;
    }
    UChar32 point = 0;
    U8_NEXT_UNSAFE(text, at, point);
    U16_APPEND_UNSAFE(out, length, point);
  }
  return {out, length};
}

class TreeMaker : public XmlVisitor {
 public:
  explicit TreeMaker(TagTree& tree) : tree_(tree) {}

  void Open(const XmlElement& element) override {
    Tag tag =
        IsTag(element.name) ? tree_.NewTag() : tree_.NewTag(Utf8ToWide(element.name.Written()));
    for (const XmlDeclaration& declaration : element.declarations) {
      AppendForeign(tag, Attr::kOther, declaration.WrittenName(), false, declaration.uri);
    }
    for (const XmlAttribute& attribute : element.attributes) Append(tag, attribute);
    open_ ? open_.AddChild(tag) : tree_.SetRoot(tag);
    open_ = tag;
  }

  void Close() override { open_ = open_.Parent(); }

  void Other(std::string_view written) override {
    if (IsIndent(written)) {
      tree_.AppendKeptRaw(open_, kIndents.substr(0, written.size()));
    } else {
      tree_.AppendRaw(open_, Utf8ToWide(written));
    }
  }

  void Prolog(std::string_view written) override { tree_.prolog = Utf8ToWide(written); }
  void Epilog(std::string_view written) override { tree_.epilog = Utf8ToWide(written); }

 private:
  void Append(Tag tag, const XmlAttribute& attribute) {
    const bool known = attribute.known != XmlAttribute::kUnknown;
    const Attr id = known ? static_cast<Attr>(attribute.known) : Attr::kOther;
    const bool plain = !attribute.name.inNamespace;
    if (known && plain) {
      tree_.AppendAttr(tag, id, StoreUtf8(tree_, attribute.value));
    } else {
      AppendForeign(tag, id, attribute.name.Written(), plain, attribute.value);
    }
  }

  void AppendForeign(Tag tag, Attr id, std::string_view name, bool plain, std::string_view value) {
    tree_.AppendForeignAttr(tag, id, StoreUtf8(tree_, name), plain, StoreUtf8(tree_, value));
  }

  TagTree& tree_;
  Tag open_;
};

}  // namespace

bool ReadTagTree(std::u16string_view text, TagTree& tree) {
  thread_local XmlReader reader(kAttrNames);
  tree.Clear();
  TreeMaker maker(tree);
  if (reader.Read(WideToUtf8(text), maker)) return true;
  tree.Clear();
  return false;
}

}  // namespace ORKBASE
