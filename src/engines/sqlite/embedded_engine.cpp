#include "engines/sqlite/embedded_engine.h"

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "data/connection.h"
#include "data/connection_text.h"
#include "engines/sqlite/embedded_connection.h"

namespace ledgertree::engines::sqlite {

void registerEmbedded(data::Providers& providers) {
  // Selectors and pickers have their own connections, and a lost one is replaced by a new one: they share
  // what they know about a file.
  providers.add("SQLite",
                [files = std::map<std::string, WasOpen>()](const data::ConnectionText& text) mutable {
                  std::string path = text.require("Data Source");
                  WasOpen& wasOpen = files[path];
                  if (!wasOpen) wasOpen = std::make_shared<std::atomic<bool>>(false);
                  return std::make_unique<EmbeddedConnection>(std::move(path), TimeOuts{}, wasOpen);
                });
}

}  // namespace ledgertree::engines::sqlite
