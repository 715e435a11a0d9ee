#pragma once

#include <memory>
#include <utility>

namespace vex {

/// One place in a linked list: what it holds and the links to its neighbours. The list's collection of
/// nodes keeps nodes alive; the links are plain references.
template <class T>
class Node {
 public:
  /// Empty for the last node.
  [[nodiscard]] Node* NextNode() const { return m_NextNode; }
  void NextNode(Node* node) { m_NextNode = node; }
  /// Empty for the first node.
  [[nodiscard]] Node* PreviousNode() const { return m_PreviousNode; }
  void PreviousNode(Node* node) { m_PreviousNode = node; }
  /// What the node holds, empty on creation.
  [[nodiscard]] const std::shared_ptr<T>& Obj() const { return m_Obj; }
  void Obj(std::shared_ptr<T> obj) { m_Obj = std::move(obj); }

 private:
  std::shared_ptr<T> m_Obj;
  Node* m_NextNode = nullptr;
  Node* m_PreviousNode = nullptr;
};

}  // namespace vex
