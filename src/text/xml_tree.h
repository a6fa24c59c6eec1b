// xml_tree.h - taking a tree apart and filling a node's lists, for who builds trees.
#pragma once

#include "qxv/xml.h"

#include <memory>
#include <vector>

namespace qxv {

/// Frees every attribute and nulls the entries; the list keeps its size.
void DeleteAttributes(CQXVXmlNode& node) noexcept;

/// Frees every child with what is below it, in index order, and the list itself. Takes no memory and no stack that grows with
/// the tree.
void DeleteChildren(CQXVXmlNode& top) noexcept;

/// Size of the block of an array that grew from nothing to count elements, one after another.
QXInt64 GrownBlock(QXInt64 count) noexcept;

/// Puts owned entries from index first on into an empty array, with the block that adding one after another leaves, and takes
/// them off the vector.
template <class T>
void MoveIntoArray(std::vector<std::unique_ptr<T>>& entries, std::size_t first, CQXArray<T*, T*>& array) {
  const std::size_t count = entries.size() - first;
  if (count == 0) {
    return;
  }
  array.SetGrowBy(GrownBlock(static_cast<QXInt64>(count)));
  array.SetSize(static_cast<QXInt64>(count));
  array.SetGrowBy(0);
  for (std::size_t i = 0; i < count; ++i) {
    array.GetData()[i] = entries[first + i].release();
  }
  entries.resize(first);
}

}  // namespace qxv
