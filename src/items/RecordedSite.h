#pragma once

#include <boost/shared_ptr.hpp>

#include "items/LabelMarks.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// An annotated site as it was when results were collected: what joins ask of it before there is an item.
struct RecordedSite {
  boost::shared_ptr<sitenotes::annotation_t> annotation;  // never empty
  unsigned long handle;
  sitenotes::locator_t place;
  sitenotes::annotation_t::kind_t kind;
  LabelMarks label;
};

}  // namespace kelvar_2_1_7
