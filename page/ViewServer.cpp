#include "ViewServer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>
#include <chrono>
#include <csignal>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kelvar_page {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;

constexpr std::chrono::seconds kTimeToAsk{10};
constexpr std::chrono::seconds kTimeToTake{30};
constexpr std::uint32_t kLargestHeader = 16384;
constexpr int kMostConnections = 200;

/// One connection: answers its requests one after the other. Pending operations keep it alive.
class Session : public std::enable_shared_from_this<Session> {
 public:
  Session(tcp::socket socket, ViewPages& pages, int& open) : stream_(std::move(socket)), pages_(pages), open_(open) {
    ++open_;
  }
  ~Session() { --open_; }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // The time limit is for the whole request, however slowly it arrives.
  void read() {
    parser_.emplace();
    parser_->header_limit(kLargestHeader);
    parser_->body_limit(0);
    stream_.expires_after(kTimeToAsk);
    http::async_read(stream_, buffer_, *parser_,
                     [self = shared_from_this()](const beast::error_code& error, std::size_t) {
                       if (!error) self->answer();
                     });
  }

 private:
  void answer() {
    const auto& asked = parser_->get();
    Answer answer;
    try {
      answer = pages_.answer({.method = std::string(asked.method_string()),
                              .target = std::string(asked.target()),
                              .host = std::string(asked[http::field::host]),
                              .origin = std::string(asked[http::field::origin]),
                              .token = std::string(asked["X-Kelvar-Token"])});
    } catch (const std::exception&) {
      answer = {.status = 500, .type = "text/plain", .body = "the project cannot be read just now\n", .policy = {}};
    }
    reply_ = {};
    reply_.result(static_cast<unsigned>(answer.status));
    reply_.version(asked.version());
    reply_.keep_alive(asked.keep_alive() && answer.status == 200);
    reply_.set(http::field::content_type, answer.type);
    reply_.set(http::field::cache_control, "no-store");
    reply_.set("X-Content-Type-Options", "nosniff");
    reply_.set("Referrer-Policy", "no-referrer");
    reply_.set("Cross-Origin-Opener-Policy", "same-origin");
    reply_.set("Cross-Origin-Resource-Policy", "same-origin");
    reply_.set("Content-Security-Policy",
               answer.policy.empty() ? "default-src 'none'; frame-ancestors 'none'" : answer.policy);
    reply_.body() = std::move(answer.body);
    reply_.prepare_payload();
    stream_.expires_after(kTimeToTake);
    http::async_write(stream_, reply_, [self = shared_from_this()](const beast::error_code& error, std::size_t) {
      if (error) return;
      if (self->reply_.keep_alive()) return self->read();
      beast::error_code ignored;
      self->stream_.socket().shutdown(tcp::socket::shutdown_send, ignored);
    });
  }

  beast::tcp_stream stream_;
  beast::flat_buffer buffer_{kLargestHeader + 4096};
  std::optional<http::request_parser<http::empty_body>> parser_;
  http::response<http::string_body> reply_;
  ViewPages& pages_;
  int& open_;
};

}  // namespace

struct ViewServer::Impl {
  int open = 0;  // outlives the connections, which go with the context
  asio::io_context context{1};
  tcp::acceptor acceptor{context};

  void accept(ViewPages& pages) {
    acceptor.async_accept([&](const beast::error_code& error, tcp::socket socket) {
      if (error == asio::error::operation_aborted) return;
      // Connections beyond the limit are closed at once.
      if (!error && open < kMostConnections) std::make_shared<Session>(std::move(socket), pages, open)->read();
      accept(pages);
    });
  }
};

ViewServer::ViewServer(std::uint16_t port) : impl_(std::make_unique<Impl>()) {
  const tcp::endpoint place(asio::ip::address_v4::loopback(), port);
  impl_->acceptor.open(place.protocol());
  impl_->acceptor.set_option(asio::socket_base::reuse_address(true));
  impl_->acceptor.bind(place);
  impl_->acceptor.listen();
}

ViewServer::~ViewServer() = default;

std::uint16_t ViewServer::port() const {
  return impl_->acceptor.local_endpoint().port();
}

void ViewServer::run(ViewPages& pages) {
  asio::signal_set ends(impl_->context, SIGINT, SIGTERM, SIGHUP);
  ends.async_wait([&](const beast::error_code& error, int) {
    if (!error) impl_->context.stop();
  });
  impl_->accept(pages);
  impl_->context.run();
}

}  // namespace kelvar_page
