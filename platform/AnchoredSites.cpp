#include "AnchoredSites.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <map>
#include <unordered_map>

#include "AnchorTable.h"
#include "EditTable.h"
#include "Sqlite.h"

namespace kelvar_platform {

namespace {

struct Place {
  std::string file;
  int line = 0;
  int column = 0;

  bool operator==(const Place&) const = default;
};

/// Combines the tables of edits and anchors. Anchors may refer to older edits, so the places of all edits are kept
/// meanwhile.
class Reader {
 public:
  explicit Reader(const Connection& connection) : connection_(connection) {}

  AnchoredSites read() {
    readDatabase(
        connection_, [this](const EditRow& row) { take(row); }, [](const StateRow&) {});
    readAnchors(
        connection_, [this](std::int64_t sequence, std::int64_t revision) { return isEdit(sequence, revision); },
        [this](AnchorRow&& anchor) { take(std::move(anchor)); });
    AnchoredSites all;
    readSources(connection_, [&](SourceRow&& source) { all.sources.push_back(std::move(source)); });
    std::int64_t greatest = 0;
    for (auto& [sequence, site] : sites_) {
      greatest = sequence;
      all.sites.push_back(std::move(site));
    }
    if (greatest == std::numeric_limits<std::int64_t>::max()) connection_.refuse("edit", "room for another sequence");
    all.nextSequence = greatest + 1;
    return all;
  }

 private:
  struct PastEdit {
    std::int64_t sequence = 0;
    Place place;
  };

  void take(const EditRow& row) {
    AnchoredSite& site = sites_[row.sequence];
    site.site = siteOf(row);
    site.revision = row.revision;
    edits_.emplace(row.revision, PastEdit{row.sequence, {std::string(row.file), row.line, row.column}});
  }

  [[nodiscard]] bool isEdit(std::int64_t sequence, std::int64_t revision) const {
    const auto edit = edits_.find(revision);
    return edit != edits_.end() && edit->second.sequence == sequence;
  }

  void take(AnchorRow&& anchor) {
    AnchoredSite& site = sites_[anchor.sequence];
    const Place now{site.site.file, site.site.line, site.site.column};
    site.movedByHand = !(edits_.at(anchor.revision).place == now);
    site.anchor = std::move(anchor);
  }

  const Connection& connection_;
  std::map<std::int64_t, AnchoredSite> sites_;
  std::unordered_map<std::int64_t, PastEdit> edits_;
};

void requireWritable(const std::string& path, const AnchoredEdits& edits) {
  for (const AnchoredEdits::Edit& edit : edits.edits) {
    const std::string place = "sequence " + std::to_string(edit.site.sequence);
    if (edit.appends) kelvar_platform::requireWritable(path, place, rowOf(edit.site));
    if (edit.anchor) kelvar_platform::requireWritable(path, *edit.anchor);
  }
  for (const SourceRow& source : edits.sources) kelvar_platform::requireWritable(path, source);
}

void write(const Connection& connection, const AnchoredSites& before, const AnchoredEdits& edits) {
  createAnchorTables(connection);
  EditWriter editWriter(connection);
  AnchorWriter anchorWriter(connection);
  for (const AnchoredEdits::Edit& edit : edits.edits) {
    std::int64_t revision = 0;
    if (edit.appends) {
      revision = editWriter.append(rowOf(edit.site));
    } else {
      const auto site =
          std::lower_bound(before.sites.begin(), before.sites.end(), edit.site.sequence,
                           [](const AnchoredSite& one, std::int64_t sequence) { return one.site.sequence < sequence; });
      revision = site->revision;
    }
    if (!edit.anchor) continue;
    AnchorRow anchor = *edit.anchor;
    anchor.sequence = edit.site.sequence;
    if (!edit.keepsRevision) anchor.revision = revision;
    anchorWriter.write(anchor);
  }
  for (const SourceRow& source : edits.sources) anchorWriter.write(source);
  for (const std::string& file : edits.forgottenSources) anchorWriter.forget(file);
}

}  // namespace

AnchoredSites readAnchoredSites(const std::string& path) {
  const Connection connection(path, Connection::Access::read);
  Transaction transaction(connection, Transaction::Kind::read);
  AnchoredSites all = Reader(connection).read();
  transaction.commit();
  return all;
}

void editAnchoredSites(const std::string& path, const std::function<AnchoredEdits(const AnchoredSites&)>& decide) {
  std::error_code error;
  if (!std::filesystem::exists(path, error) && !error) {
    const AnchoredEdits edits = decide({});
    if (edits.empty()) return;
    requireWritable(path, edits);
    const Connection connection(path, Connection::Access::create);
    Transaction transaction(connection, Transaction::Kind::write);
    // Another process may have created the file meanwhile; our decisions do not fit that one.
    if (!isBlank(connection)) connection.refuse("", "a file that nobody else makes at the same time");
    createTables(connection);
    write(connection, {}, edits);
    return transaction.commit();
  }
  const Connection connection(path, Connection::Access::create);
  Transaction transaction(connection, Transaction::Kind::write);
  const bool blank = isBlank(connection);
  const AnchoredSites before = blank ? AnchoredSites() : Reader(connection).read();
  const AnchoredEdits edits = decide(before);
  if (edits.empty()) return;
  requireWritable(path, edits);
  if (blank) createTables(connection);
  write(connection, before, edits);
  transaction.commit();
}

}  // namespace kelvar_platform
