#pragma once

#include <algorithm>
#include <boost/container/static_vector.hpp>
#include <cstddef>
#include <iterator>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace kelvar_2_1_7 {

/// A stable merge sort for any relation: even where `before` is no strict weak order, no element ends up `before` its
/// left neighbour, and the sort stays in bounds and terminates in O(n log n). It merges the runs that are there
/// already, ascending or strictly descending, in the order that keeps merges of unequal length few (powersort, Munro
/// and Wild 2018): a sorted list takes one pass.
template <class Record, class Before>
class MergeSort {
 public:
  /// `buffer` only lends its memory; it grows as far as merges need it.
  MergeSort(std::span<Record> records, std::vector<Record>& buffer, Before before)
      : begin_(records.data()), end_(begin_ + records.size()), buffer_(buffer), before_(before) {}

  void sort() {
    for (Record* next = begin_; next != end_; next = last_.end) push(nextRun(next));
    mergeDeeperThan(0);
  }

 private:
  struct Run {
    Record* begin;
    Record* end;
  };
  struct Pending {
    Run run;
    int depth;  // of the merge with the run behind it; deeper merges come first
  };
  static constexpr int kDepths = std::numeric_limits<std::size_t>::digits + 2;
  static constexpr std::ptrdiff_t kShortRun = 12;  // shorter runs are extended by insertion

  Run nextRun(Record* begin) {
    Record* end = begin + 1;
    if (end != end_ && before_(*end, *begin)) {
      while (++end != end_ && before_(*end, end[-1])) {
      }
      std::reverse(begin, end);
    } else {
      while (end != end_ && !before_(*end, end[-1])) ++end;
    }
    if (end - begin >= kShortRun) return {begin, end};
    Record* const enough = begin + std::min(kShortRun, end_ - begin);
    for (; end != enough; ++end) insert(begin, end);
    return {begin, enough};
  }

  void insert(Record* begin, Record* from) {
    Record record = std::move(*from);
    Record* hole = from;
    for (; hole != begin && before_(record, hole[-1]); --hole) *hole = std::move(hole[-1]);
    *hole = std::move(record);
  }

  /// How deep the merge of two neighbouring runs is in the tree of merges that halves the list again and again.
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

  /// Adds the next run; those before it are merged as far as they need not wait for it.
  void push(const Run& next) {
    if (next.begin != begin_) {
      const int depth = depthOf(last_, next);
      mergeDeeperThan(depth);
      pending_.push_back({last_, depth});
    }
    last_ = next;
  }

  void mergeDeeperThan(int depth) {
    while (!pending_.empty() && pending_.back().depth > depth) {
      merge(pending_.back().run, last_);
      last_.begin = pending_.back().run.begin;
      pending_.pop_back();
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
      // The outcome is unpredictable, so no branch depends on it.
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
  Run last_{};
  boost::container::static_vector<Pending, kDepths> pending_;
};

/// Sorts stably by any relation.
template <class Record, class Before>
void mergeSort(std::span<Record> records, std::vector<Record>& buffer, Before before) {
  MergeSort(records, buffer, before).sort();
}

}  // namespace kelvar_2_1_7
