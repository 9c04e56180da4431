// The mark of everything that leaves the shared library, and of what inside it does not.
#pragma once

#define ORKRULE_EXPORT __attribute__((visibility("default")))
#define ORKRULE_LOCAL __attribute__((visibility("hidden")))
