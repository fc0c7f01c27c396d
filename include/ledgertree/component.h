#ifndef LEDGERTREE_COMPONENT_H
#define LEDGERTREE_COMPONENT_H

/* The interface of outside components to the chart of accounts: a plug-in is a shared library that exports
 * one C function, ledgertree_register_components, which registers its components by name.
 *
 * A plug-in is looked for when a component is unknown, by the part of the component's name before the dot
 * ("SheetKit" for "SheetKit.SheetWriter"): libSheetKit.so or SheetKit.so (SheetKit.dll on Windows) in the
 * folder "System" below the base path in the database, then in "ledgertree/components" next to the library
 * or in the folder set by ledgertree::useComponentFolder. One that refuses, or where others than the
 * administrator and the user may write (see component_folder.h), is skipped. It is loaded once and stays
 * until the process ends.
 *
 * Everything is called on the user-interface thread. No exception may leave a function of the plug-in, and
 * the registry throws none. Texts are UTF-8. The header is C, so that a plug-in may be built by any
 * compiler.
 *
 * Members that the chart uses, in this order:
 *
 * - SheetKit.SheetWriter: it sets UserID, PositionID, EmployeeID, OLEConnectionString and FormTypeID (301),
 *   and calls ExportToExcel with one argument: a statement in SQL Server's dialect, whose column aliases
 *   are the headings; for rows of no statement it calls AddRow with the texts of each row, the headings
 *   first, and then ExportRows without arguments;
 * - PactKit.PactEditor: it sets UserID, PositionID, EmployeeID and OLEConnectionString, and calls ClearShow
 *   without arguments.
 *
 * A call returns when the work is done. The component reports its own failures to the user: the chart
 * stays silent. */

#include <stddef.h> /* NOLINT(modernize-deprecated-headers): C */
#include <stdint.h> /* NOLINT(modernize-deprecated-headers): C */

#ifdef __cplusplus
extern "C" {
#endif

/* A plug-in refuses a registry of another version, by returning 0. */
#define LEDGERTREE_COMPONENT_VERSION 1

enum LedgerTreeValueKind {
  LEDGERTREE_NOTHING = 0,
  LEDGERTREE_INTEGER = 1,
  LEDGERTREE_REAL = 2,
  LEDGERTREE_TEXT = 3
};

struct LedgerTreeValue {
  int32_t kind; /* of LedgerTreeValueKind */
  int64_t integer;
  double real;
  /* `length` bytes, not null-terminated; valid until the next function of its owner is called */
  const char* text;
  size_t length;
};

enum LedgerTreeResult {
  LEDGERTREE_DONE = 0,
  LEDGERTREE_NO_SUCH_MEMBER = 438,
  LEDGERTREE_FAILED = 1 /* anything else */
};

/* One component, created for one use. Every function gets `state` back as its first argument. */
struct LedgerTreeComponent {
  void* state;
  int32_t (*set)(void* state, const char* member, const struct LedgerTreeValue* value);
  int32_t (*get)(void* state, const char* member, struct LedgerTreeValue* value);
  int32_t (*call)(void* state, const char* member, const struct LedgerTreeValue* arguments, size_t count);
  void (*release)(void* state); /* called once, last */
};

/* Fills `component` in full and returns LEDGERTREE_DONE, or fails. */
/* NOLINTNEXTLINE(modernize-use-using): C */
typedef int32_t (*LedgerTreeCreate)(struct LedgerTreeComponent* component);

struct LedgerTreeRegistry {
  int32_t version;
  void* context;
  /* Registers a component by a name such as "SheetKit.SheetWriter"; a later one replaces an earlier one. */
  void (*add)(void* context, const char* name, LedgerTreeCreate create);
};

#if defined(_WIN32)
#define LEDGERTREE_EXPORT __declspec(dllexport)
#else
#define LEDGERTREE_EXPORT __attribute__((visibility("default")))
#endif

/* The function that a plug-in exports. Returns 0 to refuse: what it has registered doesn't count
 * then. */
LEDGERTREE_EXPORT int32_t ledgertree_register_components(const struct LedgerTreeRegistry* registry);

#ifdef __cplusplus
}
#endif

#endif
