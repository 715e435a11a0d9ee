#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "basic/Collection.h"
#include "basic/Error.h"
#include "basic/Number.h"
#include "show/lists/Node.h"

namespace vex {

/// A doubly linked list that is never empty: it is made around its first object, and its only node cannot
/// be deleted. The weekly schedule keeps its chain of show events in one.
///
/// Walking NextNode from FirstNode visits Count nodes and ends at LastNode. Nodes() holds every node ever
/// made for the list: a deleted one is only unlinked, and keeps its own links and object until the list
/// goes. A null node is the caller's error and raises ErrorObjectNotSet.
template <class T>
class LinkedList {
 public:
  using NodeCollection = Collection<std::shared_ptr<Node<T>>>;

  [[nodiscard]] const NodeCollection& Nodes() const { return m_Nodes; }
  [[nodiscard]] Node<T>* FirstNode() const { return m_FirstNode; }
  void FirstNode(Node<T>* node) { m_FirstNode = node; }
  [[nodiscard]] Node<T>* LastNode() const { return m_LastNode; }
  void LastNode(Node<T>* node) { m_LastNode = node; }
  [[nodiscard]] int32_t Count() const { return m_Count; }
  void Count(int32_t lCount) { m_Count = lCount; }

  void InsertAfter(Node<T>* node, std::shared_ptr<T> obj) {
    Node<T>& before = Required(node);
    Node<T>* const added = NewNode(std::move(obj), node, before.NextNode());
    if (before.NextNode()) before.NextNode()->PreviousNode(added);
    before.NextNode(added);
    m_Count = CheckedAdd(m_Count, 1);
    if (m_LastNode == node) m_LastNode = added;
  }

  void InsertBefore(Node<T>* node, std::shared_ptr<T> obj) {
    Node<T>& after = Required(node);
    Node<T>* const added = NewNode(std::move(obj), after.PreviousNode(), node);
    if (after.PreviousNode()) after.PreviousNode()->NextNode(added);
    after.PreviousNode(added);
    m_Count = CheckedAdd(m_Count, 1);
    if (m_FirstNode == node) m_FirstNode = added;
  }

  /// Raises number 1, "LinkedList.DeleteNode", "Can't delete only node". Membership is not checked.
  void DeleteNode(Node<T>* node) {
    if (m_Count == 1) throw Error(1, "LinkedList.DeleteNode", "Can't delete only node");
    Node<T>* const previous = Required(node).PreviousNode();
    Node<T>* const next = node->NextNode();
    if (!previous) {
      m_FirstNode = next;
      Required(next).PreviousNode(nullptr);
    } else if (!next) {
      m_LastNode = previous;
      previous->NextNode(nullptr);
    } else {
      previous->NextNode(next);
      next->PreviousNode(previous);
    }
    m_Count = CheckedSubtract(m_Count, 1);
  }

 private:
  template <class U>
  friend std::shared_ptr<LinkedList<U>> NewLinkedList(std::shared_ptr<U> obj);

  Node<T>* NewNode(std::shared_ptr<T> obj, Node<T>* previous, Node<T>* next) {
    auto node = std::make_shared<Node<T>>();
    node->Obj(std::move(obj));
    node->PreviousNode(previous);
    node->NextNode(next);
    m_Nodes.Add(node);
    return node.get();
  }

  NodeCollection m_Nodes;
  Node<T>* m_FirstNode = nullptr;
  Node<T>* m_LastNode = nullptr;
  int32_t m_Count = 0;
};

}  // namespace vex
