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
    if (end_ - begin_ < 2) return;
    Run last = nextRun(begin_);
    while (last.end != end_) {
      const Run next = nextRun(last.end);
      const int depth = depthOf(last, next);
      last = mergeDeeper(last, depth);
      waiting_.push_back({last, depth});
      last = next;
    }
    mergeDeeper(last, 0);
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

  Run nextRun(Record* begin) {
    Record* end = begin + 1;
    if (end != end_ && before_(*end, *begin)) {
      while (++end != end_ && before_(*end, end[-1])) {
      }
      std::reverse(begin, end);
    } else if (end != end_) {
      while (++end != end_ && !before_(*end, end[-1])) {
      }
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

  /// Merges `last` with the waiting runs before it whose merges lie deeper than `depth`.
  Run mergeDeeper(Run last, int depth) {
    while (!waiting_.empty() && waiting_.back().depth > depth) {
      merge(waiting_.back().run, last);
      last.begin = waiting_.back().run.begin;
      waiting_.pop_back();
    }
    return last;
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
  boost::container::static_vector<Waiting, kDepths> waiting_;
};

/// Sorts stably by any relation.
template <class Record, class Before>
void mergeSort(std::span<Record> records, std::vector<Record>& buffer, Before before) {
  MergeSort(records, buffer, before).sort();
}

}  // namespace kelvar_2_1_7
