#include "data/embedded/embedded_engine.h"

#include <memory>

#include "data/connection.h"
#include "data/connection_text.h"
#include "data/embedded/embedded_connection.h"

namespace ledgertree::data::embedded {

void registerEmbedded(Providers& providers) {
  providers.add("SQLite", [](const ConnectionText& text) {
    return std::make_unique<EmbeddedConnection>(text.require("Data Source"));
  });
}

}  // namespace ledgertree::data::embedded
