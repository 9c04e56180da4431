// The writing of connection strings. A value with a character that ends or opens values stands in
// braces, where "}" is doubled: `p;x}` is written `{p;x}}}`.
#include "database/OdbcConnectionText.h"

#include "database/OdbcDriver.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <algorithm>
#include <iterator>

namespace ORKDB {
namespace {

using ORKBASE::UpToZero;

constexpr std::u16string_view kPasswordKeys[] = {u"pwd", u"password"};

/// How a string names a driver without functions for 16-bit text. The driver manager would cut each
/// unit of the string to a byte for it.
constexpr std::u16string_view kNarrowDrivers[] = {u"driver={sqlite", u"driver=sqlite",
                                                  u"libsqlite"};

std::u16string Braced(std::u16string_view value) {
  return u"{" + ORKBASE::ReplaceAll(value, u"}", u"}}") + u"}";
}

void AddPair(std::u16string& text, std::u16string_view key, std::u16string_view value) {
  if (value.empty()) return;
  const bool plain = value.find_first_of(u";{}") == value.npos && !value.starts_with(u' ') &&
                     !value.ends_with(u' ');
  text.append(key).append(u"=").append(plain ? std::u16string(value) : Braced(value)).append(u";");
}

void AddSecret(std::vector<std::u16string>& secrets, std::u16string_view secret) {
  if (!secret.empty()) secrets.emplace_back(secret);
}

void AddUser(OdbcConnectionText& made, const AccessorRequest& request) {
  const std::u16string_view password = UpToZero(request.password);
  AddPair(made.text, u"UID", UpToZero(request.server.User()));
  if (password.empty()) return;
  // Always in braces: outside of them one driver reads "%" and "+" of a password as escapes.
  const std::u16string written = Braced(password);
  made.text.append(u"PWD=").append(written).append(u";");
  AddSecret(made.secrets, written);
  AddSecret(made.secrets, password);
}

std::u16string OracleService(std::u16string_view host, std::int32_t port,
                             std::u16string_view database) {
  std::u16string service = u"//" + std::u16string(host);
  if (port > 0) service += u":" + ORKBASE::Decimal(port);
  if (!database.empty()) service.append(u"/").append(database);
  return service;
}

bool NamesNarrowDriver(std::u16string_view text) {
  const std::u16string lower = ORKBASE::ToLower(text);
  return std::any_of(std::begin(kNarrowDrivers), std::end(kNarrowDrivers),
                     [&](std::u16string_view name) { return lower.find(name) != lower.npos; });
}

bool IsBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t';
}

std::size_t SkipBlanks(std::u16string_view text, std::size_t at) {
  while (at < text.size() && IsBlank(text[at])) ++at;
  return at;
}

/// The end of the value that begins at `at`: behind a closing brace, else at the next semicolon.
std::size_t ValueEnd(std::u16string_view text, std::size_t at) {
  if (at < text.size() && text[at] == u'{') {
    for (std::size_t i = at + 1; i < text.size(); ++i) {
      if (text[i] != u'}') continue;
      if (i + 1 == text.size() || text[i + 1] != u'}') return i + 1;
      ++i;
    }
    return text.size();
  }
  const std::size_t end = text.find(u';', at);
  return end == text.npos ? text.size() : end;
}

/// Where the first value behind a password key begins, from `from` on; npos where there is none.
std::size_t FindPassword(std::u16string_view lower, std::size_t from) {
  std::size_t first = lower.npos;
  for (const std::u16string_view key : kPasswordKeys) {
    for (std::size_t at = lower.find(key, from); at < first; at = lower.find(key, at + 1)) {
      const std::size_t sign = SkipBlanks(lower, at + key.size());
      if (sign < lower.size() && lower[sign] == u'=') first = SkipBlanks(lower, sign + 1);
    }
  }
  return first;
}

/// Notes the passwords that a caller's own connection string holds, as written and without braces.
void CollectSecrets(std::u16string_view text, std::vector<std::u16string>& secrets) {
  const std::u16string lower = ORKBASE::ToLower(text);
  for (std::size_t at = FindPassword(lower, 0); at != lower.npos;) {
    const std::size_t end = ValueEnd(text, at);
    const std::u16string_view written = text.substr(at, end - at);
    AddSecret(secrets, written);
    if (written.size() >= 2 && written.front() == u'{' && written.back() == u'}') {
      AddSecret(secrets, ORKBASE::ReplaceAll(written.substr(1, written.size() - 2), u"}}", u"}"));
    }
    at = FindPassword(lower, end);
  }
}

std::u16string HideValues(const std::u16string& text) {
  const std::u16string lower = ORKBASE::ToLower(text);
  std::u16string out;
  std::size_t done = 0;
  for (std::size_t at = FindPassword(lower, 0); at != lower.npos; at = FindPassword(lower, done)) {
    out.append(text, done, at - done).append(u"***");
    done = ValueEnd(text, at);
  }
  return out.append(text, done);
}

}  // namespace

OdbcConnectionText TextOfString(const AccessorRequest& request) {
  OdbcConnectionText made;
  made.text = request.location;
  made.isNarrow = NamesNarrowDriver(made.text);
  CollectSecrets(made.text, made.secrets);
  if (!made.text.empty() && made.text.back() != u';') made.text += u';';
  AddUser(made, request);
  if (request.location.empty()) made.problem = ORKBASE::kMsgNoOdbcString;
  return made;
}

OdbcConnectionText TextOfHost(const AccessorRequest& request) {
  OdbcConnectionText made;
  const OdbcDriver& driver = DriverOf(request.dsType);
  const std::u16string_view host = UpToZero(request.location);
  const std::u16string_view database = UpToZero(request.database);
  const std::int32_t port = request.server.Port();
  made.text = u"Driver={" + std::u16string(driver.name) + u"};";
  if (driver.portKey.empty()) {
    AddPair(made.text, u"Dbq", OracleService(host, port, database));
  } else {
    AddPair(made.text, u"Server", host);
    if (port > 0) AddPair(made.text, driver.portKey, ORKBASE::Decimal(port));
    AddPair(made.text, u"Database", database);
  }
  AddUser(made, request);
  made.text.append(driver.always);
  if (request.encrypted) made.text.append(driver.encrypted);
  if (request.readOnly) made.text.append(driver.readOnly);
  if (host.empty()) made.problem = ORKBASE::kMsgNoServerName;
  if (request.encrypted && driver.encrypted.empty()) made.problem = ORKBASE::kMsgNoEncryption;
  return made;
}

std::u16string HideSecrets(std::u16string text, const std::vector<std::u16string>& secrets) {
  for (const std::u16string& secret : secrets) text = ORKBASE::ReplaceAll(text, secret, u"***");
  return HideValues(text);
}

}  // namespace ORKDB
