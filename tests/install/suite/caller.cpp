// Annotations that live in memory, listed by the library: no file is read.
#include <iostream>
#include <string>
#include <vector>

#include "kelvar/SummaryData.h"

namespace {

class Annotation : public sitenotes::annotation_t {
 public:
  Annotation(std::string label, int line)
      : locator_(toolbelt::path_t("/src/a.cpp"), line, 0), label_(std::move(label)) {}
  const sitenotes::locator_t& get_locator() const override { return locator_; }
  const std::string& get_label() const override { return label_; }
  kind_t get_kind() const override { return parallel; }
  bool disabled() const override { return false; }

 private:
  sitenotes::locator_t locator_;
  std::string label_;
};

class Database : public sitenotes::database_t {
 public:
  std::vector<unsigned long> get_sequences() override { return {1, 2}; }
  bool is_sequence_alive(unsigned long) override { return true; }
  boost::shared_ptr<sitenotes::annotation_t> get_latest_annotation(unsigned long id) override {
    return boost::shared_ptr<Annotation>(new Annotation(id == 1 ? "second" : "first", id == 1 ? 20 : 10));
  }
  boost::shared_ptr<database_t> get_state(const std::string&) override { return {}; }
  boost::shared_ptr<database_t> make_state(const std::string&, bool) override { return {}; }
};

}  // namespace

int main() {
  kelvar::SummaryData data(boost::shared_ptr<sitenotes::database_t>(new Database));
  data.addSummaryData("nothing", {});
  for (int index = 0; index < data.num_items(); ++index) {
    const kelvar::SummaryItem& item = *data.item(index);
    std::cout << item.label() << ' ' << item.locator().get_file().get_leaf() << ':' << item.locator().get_line()
              << '\n';
  }
}
