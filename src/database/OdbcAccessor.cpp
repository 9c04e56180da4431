// Queries through unixODBC. The driver works on a thread of its own, so that who asked has an
// answer in time whatever the driver does.
#include "database/OdbcAccessor.h"

#include "database/FailingAccessor.h"
#include "database/Job.h"
#include "database/OdbcConnection.h"
#include "database/OdbcHandle.h"
#include "foundation/MessageNumbers.h"
#include "platform/MessageTexts.h"

#include <algorithm>
#include <utility>

namespace ORKDB {
namespace {

using std::chrono::milliseconds;

// A server that takes no connection is given up within five seconds, the driver's last words and
// the closing included.
constexpr std::int32_t kConnectSeconds = 5;
constexpr std::int64_t kLoginSeconds = 4;
constexpr milliseconds kConnectLimit(4600);
constexpr milliseconds kCancelGrace(300);

std::int64_t SecondsUntil(Deadline end) {
  return std::chrono::duration_cast<std::chrono::seconds>(end - Clock::now()).count();
}

/// What a driver is told: at least one, since 0 is no limit.
SQLULEN DriverSeconds(std::int64_t seconds) {
  return static_cast<SQLULEN>(std::max<std::int64_t>(seconds, 1));
}

}  // namespace

std::unique_ptr<CDBAccessor> MakeOdbcAccessor(const AccessorRequest& request) {
  if (auto refused = RefuseProxy(request)) return refused;
  return std::make_unique<OdbcAccessor>(TextOfString(request), request);
}

std::unique_ptr<CDBAccessor> MakeServerAccessor(const AccessorRequest& request) {
  if (auto refused = RefuseProxy(request)) return refused;
  return std::make_unique<OdbcAccessor>(TextOfHost(request), request);
}

OdbcAccessor::OdbcAccessor(OdbcConnectionText text, const AccessorRequest& request)
    : TimedAccessor(request.loadSeconds), text_(std::move(text)), readOnly_(request.readOnly) {}

OdbcAccessor::~OdbcAccessor() {
  Close();
}

std::unique_ptr<CDBRecordSet> OdbcAccessor::Query(const std::u16string& statement,
                                                  const MxParams& params) {
  if (statement.empty() || !IsAscii(statement)) {
    SetOwnError(ORKBASE::kMsgStatementNotAscii);
    return nullptr;
  }
  const bool wasOpen = connection_ != nullptr;
  if (!Open()) return nullptr;
  auto result = Run(statement, params);
  if (result && result->failure.isLost && wasOpen) {
    Close();
    if (!Open()) return nullptr;
    result = Run(statement, params);
  }
  if (!result || result->rows) return result ? std::move(result->rows) : nullptr;
  Fail(result->failure);
  if (result->failure.isLost) Close();
  return nullptr;
}

bool OdbcAccessor::Open() {
  if (connection_ != nullptr) return true;
  if (text_.problem != 0) {
    SetOwnError(text_.problem);
    return false;
  }
  const auto opened = std::make_shared<OdbcConnection>();
  const auto failure = std::make_shared<OdbcFailure>();
  const Deadline connectEnd = Clock::now() + kConnectLimit;
  // Where the load ends first, the driver's own limit, in whole seconds, is not to come before.
  const bool isLoadFirst = End() < connectEnd;
  const SQLULEN seconds = DriverSeconds(isLoadFirst ? SecondsUntil(End()) + 2 : kLoginSeconds);
  Job job([opened, failure, seconds, text = text_, readOnly = readOnly_] {
    *failure = opened->Open(text, readOnly, seconds);
  });
  if (!job.IsDoneBy(isLoadFirst ? End() : connectEnd)) {
    SetTimeout(-1, isLoadFirst ? LoadSeconds() : kConnectSeconds);
    return false;
  }
  if (failure->number != 0) {
    failure->isLost = true;
    Fail(*failure);
    return false;
  }
  connection_ = opened;
  return true;
}

std::shared_ptr<OdbcResult> OdbcAccessor::Run(const std::u16string& statement,
                                              const MxParams& params) {
  auto result = std::make_shared<OdbcResult>();
  const SQLULEN seconds = DriverSeconds(SecondsUntil(End()));
  Job job([result, statement, params, seconds, connection = connection_] {
    *result = connection->Run(statement, params, seconds);
  });
  if (job.IsDoneBy(End())) return result;
  const Deadline graceEnd = Clock::now() + kCancelGrace;
  const Job cancel([connection = connection_] { connection->Cancel(); });
  // A connection whose driver does not let go of it stays with the job, which frees it in the end.
  if (!job.IsDoneBy(graceEnd) || result->failure.isLost) Close();
  SetTimeout(-1, LoadSeconds());
  return nullptr;
}

void OdbcAccessor::Close() {
  if (connection_ == nullptr) return;
  // Saying goodbye may wait for the server, too.
  Job job([connection = std::move(connection_)]() mutable { connection.reset(); });
  job.IsDoneBy(Clock::now() + kCancelGrace);
}

void OdbcAccessor::Fail(const OdbcFailure& failure) {
  // The driver is told whole seconds, so its own limit may be up a little before ours.
  if (failure.isTimeout && !failure.isLost && SecondsUntil(End()) == 0) {
    SetTimeout(-1, LoadSeconds());
    return;
  }
  const std::u16string text =
      failure.message != 0 ? ORKBASE::LoadMessage(failure.message) : failure.text;
  if (failure.isLost) {
    SetServerError(failure.number, HideSecrets(text, text_.secrets));
  } else {
    SetError(failure.number, HideSecrets(text, text_.secrets));
  }
}

}  // namespace ORKDB
