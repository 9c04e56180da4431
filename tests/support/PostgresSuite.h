// A test suite that shares one PostgreSQL server. Without the server's package its tests are
// skipped.
#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "PostgresServer.h"

/// A derived suite calls `StartServer` in its `SetUpTestSuite`.
class PostgresSuite : public testing::Test {
 protected:
  /// Starts the server and runs the statements that make its database.
  static void StartServer(const std::string& sql) {
    if (!PostgresServer::IsInstalled()) return;
    server_ = std::make_unique<PostgresServer>();
    ready_ = server_->Start() && server_->Run(sql);
  }
  static void TearDownTestSuite() { server_.reset(); }
  void SetUp() override {
    if (!server_) GTEST_SKIP() << "package postgresql-15 is not installed";
    ASSERT_TRUE(ready_) << server_->Problem();
  }

  static inline std::unique_ptr<PostgresServer> server_;
  static inline bool ready_ = false;
};
