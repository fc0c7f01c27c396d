#include "history/screen/names.h"

#include <utility>

#include "data/data_error.h"
#include "data/view_name.h"

namespace ledgertree::history {
namespace {

std::string nameIn(const std::map<std::int32_t, std::string>& known, std::int32_t id) {
  const auto found = known.find(id);
  return found == known.end() || found->second.empty() ? std::to_string(id) : found->second;
}

}  // namespace

void Names::want(const std::string& source, std::int32_t id) {
  if (known_[source].count(id) == 0) wanted_[source].insert(id);
}

void Names::wantObject(std::int32_t classID, std::int32_t id) {
  if (knownObjects_[classID].count(id) == 0) wantedObjects_[classID].insert(id);
}

void Names::read() {
  for (const auto& [source, ids] : std::exchange(wanted_, {})) {
    const char* const column =
        source == kAccounts ? "isnull(Code,'') + ' ' + isnull(Title,'') as Name" : "Name";
    readFrom(source, column, ids, known_[source]);
  }
  std::set<std::int32_t> classes;
  for (const auto& [classID, ids] : wantedObjects_)
    if (views_.count(classID) == 0) classes.insert(classID);
  readFrom("tblAccountClass", "ViewMajor as Name", classes, views_);
  for (const auto& [classID, ids] : std::exchange(wantedObjects_, {}))
    if (const auto view = data::plainViewName(views_[classID]))
      readFrom(std::string(*view), "Name", ids, knownObjects_[classID]);
}

void Names::readFrom(const std::string& source, const std::string& column, const std::set<std::int32_t>& ids,
                     Known& known) {
  if (ids.empty()) return;
  std::string list;
  for (const std::int32_t id : ids) {
    list += (list.empty() ? "" : ",") + std::to_string(id);
    known[id];
  }
  try {
    const data::Rows rows =
        data_.cnMainData.run("select ID, " + column + " from " + source + " where ID in (" + list + ")")
            .value_or(data::Rows());
    for (std::size_t row = 0; row < rows.count(); ++row)
      known[rows.value(row, 0).toInt32()] = rows.value(row, 1).toText();
  } catch (const data::DataError& failure) {
    using enum data::DataError::Reason;
    // A host that has no such view, or keeps it from this user: the person reads numbers.
    if (failure.reason() != Statement && failure.reason() != Denied) throw;
  }
}

std::string Names::of(const std::string& source, std::int32_t id) const {
  const auto known = known_.find(source);
  return known == known_.end() ? std::to_string(id) : nameIn(known->second, id);
}

std::string Names::ofObject(std::int32_t classID, std::int32_t id) const {
  const auto known = knownObjects_.find(classID);
  return known == knownObjects_.end() ? std::to_string(id) : nameIn(known->second, id);
}

}  // namespace ledgertree::history
