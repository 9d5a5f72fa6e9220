#include "AnnotationHistory.h"

#include <algorithm>
#include <span>
#include <utility>

namespace kelvar_platform {

namespace {

using Edits = std::span<const AnnotationHistory::Edit>;

Edits editsUpTo(const AnnotationHistory& history, std::int64_t revision) {
  const Edits all = history.edits();
  const auto end = std::partition_point(all.begin(), all.end(),
                                        [&](const AnnotationHistory::Edit& edit) { return edit.revision <= revision; });
  return {all.begin(), end};
}

std::vector<unsigned long> sequencesOf(Edits edits) {
  std::vector<unsigned long> sequences(edits.size());
  std::transform(edits.begin(), edits.end(), sequences.begin(),
                 [](const AnnotationHistory::Edit& edit) { return edit.sequence; });
  return sequences;
}

}  // namespace

SequenceIndex::SequenceIndex(const std::vector<unsigned long>& sequences) {
  // Sites are mostly added in the order of their sequences and edited later, so few are out of order.
  std::vector<unsigned long> others;
  sequences_.reserve(sequences.size());
  for (const unsigned long sequence : sequences) {
    (sequences_.empty() || sequence > sequences_.back() ? sequences_ : others).push_back(sequence);
  }
  std::sort(others.begin(), others.end());
  const auto ascending = sequences_.insert(sequences_.end(), others.begin(), others.end());
  std::inplace_merge(sequences_.begin(), ascending, sequences_.end());
  sequences_.erase(std::unique(sequences_.begin(), sequences_.end()), sequences_.end());
}

std::size_t SequenceIndex::find(unsigned long sequence) const noexcept {
  if (sequences_.empty() || sequence < sequences_.front() || sequence > sequences_.back()) return kNone;
  // They ascend without duplicates, so the sequence bounds its index from both ends. Without gaps, one index is left.
  const std::size_t size = sequences_.size();
  const std::size_t last = std::min<std::size_t>(sequence - sequences_.front(), size - 1);
  const std::size_t first = size - 1 - std::min<std::size_t>(sequences_.back() - sequence, size - 1);
  if (first < last) {
    const std::size_t guess = next_.load(std::memory_order_relaxed);
    if (guess < size && sequences_[guess] == sequence) return guess;
    if (guess + 1 < size && sequences_[guess + 1] == sequence) {
      next_.store(guess + 1, std::memory_order_relaxed);
      return guess + 1;
    }
  }
  const auto begin = sequences_.begin();
  const auto end = begin + static_cast<std::ptrdiff_t>(last + 1);
  const auto found = std::lower_bound(begin + static_cast<std::ptrdiff_t>(first), end, sequence);
  if (found == end || *found != sequence) return kNone;
  const auto index = static_cast<std::size_t>(found - begin);
  if (first < last) next_.store(index, std::memory_order_relaxed);
  return index;
}

void AnnotationHistory::append(const EditRow& row) {
  Annotation* annotation = nullptr;
  if (row.alive) {
    const sitenotes::locator_t place(files_.of(row.file), row.line, row.column);
    annotation = &annotations_.emplace_back(place, row);
  }
  // cppcheck-suppress danglingTemporaryLifetime; the annotation is the deque's
  edits_.push_back({row.revision, static_cast<unsigned long>(row.sequence), annotation});
}

AnnotationState::AnnotationState(boost::shared_ptr<const AnnotationHistory> history, std::int64_t revision)
    : history_(std::move(history)), sequences_(sequencesOf(editsUpTo(*history_, revision))) {
  newest_.resize(sequences_.all().size());
  const Edits edits = editsUpTo(*history_, revision);
  for (const AnnotationHistory::Edit& edit : edits) {
    newest_[sequences_.find(edit.sequence)] = edit.annotation;
  }
}

boost::shared_ptr<sitenotes::annotation_t> AnnotationState::get_latest_annotation(unsigned long id) {
  Annotation* annotation = annotationOf(id);
  if (annotation == nullptr) return {};
  return {history_, annotation};  // shares the ownership of the history, which owns the annotation
}

boost::shared_ptr<sitenotes::database_t> AnnotationState::get_state(const std::string&) {
  return {};
}

boost::shared_ptr<sitenotes::database_t> AnnotationState::make_state(const std::string&, bool) {
  return {};
}

Annotation* AnnotationState::annotationOf(unsigned long id) const noexcept {
  const std::size_t index = sequences_.find(id);
  return index == SequenceIndex::kNone ? nullptr : newest_[index];
}

}  // namespace kelvar_platform
