// A minimal program over the library: verifies one rule and prints its SQL in two parts, ready for
// a query with groups. The argument says where the metadata are, such as sqlite:examples/shop.db.
//
//   g++ -std=c++20 caller.cpp $(pkg-config --cflags --libs orkrule) -o caller
#include <MxExpression.h>
#include <Mx_Exception.h>
#include <OrkPlatform.h>

#include <iostream>
#include <string>

namespace {

// Enough for this program, whose texts are ASCII; a real one converts UTF-16 and UTF-8.
std::u16string Wide(const std::string& text) {
  return {text.begin(), text.end()};
}

std::string Narrow(const std::u16string& text) {
  std::string out;
  for (char16_t unit : text) out += static_cast<char>(unit);
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: caller SERVER\n";
    return 2;
  }
  ORKBASE::SetThreadLanguage(u"en");
  ORKBASE::ConnectionSettings settings;
  settings.server = Wide(argv[1]);
  ORKBASE::MxExpression rules;
  rules.Connect(settings);

  std::u16string document, translated, where, having;
  try {
    if (!rules.Verify(ORKBASE::kLogicDataType, u"Orders.Amount > 1000 and sum(Orders.Qty) > 2",
                      document) ||
        !rules.GetSpec(document, ORKBASE::kSqlServerDs, translated, where, having, true)) {
      std::cerr << Narrow(rules.errDescription()) << '\n';
      return 1;
    }
  } catch (const ORKBASE::Mx_Exception& refused) {  // the database has no form for a function
    std::cerr << refused.what() << '\n';
    return 1;
  }
  std::cout << "where  " << Narrow(where) << "\nhaving " << Narrow(having) << '\n';
}
