// Whether this is a build with sanitizers, which take memory of their own, slow the work down and report on it.
#pragma once

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define OMBRIX_SANITIZED 1
#else
#define OMBRIX_SANITIZED 0
#endif
