#pragma once

#include <sitenotes.h>

#include <boost/shared_ptr.hpp>
#include <utility>
#include <vector>

namespace kelvar_2_1_7 {

/// Calls `visit(annotation, handle)` with the newest annotation of each site that is neither deleted nor disabled, in
/// the database's order. An empty `database` has none.
template <class Visit>
void forEachLiveAnnotation(const boost::shared_ptr<sitenotes::database_t>& database, const Visit& visit) {
  if (!database) return;
  const auto handles = database->get_sequences();
  for (const unsigned long handle : handles) {
    if (!database->is_sequence_alive(handle)) continue;
    boost::shared_ptr<sitenotes::annotation_t> annotation = database->get_latest_annotation(handle);
    if (annotation && !annotation->disabled()) visit(std::move(annotation), handle);
  }
}

}  // namespace kelvar_2_1_7
