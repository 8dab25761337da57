// Which host has this process: plug-ins know one resolver, however many hosts there would like to be, also in copies of
// the host's library that know nothing of each other.
#pragma once

#include <cstddef>

#pragma GCC visibility push(default)
extern "C" {

/// Gives the process to `holder`, whose words are copied, and returns 1. Returns 0 when another has it, and puts its
/// words into `present`, cut to `size` bytes with the zero at their end. By any thread.
int OmbrixClaimProcess(const char* holder, char* present, std::size_t size);

/// Takes the process from the host that has it.
void OmbrixReleaseProcess();

}  // extern "C"
#pragma GCC visibility pop
