#include "platform/HttpText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <utility>

#include <QDateTime>
#include <QLocale>

namespace zth::platform {
namespace {

constexpr int kBadRequest = 400;
constexpr int kNotFound = 404;
constexpr int kNotAllowed = 405;
constexpr int kHeadTooLarge = 431;
constexpr int kVersionUnknown = 505;

std::string_view Reason(int status) {
  constexpr std::array<std::pair<int, std::string_view>, 7> kReasons{
      {{200, "OK"},
       {kBadRequest, "Bad Request"},
       {kNotFound, "Not Found"},
       {kNotAllowed, "Method Not Allowed"},
       {kHeadTooLarge, "Request Header Fields Too Large"},
       {503, "Service Unavailable"},
       {kVersionUnknown, "HTTP Version Not Supported"}}};
  const auto* const row = std::ranges::find(kReasons, status, &std::pair<int, std::string_view>::first);
  return row == kReasons.end() ? "Error" : row->second;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

/// A name as methods and fields have it.
bool IsToken(std::string_view text) {
  constexpr std::string_view kMarks = "!#$%&'*+-.^_`|~";
  return !text.empty() && std::ranges::all_of(text, [kMarks](unsigned char c) {
    return std::isalnum(c) != 0 || kMarks.find(static_cast<char>(c)) != std::string_view::npos;
  });
}

/// The next line, without its end; nothing if it has none yet.
std::optional<std::string_view> NextLine(std::string_view bytes, std::size_t& at) {
  const std::size_t end = bytes.find('\n', at);
  if (end == std::string_view::npos) return std::nullopt;
  std::string_view line = bytes.substr(at, end - at);
  at = end + 1;
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// "/metrics" of "/metrics?a=b" and of "http://host/metrics".
std::string PathOf(std::string_view target) {
  const std::size_t scheme = target.find("://");
  if (!target.starts_with('/') && scheme != std::string_view::npos) {
    const std::size_t slash = target.find('/', scheme + 3);
    target = slash == std::string_view::npos ? "/" : target.substr(slash);
  }
  return std::string(target.substr(0, target.find_first_of("?#")));
}

/// The fault of the first line; 0 if it is in order.
int ReadFirstLine(std::string_view line, HttpRequest& request) {
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  if (first == std::string_view::npos || first == last) return kBadRequest;
  const std::string_view target = line.substr(first + 1, last - first - 1);
  const std::string_view version = line.substr(last + 1);
  request.method = line.substr(0, first);
  if (!IsToken(request.method) || target.empty() || target.find(' ') != std::string_view::npos) return kBadRequest;
  if (!version.starts_with("HTTP/")) return kBadRequest;
  if (version != "HTTP/1.1" && version != "HTTP/1.0") return kVersionUnknown;
  request.path = PathOf(target);
  request.keepsAlive = version == "HTTP/1.1";
  return 0;
}

/// The fields of a head.
class Fields {
 public:
  explicit Fields(HttpRequest& request) : request_(request) {}

  /// False if the line is no field.
  bool Take(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !IsToken(line.substr(0, colon))) return false;
    const std::string name = Lower(line.substr(0, colon));
    const std::string_view value = Trimmed(line.substr(colon + 1));
    if (std::ranges::any_of(value, [](unsigned char c) { return c < 0x20 && c != '\t'; })) return false;
    if (name == "host") hasHost_ = true;
    if (name == "accept") request_.accept += (request_.accept.empty() ? "" : ",") + Lower(value);
    if (name == "connection" && Lower(value).find("close") != std::string::npos) request_.keepsAlive = false;
    // No page takes a text, so nobody looks for its end.
    if (name == "transfer-encoding" || (name == "content-length" && value != "0")) request_.keepsAlive = false;
    return true;
  }
  bool HasHost() const { return hasHost_; }

 private:
  HttpRequest& request_;
  bool hasHost_ = false;
};

const PageForm& Chosen(const Page& page, std::string_view accept) {
  for (const PageForm& form : page.forms) {
    if (accept.find(form.type.substr(0, form.type.find(';'))) != std::string_view::npos) return form;
  }
  return page.forms.front();
}

std::string Answer(int status, const PageForm& form, bool hasText, bool keepsAlive) {
  const QString date = QLocale::c().toString(QDateTime::currentDateTimeUtc(), "ddd, dd MMM yyyy HH:mm:ss 'GMT'");
  std::string text = "HTTP/1.1 " + std::to_string(status) + " ";
  text += Reason(status);
  text += "\r\nDate: " + date.toStdString() + "\r\nContent-Type: " + form.type +
          "\r\nContent-Length: " + std::to_string(form.body.size()) +
          "\r\nCache-Control: no-store\r\nX-Content-Type-Options: nosniff\r\nVary: Accept\r\n";
  if (status == kNotAllowed) text += "Allow: GET, HEAD\r\n";
  if (!keepsAlive) text += "Connection: close\r\n";
  text += "\r\n";
  return hasText ? text + form.body : text;
}

PageForm TextOf(int status) {
  return {"text/plain; charset=utf-8", std::to_string(status) + " " + std::string(Reason(status)) + "\n"};
}

}  // namespace

HttpHead ReadHttpHead(std::string_view bytes) {
  HttpHead head;
  const auto refuse = [&head, bytes](int fault) {
    head.fault = fault;
    head.size = bytes.size();
    return head;
  };
  std::size_t at = 0;
  // Some clients end what they sent before with an empty line too many.
  while (bytes.substr(at).starts_with("\r\n")) at += 2;
  Fields fields(head.request);
  bool isFirst = true;
  while (const auto line = NextLine(bytes, at)) {
    if (at > kMostHead) return refuse(kHeadTooLarge);
    if (isFirst) {
      if (const int fault = ReadFirstLine(*line, head.request); fault != 0) return refuse(fault);
      isFirst = false;
    } else if (!line->empty()) {
      if (!fields.Take(*line)) return refuse(kBadRequest);
    } else {
      if (head.request.keepsAlive && !fields.HasHost()) return refuse(kBadRequest);
      head.size = at;
      return head;
    }
  }
  return bytes.size() > kMostHead ? refuse(kHeadTooLarge) : head;
}

std::string HttpAnswer(const HttpRequest& request, const std::vector<Page>& pages, bool keepsAlive) {
  const bool isHead = request.method == "HEAD";
  if (!isHead && request.method != "GET") return HttpRefusal(kNotAllowed);
  const auto page = std::ranges::find(pages, request.path, &Page::path);
  if (page == pages.end()) return Answer(kNotFound, TextOf(kNotFound), !isHead, keepsAlive);
  return Answer(page->status, Chosen(*page, request.accept), !isHead, keepsAlive);
}

std::string HttpRefusal(int status) {
  return Answer(status, TextOf(status), true, false);
}

}  // namespace zth::platform
