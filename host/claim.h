// The process, which one Host has at a time.
#pragma once

#include <string>

namespace ombrix::host {

/// Has the process for the time of its scope.
class Claim {
  public:
    /// `owner` is who makes the Host, in words; empty for the program. An Error when the process has one already.
    explicit Claim(const std::string& owner);
    ~Claim();
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;
};

}  // namespace ombrix::host
