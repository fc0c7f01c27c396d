#pragma once

namespace ledgertree::data {
class Providers;
}

namespace ledgertree::data::embedded {

/// Makes the embedded engine known as the provider "SQLite". Of the connection text it reads `Data Source`,
/// the path of the database file; other keys mean nothing to it.
void registerEmbedded(Providers& providers);

}  // namespace ledgertree::data::embedded
