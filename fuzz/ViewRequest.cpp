/// Any bytes as what a browser sends: an answer or a refusal, and nothing but the page for those without the token.
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <boost/make_shared.hpp>
#include <cstdlib>
#include <memory>
#include <string>

#include "ViewPages.h"

namespace {

namespace http = boost::beast::http;
using kelvar_page::ViewPages;

std::unique_ptr<kelvar_page::Model> emptyModel() {
  auto data = boost::make_shared<kelvar::SummaryData>(boost::shared_ptr<sitenotes::database_t>());
  return std::make_unique<kelvar_page::Model>(data, kelvar_page::EvidenceIndex(), "/nowhere",
                                              std::vector<std::string>());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static ViewPages pages({.load = emptyModel,
                          .version = [] { return std::uint64_t{1}; },
                          .project = "p",
                          .annotations = "",
                          .comparison = [] { return std::string("{}"); }},
                         8080, "token");
  http::request_parser<http::empty_body> parser;
  parser.header_limit(16384);
  parser.body_limit(0);
  boost::beast::error_code error;
  parser.put(boost::asio::buffer(data, size), error);
  if (error || !parser.is_header_done()) return 0;
  const auto& asked = parser.get();
  const kelvar_page::Answer answer = pages.answer({.method = std::string(asked.method_string()),
                                                   .target = std::string(asked.target()),
                                                   .host = std::string(asked[http::field::host]),
                                                   .origin = std::string(asked[http::field::origin]),
                                                   .token = std::string(asked["X-Kelvar-Token"])});
  if (answer.status < 200 || answer.status > 499 || answer.body.empty()) std::abort();
  const bool knows =
      asked["X-Kelvar-Token"] == "token" || asked.target().find("token") != boost::beast::string_view::npos;
  if (answer.status == 200 && !knows && asked.target().find('%') == boost::beast::string_view::npos) std::abort();
  return 0;
}
