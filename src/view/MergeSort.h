#pragma once

#include <algorithm>
#include <boost/container/static_vector.hpp>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace kelvar_2_1_7 {

/// A stable merge sort for any relation: where `before` is no strict weak order, neighbours still never stand against
/// it, and the sort stays in bounds and terminates in O(n log n). It merges the runs that stand already, ascending or
/// strictly descending, in the order that keeps merges of unequal length few ("powersort"): a sorted list takes one
/// pass.
template <class Record, class Before>
class MergeSort {
 public:
  /// `buffer` only lends its memory; it grows as far as merges need it.
  MergeSort(std::span<Record> records, std::vector<Record>& buffer, Before before)
      : begin_(records.data()), end_(begin_ + records.size()), buffer_(buffer), before_(before) {}

  void sort() {
    for (Record* next = begin_; next != end_; next = last_.end) take(nextRun(next));
    mergeDeeper(0);
  }

  /// Sorts records that are no more than a few ascending lists, one behind the other. Answers whether they are; if not,
  /// they are left as they were.
  bool sortFewRuns() {
    boost::container::static_vector<Run, kFewRuns> runs;
    for (Record* next = begin_; next != end_; next = runs.back().end) {
      if (runs.size() == kFewRuns) return false;
      runs.push_back({next, endOfRising(next)});
    }
    for (const Run& run : runs) take(run);
    mergeDeeper(0);
    return true;
  }

 private:
  struct Run {
    Record* begin;
    Record* end;
  };
  struct Waiting {
    Run run;
    int depth;  // of the merge with the run behind it; a deeper merge comes earlier
  };
  static constexpr int kDepths = std::numeric_limits<std::size_t>::digits + 2;
  static constexpr std::ptrdiff_t kShortRun = 12;  // shorter ones are sorted on by insertion
  static constexpr std::size_t kFewRuns = 4;

  Run nextRun(Record* begin) {
    Record* end = begin + 1;
    if (end != end_ && before_(*end, *begin)) {
      while (++end != end_ && before_(*end, end[-1])) {
      }
      std::reverse(begin, end);
    } else if (end != end_) {
      end = endOfRising(end);
    }
    if (end - begin >= kShortRun) return {begin, end};
    Record* const enough = begin + std::min(kShortRun, end_ - begin);
    for (; end != enough; ++end) insert(begin, end);
    return {begin, enough};
  }

  /// Where the ascending list ends that a record belongs to.
  Record* endOfRising(Record* record) {
    while (++record != end_ && !before_(*record, record[-1])) {
    }
    return record;
  }

  void insert(Record* begin, Record* from) {
    Record record = std::move(*from);
    Record* hole = from;
    for (; hole != begin && before_(record, hole[-1]); --hole) *hole = std::move(hole[-1]);
    *hole = std::move(record);
  }

  /// How deep the merge of two neighbouring runs lies in the tree of merges that halves the list again and again.
  int depthOf(const Run& left, const Run& right) const {
    const std::ptrdiff_t size = end_ - begin_;
    std::ptrdiff_t middleOfLeft = (left.begin - begin_) + (left.end - begin_);  // doubled
    std::ptrdiff_t middleOfRight = (right.begin - begin_) + (right.end - begin_);
    for (int depth = 1;; ++depth) {
      if (middleOfLeft >= size) {
        middleOfLeft -= size;
        middleOfRight -= size;
      } else if (middleOfRight >= size) {
        return depth;
      }
      middleOfLeft *= 2;
      middleOfRight *= 2;
    }
  }

  /// The next run is known: those before it are merged as far as it does not have to wait for them.
  void take(const Run& next) {
    if (next.begin != begin_) {
      const int depth = depthOf(last_, next);
      mergeDeeper(depth);
      waiting_.push_back({last_, depth});
    }
    last_ = next;
  }

  /// Merges the last run with those that wait before it for merges deeper than `depth`.
  void mergeDeeper(int depth) {
    while (!waiting_.empty() && waiting_.back().depth > depth) {
      merge(waiting_.back().run, last_);
      last_.begin = waiting_.back().run.begin;
      waiting_.pop_back();
    }
  }

  void merge(const Run& leftRun, const Run& rightRun) {
    if (!before_(*rightRun.begin, leftRun.end[-1])) return;
    buffer_.assign(std::move_iterator(leftRun.begin), std::move_iterator(leftRun.end));
    Record* left = buffer_.data();
    Record* const leftEnd = left + buffer_.size();
    Record* right = rightRun.begin;
    Record* to = leftRun.begin;
    while (left != leftEnd && right != rightRun.end) {
      // Which of the two it is cannot be foretold: chosen without a branch.
      const bool takesRight = before_(*right, *left);
      Record* const from = takesRight ? right : left;
      *to++ = std::move(*from);
      right += takesRight;
      left += !takesRight;
    }
    std::move(left, leftEnd, to);
  }

  Record* begin_;
  Record* end_;
  std::vector<Record>& buffer_;
  Before before_;
  Run last_{};  // waits for the one behind it to be known
  boost::container::static_vector<Waiting, kDepths> waiting_;
};

/// Sorts stably by any relation.
template <class Record, class Before>
void mergeSort(std::span<Record> records, std::vector<Record>& buffer, Before before) {
  MergeSort(records, buffer, before).sort();
}

}  // namespace kelvar_2_1_7
