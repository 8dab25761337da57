// What the shared host library offers to programs.
#pragma once

#ifndef OMBRIX_API
#define OMBRIX_API __attribute__((visibility("default")))
#endif
