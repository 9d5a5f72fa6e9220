/// Any bytes as a program for the data object: annotations, results with any views and values, adds, settings, faults,
/// reads. After each step the object must agree with its plain twin, in the chosen order.
#include <boost/algorithm/string/replace.hpp>
#include <boost/make_shared.hpp>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "PlainData.h"
#include "kelvar/SummaryData.h"
#include "support/Faults.h"
#include "support/Rows.h"
#include "view/PlainOrderings.h"

using namespace kelvar_2_1_7;

namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// Of rows that differ only in the selection mark, either may come first, and be the one that a join folds.
std::string unmarked(const std::string& rows) {
  return boost::replace_all_copy(rows, ", selected", "");
}

/// Choices, one byte each; zeros after the end of the input.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}
  [[nodiscard]] bool empty() const { return at_ == end_; }
  int below(int limit) { return (at_ == end_ ? 0 : *at_++) % limit; }
  bool flag() { return below(2) != 0; }

  /// A few equal values, some special ones, and any others.
  double real() {
    using Limits = std::numeric_limits<double>;
    constexpr double kReals[] = {0,    -0.0, 1,  2.5, -1, 1e308,        5e-324, Limits::infinity(), -Limits::infinity(),
                                 1e20, -7.5, 12, 0.1, 3,  Limits::max()};
    const int choice = below(18);
    if (choice < 15) return kReals[choice];
    if (choice == 15) return Limits::quiet_NaN();
    double number = 0;
    std::uint64_t bits = 0;
    for (int i = 0; i < 8; ++i) bits = bits << 8 | static_cast<std::uint64_t>(below(256));
    std::memcpy(&number, &bits, sizeof number);
    return number;
  }
  int integer() {
    constexpr int kIntegers[] = {0, 1, 2, -1, 7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 100};
    return kIntegers[below(8)];
  }
  std::string label() {
    static const std::string labels[] = {"",          "a",
                                         "b",         "__too deep__",
                                         "%s%n",      "solver-of-equations-1",
                                         {"a\0b", 3}, "a very long label, longer than three words",
                                         "\xC3\xA9",  std::string(300, 'x')};
    return labels[below(10)];
  }
  std::string place() {
    constexpr const char* kPlaces[] = {
        "", "f.cpp:1", "d/f.cpp:1", "d/f.cpp:2", "f.cpp:2:3", "g.h:1", "d/g.h:1:2147483647", ":3", "e/d/f.cpp:1"};
    return kPlaces[below(9)];
  }
  support::Kind kind() { return static_cast<support::Kind>(flag() ? 2 * below(3) : below(19)); }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

void tell(Bytes& bytes, support::FakeDatabase& database, support::FakeDatabase* shared) {
  const unsigned long handle =
      bytes.flag() ? static_cast<unsigned long>(bytes.below(9)) : ~0UL - static_cast<unsigned long>(bytes.below(2));
  const std::string label = bytes.label();
  const std::string place = bytes.place();
  const support::Kind kind = bytes.kind();
  const int state = bytes.below(8);  // mostly alive and enabled
  const auto latest = state == 7 ? nullptr : support::annotation(label, place, kind, state == 6);
  database.site(handle, latest, state != 5);
  if (shared) shared->site(handle, latest, state != 5);
}

support::FakeDetail detail(Bytes& bytes) {
  const std::string label = bytes.label();
  support::FakeDetail detail(label, bytes.place());
  detail.kind(static_cast<digestio::SummaryDetailKind>(bytes.below(3))).reports(bytes.kind());
  const int views = bytes.below(64);
  if (views & 1) detail.survey({bytes.real(), bytes.integer(), bytes.integer()});
  if (views & 2) detail.vectorization({bytes.integer(), bytes.real(), bytes.real(), bytes.integer(), bytes.integer()});
  if (views & 4) detail.suitability({bytes.real(), bytes.integer(), 0, bytes.real(), bytes.real()});
  if (views & 8) detail.correctness({bytes.integer(), {bytes.integer(), bytes.integer()}});
  if (views & 16) detail.map({{bytes.integer(), bytes.integer(), bytes.integer()}});
  if (views == 63) detail.missing();
  return detail;
}

support::Collection collection(Bytes& bytes) {
  support::Collection collection{.kind = static_cast<digestio::SummaryDataKind>(bytes.below(5)),
                                 .processors = bytes.integer(),
                                 .threads = bytes.integer(),
                                 .paradigm = bytes.integer(),
                                 .target = bytes.integer(),
                                 .gain = bytes.real()};
  for (int count = bytes.below(9); count > 0; --count) collection.details.push_back(detail(bytes));
  return collection;
}

