// A connection to a store that fails, or dies, where a test wants it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "RuleStore.h"

/// What happens around each call: `begin`, `commit`, `run`, `read`.
struct Faults {
  std::function<void(const std::string& call)> before = [](const std::string&) {};
  std::function<void(const std::string& call)> after = [](const std::string&) {};
  /// What the driver tells of how many rows a statement changed.
  std::function<std::int64_t(std::int64_t)> count = [](std::int64_t rows) { return rows; };
};

class FaultyStatement final : public ORKDB::StoreStatement {
 public:
  FaultyStatement(std::unique_ptr<ORKDB::StoreStatement> real, const Faults& faults)
      : real_(std::move(real)), faults_(faults) {}

  const std::vector<std::u16string>& Names() const override { return real_->Names(); }
  std::int64_t Run(const ORKDB::StoreRow& values) override {
    faults_.before("run");
    const std::int64_t rows = faults_.count(real_->Run(values));
    faults_.after("run");
    return rows;
  }
  std::unique_ptr<ORKDB::StoreRows> Read(const ORKDB::StoreRow& values) override {
    faults_.before("read");
    return real_->Read(values);
  }

 private:
  std::unique_ptr<ORKDB::StoreStatement> real_;
  const Faults& faults_;
};

class FaultyStore final : public ORKDB::StoreConnection {
 public:
  /// `faults` is looked at for as long as the connection is there.
  FaultyStore(std::unique_ptr<ORKDB::StoreConnection> real, const Faults& faults)
      : real_(std::move(real)), faults_(faults) {}

  std::unique_ptr<ORKDB::StoreRows> Select(const std::u16string& statement) override {
    return real_->Select(statement);
  }
  std::unique_ptr<ORKDB::StoreStatement> Prepare(const std::u16string& statement) override {
    return std::make_unique<FaultyStatement>(real_->Prepare(statement), faults_);
  }
  void Begin() override {
    faults_.before("begin");
    real_->Begin();
    faults_.after("begin");
  }
  void Commit() override {
    faults_.before("commit");
    real_->Commit();
    faults_.after("commit");
  }
  void Rollback() noexcept override { real_->Rollback(); }

 private:
  std::unique_ptr<ORKDB::StoreConnection> real_;
  const Faults& faults_;
};
