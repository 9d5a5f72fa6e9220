#include "ViewPages.h"

#include <array>
#include <charconv>
#include <exception>
#include <optional>
#include <utility>

#include "PageData.h"
#include "PageHtml.h"

namespace kelvar_page {

namespace {

constexpr int kMostRows = 1000;  // of one request

int digit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::optional<std::string> decoded(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '+') {
      out += ' ';
    } else if (text[at] != '%') {
      out += text[at];
    } else {
      if (at + 2 >= text.size()) return std::nullopt;
      const int high = digit(text[at + 1]);
      const int low = digit(text[at + 2]);
      if (high < 0 || low < 0) return std::nullopt;
      out += static_cast<char>(high * 16 + low);
      at += 2;
    }
  }
  return out;
}

// Compares in constant time for texts of equal length.
bool sameSecret(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  unsigned char different = 0;
  for (std::size_t at = 0; at < a.size(); ++at) different = static_cast<unsigned char>(different | (a[at] ^ b[at]));
  return different == 0;
}

Answer refused(int status, std::string sentence) {
  return {.status = status, .type = "text/plain", .body = std::move(sentence) + "\n", .policy = {}};
}

std::string valueOf(const Target& target, const std::string& key) {
  const auto found = target.values.find(key);
  return found != target.values.end() ? found->second : std::string();
}

std::optional<int> countIn(const Target& target, const std::string& key) {
  const std::string text = valueOf(target, key);
  int count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size() || count < 0) return std::nullopt;
  return count;
}

Answer answered(const PageJson& json) {
  return {.body = json.json()};
}

}  // namespace

Target targetIn(std::string_view text) {
  const std::size_t mark = text.find('?');
  Target target{.path = std::string(text.substr(0, mark)), .values = {}};
  std::string_view rest = mark == std::string_view::npos ? std::string_view() : text.substr(mark + 1);
  while (!rest.empty()) {
    const std::string_view pair = rest.substr(0, rest.find('&'));
    rest.remove_prefix(std::min(rest.size(), pair.size() + 1));
    const std::size_t equal = pair.find('=');
    const auto key = decoded(pair.substr(0, equal));
    const auto value = decoded(equal == std::string_view::npos ? std::string_view() : pair.substr(equal + 1));
    if (!key || !value) return {};
    target.values.insert_or_assign(*key, *value);
  }
  return target;
}

ViewPages::ViewPages(Source source, std::uint16_t port, std::string token)
    : source_(std::move(source)),
      port_(port),
      token_(std::move(token)),
      version_(source_.version()),
      model_(source_.load()),
      view_(std::make_unique<RowView>(*model_->data)),
      comparison_(compared()),
      program_(programOf(*model_)) {}

ViewPages::~ViewPages() = default;

// A page of another origin can make the browser send requests to our address, or to a host name that it points at us.
// Such a request lacks the token, and in the second case names another host.
Answer ViewPages::refusal(const Request& request, const Target& target) const {
  const std::string port = ":" + std::to_string(port_);
  const std::array hosts{"127.0.0.1" + port, "localhost" + port};
  const auto isOurs = [&](const std::string& name, const std::string& before) {
    return name == before + hosts[0] || name == before + hosts[1];
  };
  if (!isOurs(request.host, "")) return refused(421, "expected the host " + hosts[0]);
  if (!request.origin.empty() && !isOurs(request.origin, "http://"))
    return refused(403, "expected the page's own origin");
  if (request.method != "GET") return refused(405, "expected GET");
  if (target.path.empty()) return refused(400, "expected an address");
  const std::string token = target.path == "/" ? valueOf(target, "token") : request.token;
  if (!sameSecret(token, token_))
    return refused(403, "expected the token: open the address that 'kelvar view' printed");
  return {};
}

Answer ViewPages::answer(const Request& request) {
  const Target target = targetIn(request.target);
  if (Answer no = refusal(request, target); no.status != 200) return no;
  if (target.path == "/") {
    const std::string nonce = unguessable();
    return {.type = "text/html; charset=utf-8",
            .body = servedPage(nonce),
            .policy = contentPolicy(nonce, PageData::served)};
  }
  if (target.path == "/data/version") {
    reloadIfChanged();
    PageJson json;
    json.beginObject().text("version", std::to_string(version_)).endObject();
    return answered(json);
  }
  if (target.path == "/data/program") return {.body = program_};
  if (target.path == "/data/pictures") return {.body = pictures()};
  if (target.path == "/data/comparison") return {.body = comparison_.empty() ? "null" : comparison_};
  if (target.path == "/data/rows") return rows(target);
  if (target.path == "/data/row" || target.path == "/data/site") return one(target);
  if (target.path == "/data/source") return source(target);
  return refused(404, "no such page");
}

Answer ViewPages::rows(const Target& target) {
  RowQuery query;
  for (const auto& [key, value] : target.values) {
    if (key != "from" && key != "count" && !setField(query, key, value)) return refused(400, "expected another " + key);
  }
  const auto from = countIn(target, "from");
  const auto count = countIn(target, "count");
  if (!from || !count || *count > kMostRows)
    return refused(400, "expected from, and count up to " + std::to_string(kMostRows));
  view_->set(query);
  PageJson json;
  writeRows(json, *model_, *view_, *from, *count);
  return answered(json);
}

Answer ViewPages::one(const Target& target) const {
  kelvar::SummaryItem* const item = itemOf(*model_, valueOf(target, "key"));
  if (!item) return refused(404, "no such row");
  PageJson json;
  if (target.path == "/data/row") {
    writeRow(json, *model_, siteOf(*item));
  } else {
    writeSite(json, *model_, siteOf(*item), source_.annotations);
  }
  return answered(json);
}

Answer ViewPages::source(const Target& target) const {
  PageJson json;
  if (!writeSource(json, *model_, valueOf(target, "file"))) return refused(404, "no such source");
  return answered(json);
}

std::string ViewPages::programOf(const Model& model) const {
  PageJson json;
  json.beginObject();
  writeProgram(json, model, source_.project);
  json.endObject();
  return json.json();
}

const std::string& ViewPages::pictures() {
  if (pictures_.empty()) {
    PageJson json;
    json.beginObject();
    writePictures(json, *model_);
    json.endObject();
    pictures_ = json.json();
  }
  return pictures_;
}

std::string ViewPages::compared() const {
  return source_.comparison ? source_.comparison() : std::string();
}

void ViewPages::reloadIfChanged() {
  const std::uint64_t now = source_.version();
  if (now == version_) return;
  std::unique_ptr<Model> fresh = source_.load();
  std::string program = programOf(*fresh);
  comparison_ = compared();
  view_ = std::make_unique<RowView>(*fresh->data);
  program_ = std::move(program);
  pictures_.clear();
  model_ = std::move(fresh);
  version_ = now;
}

}  // namespace kelvar_page
