// PrefixNameIndex: finds the first record (lowest position) whose name begins
// with a key after A-Z folding, in logarithmic time.
//
// The records are kept in a treap ordered by folded name (then by record
// address, so that every node has a unique key); each node also knows the
// record of lowest position in its subtree. The names that begin with a key
// form one contiguous run of that order, and the run's first record is found
// along two root-to-leaf paths.
//
// Record needs `int32_t Position` and `void* IndexNode` (its node). Positions
// may shift as records are inserted or removed elsewhere: a shift keeps the
// relative order of the other records, so the subtree minima stay right. A
// change of relative order (sorting) needs a rebuild.
#pragma once

#include <memory>
#include <string>

#include "parameters/folded_name.h"

template <class Record>
class PrefixNameIndex {
 public:
  // Indexes `record` under `name` (non-empty); its Position must be current.
  void Insert(Record* record, tagREFString name) {
    auto node = std::make_unique<Node>();
    node->key = FoldedCopyOf(name);
    node->record = record;
    node->first = record;
    node->priority = NextPriority();
    record->IndexNode = node.get();
    NodePtr lower, upper;
    Split(std::move(m_Root), *node, lower, upper);
    m_Root = Merge(Merge(std::move(lower), std::move(node)), std::move(upper));
  }

  void Erase(Record* record) {
    auto* node = static_cast<Node*>(record->IndexNode);
    if (!node) return;
    record->IndexNode = nullptr;
    EraseFrom(m_Root, *node);
  }

  // The record of lowest position whose indexed name begins with `key`, or null.
  Record* FindFirst(tagREFString key) const {
    // Descend to the first node inside the run; the run then spans a suffix of
    // its left subtree, the node itself and a prefix of its right subtree.
    const Node* node = m_Root.get();
    while (node) {
      int order = ComparePrefixToKey(node->key, key);
      if (order == 0) break;
      node = (order < 0 ? node->right : node->left).get();
    }
    if (!node) return nullptr;
    Record* best = node->record;
    for (const Node* t = node->left.get(); t;) {  // suffix of the left subtree
      if (ComparePrefixToKey(t->key, key) == 0) {
        best = Earlier(best, t->record);
        if (t->right) best = Earlier(best, t->right->first);
        t = t->left.get();
      } else {
        t = t->right.get();
      }
    }
    for (const Node* t = node->right.get(); t;) {  // prefix of the right subtree
      if (ComparePrefixToKey(t->key, key) == 0) {
        best = Earlier(best, t->record);
        if (t->left) best = Earlier(best, t->left->first);
        t = t->right.get();
      } else {
        t = t->left.get();
      }
    }
    return best;
  }

  void Clear() { m_Root.reset(); }

 private:
  struct Node;
  using NodePtr = std::unique_ptr<Node>;
  struct Node {
    std::wstring key;  // folded name
    Record* record;
    Record* first;  // lowest position in this subtree
    uint32_t priority;
    NodePtr left, right;
  };

  static Record* Earlier(Record* a, Record* b) { return b->Position < a->Position ? b : a; }

  static tagREFString ViewOf(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.data()}; }

  // Treap order: folded name, then record address.
  static bool Before(const Node& a, const Node& b) {
    if (int order = CompareFoldedTexts(ViewOf(a.key), ViewOf(b.key))) return order < 0;
    return a.record < b.record;
  }

  static void Update(Node& node) {
    node.first = node.record;
    if (node.left) node.first = Earlier(node.first, node.left->first);
    if (node.right) node.first = Earlier(node.first, node.right->first);
  }

  // Splits `tree` into the nodes ordered before `pivot` and the others.
  static void Split(NodePtr tree, const Node& pivot, NodePtr& lower, NodePtr& upper) {
    if (!tree) {
      lower.reset();
      upper.reset();
      return;
    }
    if (Before(*tree, pivot)) {
      Split(std::move(tree->right), pivot, tree->right, upper);
      Update(*tree);
      lower = std::move(tree);
    } else {
      Split(std::move(tree->left), pivot, lower, tree->left);
      Update(*tree);
      upper = std::move(tree);
    }
  }

  static NodePtr Merge(NodePtr lower, NodePtr upper) {
    if (!lower) return upper;
    if (!upper) return lower;
    if (lower->priority > upper->priority) {
      lower->right = Merge(std::move(lower->right), std::move(upper));
      Update(*lower);
      return lower;
    }
    upper->left = Merge(std::move(lower), std::move(upper->left));
    Update(*upper);
    return upper;
  }

  static void EraseFrom(NodePtr& tree, const Node& target) {
    if (!tree) return;
    if (tree.get() == &target) {
      tree = Merge(std::move(tree->left), std::move(tree->right));
      return;
    }
    EraseFrom(Before(target, *tree) ? tree->left : tree->right, target);
    Update(*tree);
  }

  uint32_t NextPriority() {
    // xorshift32: priorities only need to look random to keep the treap balanced.
    m_Seed ^= m_Seed << 13;
    m_Seed ^= m_Seed >> 17;
    m_Seed ^= m_Seed << 5;
    return m_Seed;
  }

  NodePtr m_Root;
  uint32_t m_Seed = 2463534242u;
};
