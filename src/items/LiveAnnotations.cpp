#include "items/LiveAnnotations.h"

#include <algorithm>

namespace kelvar_2_1_7 {

std::vector<LiveAnnotation> liveAnnotations(const boost::shared_ptr<sitenotes::database_t>& database) {
  std::vector<LiveAnnotation> annotations;
  if (!database) return annotations;
  const std::vector<unsigned long> handles = database->get_sequences();
  annotations.reserve(handles.size());
  for (const unsigned long handle : handles) {
    if (!database->is_sequence_alive(handle)) continue;
    boost::shared_ptr<sitenotes::annotation_t> annotation = database->get_latest_annotation(handle);
    if (annotation && !annotation->disabled()) annotations.push_back({std::move(annotation), handle});
  }
  return annotations;
}

bool areApart(const std::vector<LiveAnnotation>& annotations) {
  const auto falls = [](const LiveAnnotation& a, const LiveAnnotation& b) { return a.handle >= b.handle; };
  return std::adjacent_find(annotations.begin(), annotations.end(), falls) == annotations.end();
}

}  // namespace kelvar_2_1_7
