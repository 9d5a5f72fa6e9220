#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "Model.h"
#include "RowQuery.h"

namespace kelvar_page {

/// What decides of a request, as it came.
struct Request {
  std::string method;
  std::string target;  ///< path and query
  std::string host;
  std::string origin;  ///< empty where the browser sends none
  std::string token;   ///< of the header
};

struct Answer {
  int status = 200;
  std::string type = "application/json";
  std::string body = {};
  std::string policy = {};  ///< what the page may do; empty for what is no page
};

/// The target taken apart: `%41` and `+` decoded. Of a key that comes twice the last one counts. Empty path where an
/// escape is none or a zero byte is named.
struct Target {
  std::string path;
  std::map<std::string, std::string> values;
};
[[nodiscard]] Target targetIn(std::string_view text);

/// All that `view` answers, without the network: who may ask, and what comes back. Not to be asked by two threads.
class ViewPages {
 public:
  struct Source {
    std::function<std::unique_ptr<Model>()> load;  ///< reads the project anew; may throw
    std::function<std::uint64_t()> version;        ///< another number where what is on the disk has changed
    std::string project;                           ///< what the page is called
    std::string annotations;                       ///< the database; may be empty
    std::function<std::string()> comparison = {};  ///< with another project, as JSON; empty: the page shows none
  };

  /// Loads once. `port` is the one that requests name.
  ViewPages(Source source, std::uint16_t port, std::string token);
  ~ViewPages();

  [[nodiscard]] Answer answer(const Request& request);

 private:
  [[nodiscard]] Answer refusal(const Request& request, const Target& target) const;
  [[nodiscard]] Answer rows(const Target& target);
  [[nodiscard]] Answer one(const Target& target) const;
  [[nodiscard]] Answer source(const Target& target) const;
  [[nodiscard]] const std::string& pictures();
  [[nodiscard]] std::string compared() const;
  void reloadIfChanged();
  [[nodiscard]] std::string programOf(const Model& model) const;

  Source source_;
  std::uint16_t port_;
  std::string token_;
  std::uint64_t version_;
  std::unique_ptr<Model> model_;
  std::unique_ptr<RowView> view_;
  std::string comparison_;
  std::string program_;
  std::string pictures_;  // made when they are first asked for, which a page does once it has shown rows
};

}  // namespace kelvar_page
