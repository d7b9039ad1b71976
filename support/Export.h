// Visibility of the shared core library: what other binaries (the module, the programs, the tests) may see.
#pragma once

#define QX_API __attribute__((visibility("default")))
