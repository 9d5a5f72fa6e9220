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

/// The parts of an HTTP request that matter here.
struct Request {
  std::string method;
  std::string target;  ///< path and query
  std::string host;
  std::string origin;  ///< empty if the browser sends none
  std::string token;   ///< from the header X-Kelvar-Token
};

struct Answer {
  int status = 200;
  std::string type = "application/json";
  std::string body = {};
  std::string policy = {};  ///< the content security policy; empty for answers that are no page
};

/// The parsed target, with `%41` and `+` decoded. If a key comes twice, the last one counts. The path is empty if an
/// escape is invalid.
struct Target {
  std::string path;
  std::map<std::string, std::string> values;
};
[[nodiscard]] Target targetIn(std::string_view text);

/// The answers of `view`, without the network: who may ask, and what comes back. For one thread at a time.
class ViewPages {
 public:
  struct Source {
    std::function<std::unique_ptr<Model>()> load;  ///< reads the project again; may throw
    std::function<std::uint64_t()> version;        ///< returns another number when files have changed
    std::string project;                           ///< the title of the page
    std::string annotations;                       ///< the database; may be empty
    std::function<std::string()> comparison = {};  ///< JSON of a comparison to show; empty: none
  };

  /// Loads the project. `port` is the one that requests must name as their host's.
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
  std::string pictures_;  // made on the first request; the page asks for rows first
};

}  // namespace kelvar_page
