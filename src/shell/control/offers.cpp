#include "ledgertree/offers.h"

#include "shell/control/ledger_tree_control_session.h"

namespace ledgertree {

void offer(const std::set<Offer>& offers) { ControlSession::process().shell().offers = offers; }

std::set<Offer> everyOffer() {
  return {Offer::HiddenCommands, Offer::Export,        Offer::KeptPlace,   Offer::Divider,
          Offer::Guide,          Offer::OthersChanges, Offer::ContextMenu, Offer::EnterAsTab,
          Offer::Preview,        Offer::History,       Offer::TakeBack};
}

}  // namespace ledgertree
