#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// The seam to clients that read texts over HTTP.
namespace zth::platform {

/// A text with its media type, such as "text/plain; charset=utf-8".
struct PageForm {
  std::string type;
  std::string body;
};

/// What is found under a path.
struct Page {
  std::string path;  ///< "/metrics"
  int status = 200;  ///< of HTTP
  /// A client gets the first one whose media type it names, or else the first one. Not empty.
  std::vector<PageForm> forms;
};

/// Answers clients by itself until it is destroyed. No client makes anything happen outside it.
class PageServer {
 public:
  virtual ~PageServer() = default;
  /// From now on shows `pages`, and `late` once so many seconds have passed without another call.
  virtual void Show(std::vector<Page> pages, std::vector<Page> late, double seconds) = 0;
};

/// The result of an attempt to listen.
struct Listening {
  std::unique_ptr<PageServer> server;  ///< null if it failed
  std::string error;                   ///< why, in the system's words
  std::uint16_t port = 0;              ///< the one in use, also if any was asked for
};

class PageHost {
 public:
  virtual ~PageHost() = default;
  /// Serves at a numeric IPv4 or IPv6 address; port 0 is any free one.
  virtual Listening Listen(const std::string& address, std::uint16_t port) = 0;
};

}  // namespace zth::platform
