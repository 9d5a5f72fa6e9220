#include "Formats.h"
#include "Output.h"
#include "PageHtml.h"

namespace kelvar_tool {

void printHtml(const Loaded&, const Selection& selection) {
  print(embeddedPage(*selection.model, selection.project, selection.ordering, selection.reverse));
}

}  // namespace kelvar_tool
