#pragma once

namespace ledgertree::data {
class Providers;
}

namespace ledgertree::engines::sqlite {

/// Registers the embedded engine as the provider "SQLite". Of the connection text it reads `Data Source`, the
/// database file's path; it ignores all other keys.
void registerEmbedded(data::Providers& providers);

}  // namespace ledgertree::engines::sqlite
