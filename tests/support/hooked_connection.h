#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/connection_text.h"
#include "data/embedded/embedded_engine.h"

namespace ledgertree::testing {

/// The embedded engine with an ear: `hook` hears every statement and procedure name ahead of its run, and may
/// throw to make it fail, or do what a host does in the middle of work.
class HookedConnection : public data::Connection {
 public:
  using Hook = std::function<void(std::string_view statement)>;

  HookedConnection(std::unique_ptr<data::Connection> inner, const Hook& hook)
      : inner_(std::move(inner)), hook_(hook) {}

  /// Puts the ear on every connection that `providers` opens from now on. `hook` has to outlive them.
  static void install(data::Providers& providers, const Hook& hook) {
    providers.add("SQLite", [&hook](const data::ConnectionText& text) {
      data::Providers plain;
      data::embedded::registerEmbedded(plain);
      std::string whole;
      for (const auto& [key, value] : text.pairs())
        whole += key + "=" + data::quoteConnectionValue(value) + ";";
      return std::make_unique<HookedConnection>(plain.open(whole), hook);
    });
  }

  std::optional<data::Rows> run(std::string_view statement) override {
    hear(statement);
    return inner_->run(statement);
  }
  void walk(std::string_view statement, const std::function<bool(const data::Rows&)>& visit) override {
    hear(statement);
    inner_->walk(statement, visit);
  }
  std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values) override {
    hear(procedure.name);
    return inner_->call(procedure, values);
  }
  data::SearchPage search(const data::SearchRequest& request) override {
    hear(request.view);
    return inner_->search(request);
  }

 private:
  void hear(std::string_view statement) {
    if (hook_) hook_(statement);
  }

  std::unique_ptr<data::Connection> inner_;
  const Hook& hook_;
};

}  // namespace ledgertree::testing
