#include "PlanRecord.h"

#include <utility>

namespace kelvar_tool {

using kelvar_platform::AnchorRow;
using kelvar_sources::Anchor;

Anchor anchorOf(const AnchorRow& row) {
  return {.rule = row.rule,
          .text = row.text,
          .function = row.function,
          .before = row.before,
          .after = row.after,
          .label = row.label};
}

AnchorRow rowOf(const Anchor& anchor) {
  AnchorRow row;
  row.rule = anchor.rule;
  row.text = anchor.text;
  row.function = anchor.function;
  row.before = anchor.before;
  row.after = anchor.after;
  row.label = anchor.label;
  return row;
}

void PlanRecord::say(ScanEvent::What what, const Site& site, const Site* before, const Site* now,
                     const std::string& step) {
  ScanEvent event{.what = what,
                  .sequence = site.sequence,
                  .kind = site.kind,
                  .label = site.label,
                  .oldFile = {},
                  .newFile = {},
                  .step = step};
  if (before) {
    event.oldFile = before->file;
    event.oldLine = before->line;
    event.oldColumn = before->column;
  }
  if (now) {
    event.newFile = now->file;
    event.newLine = now->line;
    event.newColumn = now->column;
  }
  plan_.events.push_back(std::move(event));
}

void PlanRecord::add(const Site& site, const Anchor& anchor) {
  plan_.edits.edits.push_back({.site = site, .anchor = rowOf(anchor)});
}

void PlanRecord::append(const Site& site, const std::optional<Anchor>& anchor) {
  kelvar_platform::AnchoredEdits::Edit edit{.site = site, .anchor = {}};
  if (anchor) edit.anchor = rowOf(*anchor);
  plan_.edits.edits.push_back(std::move(edit));
}

void PlanRecord::anchor(const Site& site, const Anchor& anchor) {
  plan_.edits.edits.push_back({.site = site, .appends = false, .anchor = rowOf(anchor)});
}

void PlanRecord::anchorRemoved(std::size_t index, const Anchor& anchor) {
  const kelvar_platform::AnchoredSite& one = database_.sites[index];
  AnchorRow row = rowOf(anchor);
  row.revision = one.anchor->revision;
  plan_.edits.edits.push_back({.site = one.site, .appends = false, .keepsRevision = true, .anchor = std::move(row)});
}

}  // namespace kelvar_tool
