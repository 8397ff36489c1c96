#pragma once

#include "kestrune/xml/xml_collection.h"

/// Alive while one document merges many items into a collection of its own: the search for a key that each of them
/// needs is then no walk over the items.
class CollectionMerge {
public:
  explicit CollectionMerge(CXMLCollectionFolder &collection) : m_batch(collection, false) {}

private:
  CXMLCollectionFolder::Batch m_batch;
};
