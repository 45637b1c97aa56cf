#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace zth::widgets {

/// A queue of the newest `Limit()` entries: pushing to a full ring drops the oldest. Memory grows as the ring fills, up
/// to what the limit needs.
template <class T>
class Ring {
 public:
  /// `limit` is a power of two, at least 64.
  explicit Ring(std::size_t limit) : limit_(limit) {}

  void Push(const T& entry) {
    if (size_ == slots_.size()) {
      if (slots_.size() < limit_) {
        Grow();
      } else {
        DropFront();
      }
    }
    slots_[(head_ + size_) & (slots_.size() - 1)] = entry;
    ++size_;
  }

  /// The ring must not be empty.
  void DropFront() {
    head_ = (head_ + 1) & (slots_.size() - 1);
    --size_;
  }

  /// Also releases the memory.
  void Clear() {
    slots_ = std::vector<T>();  // = {} would keep the memory
    head_ = size_ = 0;
  }

  /// Index 0 is the oldest.
  const T& operator[](std::size_t index) const { return slots_[(head_ + index) & (slots_.size() - 1)]; }
  /// The entries from `begin` up to `end`, as far as they are in one piece of memory.
  std::span<const T> Straight(std::size_t begin, std::size_t end) const {
    if (begin >= end) return {};
    const std::size_t first = (head_ + begin) & (slots_.size() - 1);
    return {slots_.data() + first, std::min(end - begin, slots_.size() - first)};
  }
  const T& Front() const { return (*this)[0]; }
  const T& Back() const { return (*this)[size_ - 1]; }
  bool Empty() const { return size_ == 0; }
  std::size_t Size() const { return size_; }
  std::size_t Limit() const { return limit_; }
  std::size_t Bytes() const { return slots_.capacity() * sizeof(T); }

  /// The first index whose entry does not satisfy `before`. `before` must hold for a leading part of the ring only.
  template <class Predicate>
  std::size_t PartitionPoint(Predicate before) const {
    std::size_t low = 0;
    std::size_t high = size_;
    while (low < high) {
      const std::size_t middle = (low + high) / 2;
      if (before((*this)[middle])) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }

 private:
  void Grow() {
    std::vector<T> larger(std::min(limit_, std::max<std::size_t>(64, slots_.size() * 2)));
    for (std::size_t i = 0; i < size_; ++i) larger[i] = (*this)[i];
    slots_.swap(larger);
    head_ = 0;
  }

  std::vector<T> slots_;
  std::size_t head_ = 0;
  std::size_t size_ = 0;
  std::size_t limit_;
};

}  // namespace zth::widgets
