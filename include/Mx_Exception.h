// What a translation throws when the database has no form for a function of the rule.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "OrkExport.h"

namespace ORKBASE {

/// Thrown by value out of `MxExpression::GetSpec` for what Oracle cannot express. The library
/// catches it nowhere; the objects that it passes through stay valid and keep their error pair.
class ORKRULE_EXPORT Mx_Exception : public std::exception {
 public:
  Mx_Exception(std::u16string messageText, std::u16string moduleName, std::u16string functionName,
               std::uint32_t locationNumber);
  Mx_Exception(const Mx_Exception&) = default;
  Mx_Exception(Mx_Exception&&) = default;
  Mx_Exception& operator=(const Mx_Exception&) = default;
  Mx_Exception& operator=(Mx_Exception&&) = default;
  ~Mx_Exception() override;

  /// One sentence in UTF-8: `message` as it was thrown or, where there is no message file, an
  /// English one that names `function`. Valid as long as this object.
  const char* what() const noexcept override { return what_.c_str(); }

  std::u16string message;      ///< looked up in the language of the throwing thread
  std::u16string module;       ///< "mx_PLSql_translator"
  std::u16string function;     ///< the function as the translator knows it
  std::uint32_t location = 0;  ///< fixed number of the place
  std::u16string extra1;
  std::u16string extra2;
  std::uint64_t extra3 = 0;

 private:
  std::string what_;
};

}  // namespace ORKBASE
