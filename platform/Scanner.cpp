#include <boost/make_shared.hpp>
#include <boost/smart_ptr/atomic_shared_ptr.hpp>
#include <utility>

#include "Annotations.h"
#include "sitenotes.h"

namespace {

/// Immutable: installing another database makes another scanner, so that other threads see one or the other.
class Scanner final : public sitenotes::scanner_t {
 public:
  explicit Scanner(boost::shared_ptr<sitenotes::database_t> database) : database_(std::move(database)) {}

  boost::shared_ptr<sitenotes::database_t> get_database() override { return database_; }

 private:
  const boost::shared_ptr<sitenotes::database_t> database_;
};

boost::atomic_shared_ptr<sitenotes::scanner_t> processScanner;

}  // namespace

namespace sitenotes {

boost::shared_ptr<scanner_t> scanner_t::get() {
  return processScanner.load();
}

}  // namespace sitenotes

namespace kelvar_platform {

void installDatabase(boost::shared_ptr<sitenotes::database_t> database) {
  processScanner.store(boost::make_shared<Scanner>(std::move(database)));
}

void removeScanner() {
  processScanner.store({});
}

}  // namespace kelvar_platform
