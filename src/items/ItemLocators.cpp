#include "SummaryItemImpl.h"

namespace kelvar_2_1_7 {

namespace {

const sitenotes::locator_t& nullLocator() {
  static const sitenotes::locator_t null(toolbelt::path_t(), 0, 0);
  return null;
}

/// The place of the site's newest annotation, if the database still has one.
void takeLatest(const SummaryData::Impl* owner, unsigned long handle, sitenotes::locator_t& out) {
  if (owner == nullptr) return;
  const boost::shared_ptr<sitenotes::database_t>& database = annotationDatabaseOf(*owner);
  if (!database) return;
  const boost::shared_ptr<sitenotes::annotation_t> latest = database->get_latest_annotation(handle);
  if (latest) out = latest->get_locator();
}

}  // namespace

bool SummaryItemImpl::getCurrentLocator(sitenotes::locator_t& out, unsigned long& handle) {
  out = nullLocator();
  handle = 0;
  if (annotation_ && handle_ != 0) {
    handle = handle_;
    takeLatest(owner_, handle_, out);
  }
  if (out.is_null() && annotation_) out = annotation_->get_locator();
  if (out.is_null()) out = locator_;
  return !out.is_null();
}

bool SummaryItemImpl::getCollectionLocator(digestio::SummaryDataKind kind, sitenotes::locator_t& out,
                                           unsigned long& handle) {
  out = nullLocator();
  handle = 0;
  if (const digestio::SummaryDetail* detail = summaryDetail(kind)) out = detail->locator();
  // The handle tells callers that the site is annotated, even where the analysis says nothing of it.
  if (annotation_) handle = handle_;
  return !out.is_null();
}

}  // namespace kelvar_2_1_7