bool hasNaN(const SummaryItem& item) {
  const auto* survey = item.surveyDetail();
  const auto* loop = item.surveyVectorizationDetail();
  const auto* gain = item.suitabilityDetail();
  return (survey && std::isnan(survey->cpuTime())) || (loop && std::isnan(loop->selfTime())) ||
         (loop && std::isnan(loop->totalTime())) ||
         (gain &&
          (std::isnan(gain->selfTime()) || std::isnan(gain->siteMaxGain()) || std::isnan(gain->totalMaxGain())));
}

/// Whether the ordering of two items at one place is not a strict weak order.
bool mayGoRound(const SummaryItem& a, const SummaryItem& b) {
  return a.locator().display_order(b.locator()) == 0 && a.annotationKind() != b.annotationKind() &&
         (a.detailKind() != 0 || b.detailKind() != 0);
}

/// Neighbours never come against the ordering; where it orders strictly and weakly, no two items do.
void requireOrder(const SummaryItems& items, SummaryMapping mapping, bool reverse) {
  bool orders = true;
  for (std::size_t i = 0; i < items.size(); ++i) {
    orders = orders && !hasNaN(*items[i]);
    for (std::size_t j = 0; j < i; ++j) orders = orders && !mayGoRound(*items[i], *items[j]);
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    for (std::size_t j = orders ? 0 : i - (i != 0); j < i; ++j) {
      const bool against =
          reverse ? plainlyBefore(mapping, items[j], items[i]) : plainlyBefore(mapping, items[i], items[j]);
      require(!against, "no item comes against the ordering");
    }
  }
}

/// The object, its twin and their collaborators.
class Run {
 public:
  explicit Run(Bytes bytes) : bytes_(bytes) {
    for (int count = bytes_.below(12); count > 0; --count) {
      tell(bytes_, *database_, bytes_.flag() ? state_.get() : nullptr);
    }
    for (int count = bytes_.below(6); count > 0; --count) tell(bytes_, *state_, nullptr);
    const bool recorded = bytes_.flag();
    for (const char* path : {"r", "r/surveyvectorization"}) {
      if (recorded) database_->state(path, state_);
      database_->makes(path, state_);
    }
    if (bytes_.below(8) != 0) suite_.scanner(database_);
    data_.emplace(database_);
    plain_.emplace(*database_);
  }

  void run() {
    compare();
    for (int steps = 0; steps < 32 && !bytes_.empty(); ++steps) {
      step(bytes_.below(8));
      if (bytes_.below(4) != 0) compare();  // otherwise the next step starts with a stale view
    }
    for (int kind = 0; kind < 5; ++kind) enableKind(kind, true);
    for (int kind = 0; kind < 3; ++kind) enableDetailKind(kind, true, sitenotes::annotation_t::all_kinds);
    compare();
    require(static_cast<std::size_t>(data_->num_items()) == plain_->count(), "every item is in one of the lists");
  }

 private:
  void step(int operation) {
    switch (operation) {
      case 0:
      case 1:
        return adds_++ < kMostAdds ? add() : order();
      case 2:
        return enableKind(bytes_.below(5), bytes_.flag());
      case 3:
        return enableDetailKind(bytes_.below(3), bytes_.flag(), bytes_.below(20));
      case 4:
        return order();
      case 5:
        return select();
      case 6:
        return tell(bytes_, *database_, nullptr);  // items keep their annotations
      default:
        return readLocators();
    }
  }

  /// With a fault in most cases: whichever call fails, the object is unchanged, and a second attempt succeeds. No read
  /// comes before, since it would drop the state that joins pass on.
  void add() {
    const support::Collection collection = ::collection(bytes_);
    const std::string path = bytes_.flag() ? "r" : "r/surveyvectorization";
    suite_.loads(path, collection);
    suite_.opens("r", {.hostName = "host", .collectionStart = 7, .collectionEnd = 3, .cpuCount = bytes_.integer()});
    data_->addSummaryData("nowhere", {});
    const bool known = bytes_.flag();
    if (!known) return add(path, collection);
    if (interrupted([&] { data_->addSummaryData(path, {}); })) {
      if (bytes_.flag()) compare();
      add(path, collection);
    } else {
      plain_->add(collection, suite_.installed ? state_.get() : nullptr);
    }
  }
  void add(const std::string& path, const support::Collection& collection) {
    data_->addSummaryData(path, {});
    plain_->add(collection, suite_.installed ? state_.get() : nullptr);
  }

