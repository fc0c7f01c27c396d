#include "pactkit/pact_editor.h"
#include "support/plugin_entry.h"

std::int32_t ledgertree_register_components(const LedgerTreeRegistry* registry) {
  if (registry->version != LEDGERTREE_COMPONENT_VERSION) return 0;
  registry->add(registry->context, "PactKit.PactEditor",
                &ledgertree::components::create<ledgertree::pactkit::PactEditor>);
  return 1;
}
