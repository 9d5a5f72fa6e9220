#pragma once

#include <boost/shared_ptr.hpp>
#include <utility>
#include <vector>

#include "items/PlaceOrder.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// An annotation, and its site's handle in the database.
struct LiveAnnotation {
  boost::shared_ptr<sitenotes::annotation_t> annotation;
  unsigned long handle;
};

/// The newest annotation of each site of `database` that is neither deleted nor disabled, in the database's order. An
/// empty database has none.
[[nodiscard]] std::vector<LiveAnnotation> liveAnnotations(const boost::shared_ptr<sitenotes::database_t>& database);

/// Whether no handle comes twice, as far as their order tells: nothing then depends on which of two is the later one.
[[nodiscard]] bool areApart(const std::vector<LiveAnnotation>& annotations);

/// Calls `visit(annotation, handle)` for each of them: by place, unless a handle may come twice.
template <class Visit>
void forEachLiveAnnotation(const boost::shared_ptr<sitenotes::database_t>& database, Visit visit) {
  std::vector<LiveAnnotation> annotations = liveAnnotations(database);
  if (!areApart(annotations)) {
    for (LiveAnnotation& site : annotations) visit(std::move(site.annotation), site.handle);
    return;
  }
  const auto placeOf = [&](std::size_t index) { return annotations[index].annotation->get_locator(); };
  for (const Placed& placed : placeOrder(annotations.size(), placeOf)) {
    LiveAnnotation& site = annotations[placed.index];
    visit(std::move(site.annotation), site.handle);
  }
}

}  // namespace kelvar_2_1_7
