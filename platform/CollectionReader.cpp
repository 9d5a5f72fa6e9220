#include "CollectionReader.h"

#include "CollectionFile.h"

namespace kelvar_platform {

std::unique_ptr<Collection> CollectionReader::read(const std::string& result) {
  auto collection = std::make_unique<Collection>();
  details_.clear();
  readCollection(in_, collectionFile(result), *collection, details_);
  collection->take(details_);
  return collection;
}

}  // namespace kelvar_platform
