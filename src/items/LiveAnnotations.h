#pragma once

#include <boost/shared_ptr.hpp>
#include <utility>

#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// Calls `visit(annotation, handle)` for the newest annotation of each site of `database` that is neither deleted nor
/// disabled, in the database's order. An empty database has none.
template <class Visit>
void forEachLiveAnnotation(const boost::shared_ptr<sitenotes::database_t>& database, Visit visit) {
  if (!database) return;
  for (const unsigned long handle : database->get_sequences()) {
    if (!database->is_sequence_alive(handle)) continue;
    boost::shared_ptr<sitenotes::annotation_t> annotation = database->get_latest_annotation(handle);
    if (annotation && !annotation->disabled()) visit(std::move(annotation), handle);
  }
}

}  // namespace kelvar_2_1_7
