#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <utility>

#include "Annotations.h"
#include "Diagnosis.h"
#include "EditTable.h"
#include "Sqlite.h"
#include "Utf8.h"

namespace kelvar_platform {

namespace {

/// Reads the edits as a reader does, without the states.
void readSites(const Connection& connection, const std::function<void(const EditRow&)>& take) {
  readDatabase(connection, take, [](const StateRow&) {});
}

/// One more than the greatest there ever was.
std::int64_t nextSequence(const Connection& connection) {
  std::int64_t greatest = 0;
  readSites(connection, [&](const EditRow& row) { greatest = std::max(greatest, row.sequence); });
  if (greatest == std::numeric_limits<std::int64_t>::max()) connection.refuse("edit", "room for another sequence");
  return greatest + 1;
}

/// The site as of its newest edit, or nothing if there is no such site.
std::optional<Site> newestOf(const Connection& connection, std::int64_t sequence) {
  std::optional<Site> newest;
  readSites(connection, [&](const EditRow& row) {
    if (row.sequence == sequence) newest = siteOf(row);
  });
  return newest;
}

std::string placeOf(std::int64_t sequence) {
  return "sequence " + std::to_string(sequence);
}

}  // namespace

struct AnnotationEditor::Impl {
  /// Opened for writing by the first edit only: opening rolls an interrupted transaction back, which no reader may do.
  const Connection& connected() { return connection ? *connection : connection.emplace(path, access); }

  /// Appends the newest edit of a living site again, with `change` applied.
  void edit(std::int64_t sequence, const std::function<void(Site&)>& change) {
    const Connection& database = connected();
    Transaction transaction(database, Transaction::Kind::write);
    std::optional<Site> site = newestOf(database, sequence);
    if (!site || !site->alive) database.refuse(placeOf(sequence), "a living site");
    change(*site);
    requireWritable(path, placeOf(sequence), rowOf(*site));
    EditWriter(database).append(rowOf(*site));
    transaction.commit();
  }

  const std::string path;
  const Connection::Access access;
  std::optional<Connection> connection{};
};

AnnotationEditor::AnnotationEditor(const std::string& path, Open how)
    : impl_(new Impl{.path = path,
                     .access = how == Open::existing ? Connection::Access::write : Connection::Access::create}) {}
AnnotationEditor::~AnnotationEditor() = default;
AnnotationEditor::AnnotationEditor(AnnotationEditor&&) noexcept = default;
AnnotationEditor& AnnotationEditor::operator=(AnnotationEditor&&) noexcept = default;

std::int64_t AnnotationEditor::add(sitenotes::annotation_t::kind_t kind, const std::string& label,
                                   const std::string& file, int line, int column,
                                   const std::function<void(std::int64_t)>& announce) {
  Site site{.sequence = 1, .kind = kind, .label = label, .file = file, .line = line, .column = column};
  requireWritable(impl_->path, "new site", rowOf(site));
  const Connection& connection = impl_->connected();
  Transaction transaction(connection, Transaction::Kind::write);
  const bool first = impl_->access == Connection::Access::create && isBlank(connection);
  if (!first) site.sequence = nextSequence(connection);
  // Before the first write: a process that ends in this call leaves no journal to roll back.
  if (announce) announce(site.sequence);
  if (first) createTables(connection);
  EditWriter(connection).append(rowOf(site));
  transaction.commit();
  return site.sequence;
}

void AnnotationEditor::move(std::int64_t sequence, const std::string& file, int line, int column) {
  impl_->edit(sequence, [&](Site& site) {
    site.file = file;
    site.line = line;
    site.column = column;
  });
}

void AnnotationEditor::moveBy(std::int64_t sequence, int lines) {
  impl_->edit(sequence, [&](Site& site) {
    const std::int64_t line = std::int64_t{site.line} + lines;
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    if (line < 1 || line > kMost)
      throw ReadError({impl_->path, placeOf(sequence),
                       "a line from 1 to " + std::to_string(kMost) + " to move to, not " + std::to_string(line)});
    site.line = static_cast<int>(line);
  });
}

void AnnotationEditor::relabel(std::int64_t sequence, const std::string& label) {
  impl_->edit(sequence, [&](Site& site) { site.label = label; });
}

void AnnotationEditor::setDisabled(std::int64_t sequence, bool disabled) {
  impl_->edit(sequence, [&](Site& site) { site.disabled = disabled; });
}

void AnnotationEditor::remove(std::int64_t sequence) {
  impl_->edit(sequence, [](Site& site) { site.alive = false; });
}

std::vector<Site> AnnotationEditor::list(bool withDead) const {
  const Connection connection(impl_->path, Connection::Access::read);
  Transaction transaction(connection, Transaction::Kind::read);
  std::map<std::int64_t, Site> newest;
  readSites(connection, [&](const EditRow& row) { newest.insert_or_assign(row.sequence, siteOf(row)); });
  transaction.commit();
  std::vector<Site> sites;
  for (auto& [sequence, site] : newest) {
    if (site.alive || withDead) sites.push_back(std::move(site));
  }
  return sites;
}

void AnnotationEditor::snapshot(const std::string& path) {
  const Connection& connection = impl_->connected();
  const std::string name = stateName(connection.path(), path);
  if (name.empty() || !isUtf8(name)) connection.refuse("state", "a result path, as UTF-8 text");
  Transaction transaction(connection, Transaction::Kind::write);
  std::int64_t newest = 0;
  readSites(connection, [&](const EditRow& row) { newest = row.revision; });
  Statement record(connection,
                   "INSERT INTO state (path, revision) VALUES (?, ?) "
                   "ON CONFLICT (path) DO UPDATE SET revision = excluded.revision",
                   "state");
  record.bind(1, std::string_view(name));
  record.bind(2, newest);
  while (record.step()) continue;
  transaction.commit();
}

}  // namespace kelvar_platform
