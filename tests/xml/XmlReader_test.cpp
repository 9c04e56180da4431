// The events of documents, the limits of odd ones from both sides, and what a visitor may do.
#include "xml/XmlReader.h"

#include "xml/XmlLimits.h"

#include "CpuSeconds.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

constexpr std::u16string_view kNames[] = {u"first", u"second"};

/// The events as one text: `prolog|<name declarations attributes|other|>|epilog`.
class Recorder : public XmlVisitor {
 public:
  void Open(const XmlElement& element) override {
    Mark("<" + element.name.Written() + (element.name.inNamespace ? "*" : ""));
    for (const XmlDeclaration& each : element.declarations) {
      text += " " + each.WrittenName() + "=" + std::string(each.uri);
    }
    for (const XmlAttribute& each : element.attributes) {
      text += " " + each.name.Written() + (each.name.inNamespace ? "*" : "");
      if (each.known != XmlAttribute::kUnknown) text += "#" + std::to_string(each.known);
      text += "=" + std::string(each.value);
    }
  }
  void Close() override { Mark(">"); }
  void Other(std::string_view written) override { Mark(written); }
  void Prolog(std::string_view written) override { Mark(written); }
  void Epilog(std::string_view written) override { Mark(written); }

  std::string text;

 private:
  void Mark(std::string_view event) {
    if (!text.empty()) text += '|';
    text += event;
  }
};

std::string Events(const std::string& document) {
  XmlReader reader(kNames);
  Recorder recorder;
  return reader.Read(document, recorder) ? recorder.text : "refused";
}

/// Whether it parses, its events left aside.
bool Reads(const std::string& document) {
  struct : XmlVisitor {
    void Open(const XmlElement& /*element*/) override {}
    void Close() override {}
  } visitor;
  return XmlReader({}).Read(document, visitor);
}

/// The text of each number from 0 on, in a row.
std::string Row(std::size_t count, const std::function<std::string(const std::string&)>& text) {
  std::string row;
  for (std::size_t i = 0; i < count; ++i) row += text(std::to_string(i));
  return row;
}

std::string Attributes(std::size_t count) {
  return Row(count, [](const std::string& n) { return " a" + n + "='>'"; });
}

}  // namespace

