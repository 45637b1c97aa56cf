#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Pages.h"

/// HTTP/1.1 as text, as far as a server of pages needs it. Reaches nothing outside.
namespace zth::platform {

/// The longest head of a request, in bytes.
inline constexpr std::size_t kMostHead = 8192;

struct HttpRequest {
  std::string method;  ///< "GET"
  std::string path;    ///< without host and query
  std::string accept;  ///< media types, as the client lists them
  bool keepsAlive = false;
};

/// What the bytes of a client begin with.
struct HttpHead {
  std::size_t size = 0;  ///< of the head in bytes; 0 while it is not complete
  int fault = 0;         ///< the status that refuses it; 0 if it is in order
  HttpRequest request;
};

HttpHead ReadHttpHead(std::string_view bytes);

/// The whole answer: the page, without its text for HEAD; 405 for a method other than GET and HEAD, 404 for a path
/// without a page. `keepsAlive` says whether the connection stays.
std::string HttpAnswer(const HttpRequest& request, const std::vector<Page>& pages, bool keepsAlive);

/// The answer that refuses, with a text that says the status.
std::string HttpRefusal(int status);

}  // namespace zth::platform
