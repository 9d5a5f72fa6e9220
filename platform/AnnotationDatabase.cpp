#include <algorithm>
#include <boost/make_shared.hpp>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>

#include "AnnotationHistory.h"
#include "Annotations.h"
#include "Diagnosis.h"
#include "EditTable.h"
#include "Sqlite.h"
#include "StateName.h"

namespace kelvar_platform {

namespace {

using RecordedStates = std::unordered_map<std::string, std::int64_t>;  // revisions by name

/// The newest revision, and access to the states. A state is built on first use.
class AnnotationDatabase final : public AnnotationState {
 public:
  /// `path` is absolute, so that the names of states do not depend on the working directory.
  AnnotationDatabase(std::string path, boost::shared_ptr<const AnnotationHistory> history, RecordedStates recorded)
      : AnnotationState(history, history->newestRevision()), path_(std::move(path)), recorded_(std::move(recorded)) {}

  boost::shared_ptr<sitenotes::database_t> get_state(const std::string& path) override {
    const std::string name = nameOf(path);
    const std::lock_guard lock(mutex_);
    const auto recorded = recorded_.find(name);
    return recorded == recorded_.end() || name.empty() ? nullptr : stateAsOf(recorded->second);
  }

  /// The state is known to this object only; the file is not changed.
  boost::shared_ptr<sitenotes::database_t> make_state(const std::string& path, bool) override {
    const std::string name = nameOf(path);
    if (name.empty()) return {};
    const std::lock_guard lock(mutex_);
    boost::shared_ptr<sitenotes::database_t> state = stateAsOf(history()->newestRevision());
    recorded_[name] = history()->newestRevision();
    return state;
  }

 private:
  /// Empty if there is no name: no refusal may reach the library.
  [[nodiscard]] std::string nameOf(const std::string& path) const {
    try {
      return stateName(path_, path);
    } catch (const ReadError& error) {
      note(error.refusal());
      return {};
    }
  }

  boost::shared_ptr<sitenotes::database_t> stateAsOf(std::int64_t revision) {
    const std::int64_t known = std::min(revision, history()->newestRevision());
    const auto built = states_.find(known);
    if (built != states_.end()) return built->second;
    return states_.emplace(known, boost::make_shared<AnnotationState>(history(), known)).first->second;
  }

  const std::string path_;
  std::mutex mutex_;  // guards the members below
  RecordedStates recorded_;
  std::map<std::int64_t, boost::shared_ptr<sitenotes::database_t>> states_;  // by revision
};

}  // namespace

boost::shared_ptr<sitenotes::database_t> openAnnotationDatabase(const std::string& path) {
  const Connection connection(path, Connection::Access::read);
  Transaction transaction(connection, Transaction::Kind::read);
  const auto history = boost::make_shared<AnnotationHistory>();
  RecordedStates recorded;
  readDatabase(
      connection, [&](const EditRow& row) { history->append(row); },
      [&](const StateRow& row) { recorded.insert_or_assign(currentStateName(path, row.path), row.revision); });
  transaction.commit();
  return boost::make_shared<AnnotationDatabase>(absolutePath(path).string(), history, std::move(recorded));
}

}  // namespace kelvar_platform