  /// Whether a fault struck `attempt`: a call to a collaborator or an allocation that fails.
  template <class Attempt>
  bool interrupted(Attempt attempt) {
    const long at = 1 + bytes_.below(256) + (bytes_.flag() ? 256 * bytes_.below(4) : 0);
    try {
      if (bytes_.flag()) {
        const support::CallFault fault(at);
        attempt();
      } else {
        const support::AllocationFault fault(at);
        attempt();
      }
    } catch (const support::Fault&) {
      return true;
    } catch (const std::bad_alloc&) {
      return true;
    }
    return false;
  }

  void enableKind(int kind, bool enable) {
    data_->setSummaryKindEnable(static_cast<digestio::SummaryDataKind>(kind), enable);
    plain_->enableKind(kind, enable);
  }
  void enableDetailKind(int kind, bool enable, int annotationKind) {
    data_->setSummaryDetailKindFilter(enable, static_cast<digestio::SummaryDetailKind>(kind),
                                      static_cast<support::Kind>(annotationKind));
    if (kind == 0) {
      plain_->enableAnnotationKind(annotationKind, enable);
    } else {
      plain_->enableDetailKind(kind, enable);
    }
  }
  void order() {
    mapping_ = static_cast<SummaryMapping>(bytes_.below(kSummaryMappingCount + 1));  // the last is none
    reverse_ = bytes_.flag();
    data_->setMapping(mapping_, reverse_);
    plain_->order(mapping_, reverse_);
  }
  void select() {
    const int count = data_->num_items();
    SummaryItems& items = plain_->view();  // a read changes the list that the next join starts from
    if (count == 0) return;
    const int index = bytes_.below(count);
    const bool selected = bytes_.flag();
    data_->item(index)->setSelected(selected);
    items[static_cast<std::size_t>(index)]->setSelected(selected);
  }

  void readLocators() {
    static_cast<void>(plain_->view());
    for (int i = 0; i < data_->num_items(); ++i) {
      SummaryItem& item = *data_->item(i);
      sitenotes::locator_t now = item.locator();
      unsigned long handle = 1;
      const bool known = item.getCurrentLocator(now, handle);
      const unsigned long annotated = item.annotation() ? item.handle() : 0;
      require(known != now.is_null() && handle == annotated, "the current place has the item's handle");
      const auto latest = annotated != 0 ? database_->get_latest_annotation(annotated) : nullptr;
      if (latest && !latest->get_locator().is_null()) {
        require(now.display_order(latest->get_locator()) == 0, "a site is where its newest annotation is");
      }
      for (int kind = 0; kind < 5; ++kind) {
        const auto dataKind = static_cast<digestio::SummaryDataKind>(kind);
        const bool seen = item.getCollectionLocator(dataKind, now, handle);
        require(seen != now.is_null() && (!seen || item.summaryDetail(dataKind)), "a detail has a place");
      }
    }
  }

  void compare() {
    SummaryItems& items = plain_->view();
    const std::string rows = support::rows(items);
    if (bytes_.flag()) static_cast<void>(interrupted([&] { static_cast<void>(data_->num_items()); }));
    require(unmarked(support::rows(*data_)) == unmarked(rows), "the rows are those of the plain twin");
    requireOrder(items, mapping_, reverse_);
    const bool verbose = bytes_.flag();
    std::string written;
    data_->write(verbose, [&](std::string_view piece) { written += piece; });
    require(data_->asString(verbose) == written, "one state gives one text");
    for (int kind = 0; kind < 5; ++kind) {
      require(data_->summaryDataStatus(static_cast<digestio::SummaryDataKind>(kind)) == plain_->status(kind),
              "statuses");
    }
    require(
        data_->hasSurveyData() == plain_->has(digestio::kSurvey) && data_->hasMAPData() == plain_->has(digestio::kMap),
        "what items have data of");
  }

  Bytes bytes_;
  support::Suite suite_;
  static constexpr int kMostAdds = 5;  // more items cost the twin time and would find no more
  int adds_ = 0;
  boost::shared_ptr<support::FakeDatabase> database_ = boost::make_shared<support::FakeDatabase>();
  boost::shared_ptr<support::FakeDatabase> state_ = boost::make_shared<support::FakeDatabase>("state");
  std::optional<SummaryData> data_;
  std::optional<PlainData> plain_;
  SummaryMapping mapping_ = kSortLocator;
  bool reverse_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Run(Bytes(data, size)).run();
  return 0;
}
