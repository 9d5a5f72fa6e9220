#pragma once

#include <atomic>
#include <boost/container/deque.hpp>
#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "EditTable.h"
#include "KnownPaths.h"
#include "sitenotes.h"

namespace kelvar_platform {

class Annotation final : public sitenotes::annotation_t {
 public:
  Annotation(const sitenotes::locator_t& locator, const EditRow& row)
      : locator_(locator), label_(row.label), kind_(row.kind), disabled_(row.disabled) {}

  [[nodiscard]] const sitenotes::locator_t& get_locator() const override { return locator_; }
  [[nodiscard]] const std::string& get_label() const override { return label_; }
  [[nodiscard]] kind_t get_kind() const override { return kind_; }
  [[nodiscard]] bool disabled() const override { return disabled_; }

 private:
  sitenotes::locator_t locator_;
  std::string label_;
  kind_t kind_;
  bool disabled_;
};

/// The sequences in ascending order, and the index of each. Safe to read from several threads.
class SequenceIndex {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// In any order, with duplicates.
  explicit SequenceIndex(const std::vector<unsigned long>& sequences);

  [[nodiscard]] const std::vector<unsigned long>& all() const noexcept { return sequences_; }
  /// kNone if there is no such sequence. Sequences without gaps, and lookups in ascending order, need no search.
  [[nodiscard]] std::size_t find(unsigned long sequence) const noexcept;

 private:
  std::vector<unsigned long> sequences_;
  /// The index that the next lookup probably wants. A wrong guess costs a search.
  mutable std::atomic<std::size_t> next_ = 0;
};

/// Every edit of a database, oldest first, with the annotations that they made. Never changes after it is read, so all
/// states of the database share it and its annotations.
class AnnotationHistory {
 public:
  struct Edit {
    std::int64_t revision = 0;
    unsigned long sequence = 0;
    Annotation* annotation = nullptr;  ///< null: the edit removed the site
  };

  void append(const EditRow& row);

  [[nodiscard]] const std::vector<Edit>& edits() const noexcept { return edits_; }
  /// 0 before the first edit.
  [[nodiscard]] std::int64_t newestRevision() const noexcept { return edits_.empty() ? 0 : edits_.back().revision; }

 private:
  /// One block holds many annotations, and none ever moves.
  using Annotations =
      boost::container::deque<Annotation, void,
                              boost::container::deque_options_t<boost::container::block_bytes<1 << 16>>>;

  Annotations annotations_;
  std::vector<Edit> edits_;
  KnownPaths files_;
};

/// The sites as of one revision. Has no states of its own.
class AnnotationState : public sitenotes::database_t {
 public:
  /// As of `revision`: a greater one than the newest is the newest; 0 is before the first edit.
  AnnotationState(boost::shared_ptr<const AnnotationHistory> history, std::int64_t revision);

  std::vector<unsigned long> get_sequences() override { return sequences_.all(); }
  bool is_sequence_alive(unsigned long id) override { return annotationOf(id) != nullptr; }
  boost::shared_ptr<sitenotes::annotation_t> get_latest_annotation(unsigned long id) override;
  boost::shared_ptr<sitenotes::database_t> get_state(const std::string& path) override;
  boost::shared_ptr<sitenotes::database_t> make_state(const std::string& path, bool) override;

 protected:
  [[nodiscard]] const boost::shared_ptr<const AnnotationHistory>& history() const noexcept { return history_; }

 private:
  [[nodiscard]] Annotation* annotationOf(unsigned long id) const noexcept;

  boost::shared_ptr<const AnnotationHistory> history_;
  SequenceIndex sequences_;
  std::vector<Annotation*> newest_;  // by the index of the sequence; null for a site that is not alive
};

}  // namespace kelvar_platform
