// The mark of everything that leaves the shared library.
#pragma once

#define ORKRULE_EXPORT __attribute__((visibility("default")))
