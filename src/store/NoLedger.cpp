// The ledger of a run that remembers nothing.
#include "store/ChangeLedger.h"

namespace ORKDB {
namespace {

class NoLedger final : public ChangeLedger {
 public:
  bool IsFinished() const noexcept override { return false; }
  bool IsContinued() const noexcept override { return false; }
  void Forget() override {}
  void Open(const HashOfRow&) override {}
  bool WantsHashes() const noexcept override { return false; }
  bool IsDone(const StoreValue&) override { return false; }
  bool IsUnknown(const StoreValue&) override { return false; }
  void Begin() override {}
  void Wrote(const StoreValue&, std::uint64_t, std::uint64_t) override {}
  void Left(const StoreValue&) override {}
  void Finish() override {}
  void BeforeCommit() override {}
  void Committed() override {}
  void TakenBack(bool) noexcept override {}
  void CheckAlone() override {}
};

}  // namespace

std::unique_ptr<ChangeLedger> MakeNoLedger() {
  return std::make_unique<NoLedger>();
}

}  // namespace ORKDB