TEST(XmlReader, TellsWhatADocumentIsMadeOf) {
  struct Case {
    const char* document;
    const char* events;
  };
  const Case cases[] = {
      {"<a/>", "<a|>"},
      {"<a second='1' x='2' first='3'><b/></a>", "<a second#1=1 x=2 first#0=3|<b|>|>"},
      {"<a>\n  <b/>\n</a>", "<a|\n  |<b|>|\n|>"},
      {"<a>x&lt;<!--c--><?p q?><![CDATA[d]]></a>", "<a|x&lt;<!--c--><?p q?><![CDATA[d]]>|>"},
      {"<!--c--><a/><?p?>", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--c-->\n|<a|>|<?p?>\n"},
      {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>\n", "<a|>"},
      {"<?xml version='1.1' standalone='no'?><a/>",
       "<?xml version=\"1.1\" encoding=\"UTF-8\" standalone=\"no\"?>\n|<a|>"},
      {"<p:a xmlns:p='u' p:first='1' first='2'/>", "<p:a* xmlns:p=u p:first*#0=1 first#0=2|>"},
      {"<a xmlns='u'><b/></a>", "<a* xmlns=u|<b*|>|>"},
      {"<p:a p:first='1'/>", "<p:a p:first=1|>"},
      {"<!DOCTYPE a [<!ATTLIST a first CDATA '1' xmlns:p CDATA 'u'>]><a second='2'/>",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE a [\n"
       "<!ATTLIST a first CDATA \"1\">\n<!ATTLIST a xmlns:p CDATA \"u\">\n]>\n|"
       "<a xmlns:p=u second#1=2|>"},
      {"<a>", "refused"},
      {"", "refused"},
  };
  for (const Case& each : cases) EXPECT_EQ(Events(each.document), each.events) << each.document;
}

TEST(XmlReader, ServesAnotherDocumentAfterAnyOther) {
  XmlReader reader(kNames);
  for (const std::string document : {"<a first='1'/>", "<a", "<!DOCTYPE a><a/>",
                                     "<?xml version='1.0'?><a/>", "<a x:y='1'>&e;"}) {
    Recorder any;
    reader.Read(document, any);
    Recorder recorder;
    EXPECT_TRUE(reader.Read("<a second='2'/>", recorder)) << document;
    EXPECT_EQ(recorder.text, "<a second#1=2|>") << document;
  }
}

TEST(XmlReader, LetsTheExceptionOfAVisitorThrough) {
  struct Thrower : Recorder {
    void Open(const XmlElement& element) override {
      if (element.name.local == "b") throw std::runtime_error("enough");
    }
    void Epilog(std::string_view /*written*/) override { throw std::runtime_error("at the end"); }
  };
  XmlReader reader({});
  Thrower thrower;
  EXPECT_THROW(reader.Read("<a><b/><b/></a>", thrower), std::runtime_error);
  EXPECT_THROW(reader.Read("<a/><!--c-->", thrower), std::runtime_error);
  Recorder recorder;
  EXPECT_TRUE(reader.Read("<a/>", recorder));
  EXPECT_EQ(recorder.text, "<a|>");
}

// --- limits --------------------------------------------------------------------------------------

TEST(XmlLimits, AttributesOfAnElement) {
  constexpr std::size_t kMost = XmlLimits::kAttributesOfElement;
  EXPECT_TRUE(Reads("<a" + Attributes(kMost) + "/>"));
  EXPECT_FALSE(Reads("<a" + Attributes(kMost + 1) + "/>"));
  EXPECT_TRUE(Reads("<a xmlns='u'" + Attributes(kMost - 1) + "></a>"));
  EXPECT_FALSE(Reads("<a xmlns='u'" + Attributes(kMost) + "></a>"));
  EXPECT_FALSE(Reads("<r><b/>text<a" + Attributes(kMost + 1) + "/></r>"));
  const std::string both = "<a" + Attributes(kMost) + "/>";
  EXPECT_TRUE(Reads("<r>" + both + both + "</r>"));
}

TEST(XmlLimits, WhatOnlyLooksLikeAttributesCountsForNothing) {
  const std::string many = Attributes(2 * XmlLimits::kAttributesOfElement);
  const std::string documents[] = {
      "<!--<a" + many + "/>--><a/>",
      "<?p <a" + many + "/>?><a/>",
      "<a><![CDATA[<a" + many + "/>]]></a>",
      "<a>" + many + "</a>",
      "<a b=\"" + many + "\"/>",
      "<a b='>' c=\"'>'\">" + many + "</a>",
  };
  for (const std::string& document : documents) {
    EXPECT_TRUE(Reads(document)) << document.substr(0, 20);
  }
}

TEST(XmlLimits, NamespacesInForce) {
  constexpr std::size_t kMost = XmlLimits::kNamespacesInForce;
  const auto nested = [](std::size_t count) {
    return Row(count, [](const std::string& n) { return "<a xmlns:p" + n + "='u'>"; }) +
           Row(count, [](const std::string&) { return "</a>"; });
  };
  EXPECT_TRUE(Reads(nested(kMost)));
  EXPECT_FALSE(Reads(nested(kMost + 1)));
  EXPECT_TRUE(Reads("<r>" + nested(kMost) + nested(kMost) + "</r>"));
}

TEST(XmlLimits, Names) {
  constexpr std::size_t kSome = XmlLimits::kNames / 2;
  const auto with = [](std::size_t count) {
    return "<r>" + Row(count, [](const std::string& n) { return "<a" + n + " b" + n + "=''/>"; }) +
           "</r>";
  };
  EXPECT_TRUE(Reads(with(kSome - 20)));  // the parser has some names of its own
  EXPECT_FALSE(Reads(with(kSome + 20)));
}

TEST(XmlLimits, NamesOfOtherDocumentsCountForNothing) {
  XmlReader reader({});
  for (const char* const letter : {"a", "b", "c"}) {
    const std::string document =
        "<r>" +
        Row(XmlLimits::kNames / 2,
            [&](const std::string& n) { return "<" + (letter + n) + "/>"; }) +
        "</r>";
    Recorder recorder;
    EXPECT_TRUE(reader.Read(document, recorder)) << letter;
  }
}

TEST(XmlLimits, DefaultsOfADocumentType) {
  constexpr std::size_t kMost = XmlLimits::kDefaultedAttributes;
  const auto with = [](std::size_t count) {
    return "<!DOCTYPE a [" +
           Row(count,
               [](const std::string& n) { return "<!ATTLIST a" + n + " b CDATA #FIXED 'c'>"; }) +
           "<!ATTLIST a c CDATA #IMPLIED>]><a/>";
  };
  EXPECT_TRUE(Reads(with(kMost)));
  EXPECT_FALSE(Reads(with(kMost + 1)));
}

TEST(XmlLimits, BytesOfADocumentType) {
  constexpr std::size_t kMost = XmlLimits::kDocumentTypeBytes;
  struct Form {
    std::string before;
    std::string begin;
    std::string end;
    std::string behind;
  };
  const Form forms[] = {
      {"", "<!DOCTYPE a [<!--]>", "-->]", ">"},
      {"", "<!DOCTYPE a [<!ENTITY e ']>'><?p ]>", "?>]", ">"},
      {"<!-- c -->", "<!DOCTYPE a [<!ENTITY e \"]", "\">]", ">"},
      {"<?p?>\n", "<!DOCTYPE a [<!ATTLIST a b (c) 'c' d CDATA ']>'>", "]", " >"},
      {"", "<!DOCTYPE a SYSTEM '>", "'>", ""},
  };
  for (const Form& form : forms) {
    const std::string filling(kMost - form.begin.size() - form.end.size(), ' ');
    const std::string end = form.end + form.behind + "<a/>";
    EXPECT_TRUE(Reads(form.before + form.begin + filling + end)) << form.begin;
    EXPECT_FALSE(Reads(form.before + form.begin + filling + ' ' + end)) << form.begin;
  }
}

TEST(XmlLimits, NamespacesThatADocumentTypeAdds) {
  const std::string uri(9000, 'u');
  const auto with = [&](std::size_t elements) {
    return "<!DOCTYPE a [<!ATTLIST a xmlns:p CDATA '" + uri + "'>]><r>" +
           Row(elements, [](const std::string&) { return "<a/>"; }) + "</r>";
  };
  const std::size_t most = XmlLimits::kDefaultedBytes / uri.size();
  EXPECT_TRUE(Reads(with(most)));
  EXPECT_FALSE(Reads(with(most + 3)));
  // What is written counts for nothing.
  const std::string written = "<a xmlns:p='" + uri + "'/>";
  EXPECT_TRUE(Reads("<r>" + Row(500, [&](const std::string&) { return written; }) + "</r>"));
}

TEST(XmlLimits, HoldInOtherEncodings) {
  const std::string many = Attributes(XmlLimits::kAttributesOfElement + 1);
  const std::string few = Attributes(XmlLimits::kAttributesOfElement);
  for (const std::string encoding : {"ISO-8859-1", "us-ascii", "GBK", "UTF-7"}) {
    const std::string declaration = "<?xml version='1.0' encoding='" + encoding + "'?>";
    EXPECT_TRUE(Reads(declaration + "<a" + few + "/>")) << encoding;
    EXPECT_FALSE(Reads(declaration + "<a" + many + "/>")) << encoding;
  }
  // "+ADw-" is "<" here, and the rest is what the parser makes of it.
  const std::string hidden = "<?xml version='1.0' encoding='UTF-7'?>+ADw-a";
  EXPECT_TRUE(Reads(hidden + few + "/>"));
  EXPECT_FALSE(Reads(hidden + many + "/>"));
}

TEST(XmlLimits, AreToldQuickly) {
  constexpr std::size_t kTimes = 100000;
  const auto times = [](const std::function<std::string(const std::string&)>& text) {
    return Row(kTimes, text);
  };
  const std::string documents[] = {
      "<a" + Attributes(kTimes) + "/>",
      "<a" + times([](const std::string& n) { return " xmlns:p" + n + "='u'"; }) + "/>",
      times([](const std::string& n) { return "<a xmlns:p" + n + "='u'>"; }),
      "<!DOCTYPE a [" +
          times([](const std::string& n) { return "<!ATTLIST a b" + n + " ID 'c'>"; }),
      "<!DOCTYPE a [<!ATTLIST a b NOTATION (n" +
          times([](const std::string& n) { return "|n" + n; }) + ") #IMPLIED>]><a/>",
  };
  for (const std::string& document : documents) {
    const CpuSeconds time;
    EXPECT_FALSE(Reads(document)) << document.substr(0, 40);
    EXPECT_LT(time.Used(), 2) << document.substr(0, 40);
  }
}
