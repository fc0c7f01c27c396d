#pragma once

namespace ledgertree::data {
class Providers;
}

namespace ledgertree::engines::sqlite {

/// Makes the embedded engine known as the provider "SQLite". Of the connection text it reads `Data Source`,
/// the path of the database file; other keys mean nothing to it.
void registerEmbedded(data::Providers& providers);

}  // namespace ledgertree::engines::sqlite
