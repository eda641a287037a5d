#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

namespace quenlatrix::collect {

template <typename T>
struct ListNode {
  // One by one: nodes that free each other would need the stack of a long list's length.
  ~ListNode() {
    while (next != nullptr) {
      next = std::move(next->next);
    }
  }

  std::unique_ptr<ListNode> next;
  T element;
};

// What iterators of a list, const or not, throw at its end.
template <typename T>
struct ListEnd {
  class EndOfListError {
   public:
    virtual ~EndOfListError() = default;
  };
};

// A place in a list, for loops over its elements; const when T is. Good until its element is
// removed.
template <typename T>
class ListIterators {
  using Node = ListNode<std::remove_const_t<T>>;

 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = std::remove_const_t<T>;
  using difference_type = std::ptrdiff_t;
  using pointer = T*;
  using reference = T&;
  using EndOfListError = typename ListEnd<std::remove_const_t<T>>::EndOfListError;

  ListIterators() = default;
  explicit ListIterators(Node* node) : node(node) {}

  // Throws EndOfListError at the end.
  T& operator*() const {
    if (node == nullptr) {
      throw EndOfListError();
    }
    return node->element;
  }
  T* operator->() const { return &**this; }

  // Stays at the end.
  ListIterators& operator++() {
    node = node == nullptr ? nullptr : node->next.get();
    return *this;
  }
  ListIterators operator++(int) {
    const ListIterators before = *this;
    ++*this;
    return before;
  }

  bool operator==(const ListIterators&) const = default;

 private:
  Node* node = nullptr;
};

// A singly linked list that owns its elements, for few of them: whatever looks for one, the end
// included, walks from the first. Of a list of pointers it owns the pointers alone.
//
// Threads: as for a standard container.
template <typename T>
class Lists {
 public:
  Lists() = default;
  virtual ~Lists() = default;

  // Copies of elements, in the same order: without a walk for each.
  template <typename Iterator>
  Lists(Iterator begin, Iterator end) {
    std::unique_ptr<ListNode<T>>* place = &first;
    for (; begin != end; ++begin) {
      *place = MakeNode(*begin);
      place = &(*place)->next;
    }
  }
  Lists(const Lists& other) : Lists(other.begin(), other.end()) {}
  Lists& operator=(const Lists& other) {
    if (this != &other) {
      Lists copy(other);
      swap(copy);
    }
    return *this;
  }
  void swap(Lists& other) noexcept { std::swap(first, other.first); }

  ListIterators<T> begin() { return ListIterators<T>(first.get()); }
  ListIterators<T> end() { return {}; }
  ListIterators<const T> begin() const { return ListIterators<const T>(first.get()); }
  ListIterators<const T> end() const { return {}; }

  bool isEmpty() const { return first == nullptr; }

  // Appends a copy, and gives it: lent, the list owns it.
  T& append(const T& element) {
    std::unique_ptr<ListNode<T>>* end = &first;
    while (*end != nullptr) {
      end = &(*end)->next;
    }
    *end = MakeNode(element);
    return (*end)->element;
  }

  // Removes the first element that equals `sample`, which may be that element itself. False when
  // there is none.
  bool remove(const T& sample) {
    std::unique_ptr<ListNode<T>>* place = &first;
    while (*place != nullptr && !((*place)->element == sample)) {
      place = &(*place)->next;
    }
    if (*place == nullptr) {
      return false;
    }
    *place = std::move((*place)->next);
    return true;
  }

  void removeAll() { first.reset(); }

 private:
  static std::unique_ptr<ListNode<T>> MakeNode(const T& element) {
    return std::unique_ptr<ListNode<T>>(new ListNode<T>{nullptr, element});
  }

  std::unique_ptr<ListNode<T>> first;
};

}  // namespace quenlatrix::collect
