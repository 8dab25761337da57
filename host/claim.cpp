#include "host/claim.h"

#include <array>

#include "host/object_files.h"
#include "ombrix/error.h"
#include "platform/host_claim.h"
#include "text/phrases.h"

namespace ombrix::host {

Claim::Claim(const std::string& owner) {
    // Two copies of this library differ in it.
    const std::string file = ObjectFileOf(reinterpret_cast<void*>(&ObjectFileOf)).string();
    const std::string holder = (owner.empty() ? "the program" : owner) + ", by " + text::Quoted(file);
    std::array<char, 1024> present{};
    if (OmbrixClaimProcess(holder.c_str(), present.data(), present.size()) == 0) {
        throw Error("this process has a Host already, and plug-ins know only one; it was made for " +
                    std::string(present.data()));
    }
}

Claim::~Claim() { OmbrixReleaseProcess(); }

}  // namespace ombrix::host
