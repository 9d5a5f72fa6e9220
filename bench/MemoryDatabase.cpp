#include "MemoryDatabase.h"

#include <boost/make_shared.hpp>
#include <string>
#include <vector>

namespace kelvar_bench {

namespace {

class MemoryAnnotation final : public sitenotes::annotation_t {
 public:
  MemoryAnnotation(const GeneratedProject& project, const Edit& edit)
      : locator_(toolbelt::path_t(project.file(edit.place.file)), edit.place.line, edit.place.column),
        label_(GeneratedProject::label(edit.label)),
        kind_(edit.kind),
        disabled_(edit.disabled) {}

  [[nodiscard]] const sitenotes::locator_t& get_locator() const override { return locator_; }
  [[nodiscard]] const std::string& get_label() const override { return label_; }
  [[nodiscard]] kind_t get_kind() const override { return kind_; }
  [[nodiscard]] bool disabled() const override { return disabled_; }

 private:
  sitenotes::locator_t locator_;
  std::string label_;
  kind_t kind_;
  bool disabled_;
};

/// Sequences count from 1 without gaps.
class MemoryDatabase final : public sitenotes::database_t {
 public:
  MemoryDatabase(const GeneratedProject& project, std::size_t revision) {
    for (std::size_t i = 0; i < revision; ++i) {
      const Edit& edit = project.edits()[i];
      if (edit.sequence > latest_.size()) latest_.resize(edit.sequence);
      boost::shared_ptr<sitenotes::annotation_t>& latest = latest_[edit.sequence - 1];
      latest.reset();
      if (edit.alive) latest = boost::make_shared<MemoryAnnotation>(project, edit);
    }
  }

  std::vector<unsigned long> get_sequences() override {
    std::vector<unsigned long> sequences(latest_.size());
    for (std::size_t i = 0; i < sequences.size(); ++i) sequences[i] = i + 1;
    return sequences;
  }
  bool is_sequence_alive(unsigned long id) override { return latest_[id - 1] != nullptr; }
  boost::shared_ptr<sitenotes::annotation_t> get_latest_annotation(unsigned long id) override {
    return latest_[id - 1];
  }
  boost::shared_ptr<sitenotes::database_t> get_state(const std::string&) override { return {}; }
  boost::shared_ptr<sitenotes::database_t> make_state(const std::string&, bool) override { return {}; }

 private:
  std::vector<boost::shared_ptr<sitenotes::annotation_t>> latest_;
};

}  // namespace

boost::shared_ptr<sitenotes::database_t> memoryDatabase(const GeneratedProject& project, std::size_t revision) {
  return boost::make_shared<MemoryDatabase>(project, revision);
}

}  // namespace kelvar_bench
