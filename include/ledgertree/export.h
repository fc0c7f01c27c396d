#pragma once

/// Marks the symbols that the library exports; everything else stays internal.
#if !defined(_WIN32)
#define LEDGERTREE_API __attribute__((visibility("default")))
#elif defined(LEDGERTREE_IMPORTED)
#define LEDGERTREE_API __declspec(dllimport)
#else
#define LEDGERTREE_API __declspec(dllexport)
#endif
