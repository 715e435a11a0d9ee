#pragma once

#include <memory>
#include <utility>

#include "show/lists/LinkedList.h"

namespace vex {

/// A list of one node that holds obj. Lists are made in no other way.
template <class T>
std::shared_ptr<LinkedList<T>> NewLinkedList(std::shared_ptr<T> obj) {
  auto list = std::make_shared<LinkedList<T>>();
  Node<T>* const node = list->NewNode(std::move(obj), nullptr, nullptr);
  list->FirstNode(node);
  list->LastNode(node);
  list->Count(1);
  return list;
}

}  // namespace vex
