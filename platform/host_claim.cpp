#include "platform/host_claim.h"

#include <cstdio>
#include <mutex>

namespace {

std::mutex mutex;
bool isTaken = false;
char holderNow[1024];

}  // namespace

int OmbrixClaimProcess(const char* holder, char* present, std::size_t size) {
    const std::lock_guard lock(mutex);
    if (isTaken) {
        std::snprintf(present, size, "%s", holderNow);
        return 0;
    }
    isTaken = true;
    std::snprintf(holderNow, sizeof holderNow, "%s", holder);
    return 1;
}

void OmbrixReleaseProcess() {
    const std::lock_guard lock(mutex);
    isTaken = false;
}
