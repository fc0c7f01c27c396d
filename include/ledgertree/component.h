#ifndef LEDGERTREE_COMPONENT_H
#define LEDGERTREE_COMPONENT_H

/* What an outside component looks like to the chart of accounts: a plug-in is a shared library that exports
 * one C function, ledgertree_register_components, and makes its components known by name there.
 *
 * A plug-in is looked for when a component isn't known, under the name in front of the component's point
 * ("SheetKit" for "SheetKit.SheetWriter"): libSheetKit.so or SheetKit.so (SheetKit.dll on Windows) in the
 * folder "System" below the base path that the database names, then in "ledgertree/components" beside the
 * library or the folder that the host named by ledgertree::useComponentFolder. One that refuses, or where
 * others than the administrator and the person may write (see component_folder.h), is passed over. It is
 * loaded once and stays until the process ends.
 *
 * Everything is called on the user-interface thread. No exception may leave a function of the plug-in, and
 * none comes out of the registry. Texts are UTF-8. The header is C, so that a plug-in may be built by any
 * compiler.
 *
 * Members that the chart uses, in this order:
 *
 * - of SheetKit.SheetWriter it sets UserID, PositionID, EmployeeID, OLEConnectionString and FormTypeID (301),
 *   and calls ExportToExcel with one argument: a statement in the dialect of SQL Server, whose column aliases
 *   are the headings; for rows that stand in no statement it calls AddRow with the texts of each row, the
 *   headings first, and then ExportRows without arguments;
 * - of PactKit.PactEditor it sets UserID, PositionID, EmployeeID and OLEConnectionString, and calls ClearShow
 *   without arguments.
 *
 * A call returns when the work is done. What fails in it the component tells the person by itself: the chart
 * stays silent. */

#include <stddef.h> /* NOLINT(modernize-deprecated-headers): C */
#include <stdint.h> /* NOLINT(modernize-deprecated-headers): C */

#ifdef __cplusplus
extern "C" {
#endif

/* A plug-in refuses a registry of another number, by returning 0. */
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
  /* `length` bytes, with no end mark; valid until the next function of its owner is called */
  const char* text;
  size_t length;
};

enum LedgerTreeResult {
  LEDGERTREE_DONE = 0,
  LEDGERTREE_NO_SUCH_MEMBER = 438,
  LEDGERTREE_FAILED = 1 /* anything else */
};

/* One component, made for one use. Every function gets `state` back as its first argument. */
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
  /* Makes a component known by a name such as "SheetKit.SheetWriter"; a later one replaces an earlier one. */
  void (*add)(void* context, const char* name, LedgerTreeCreate create);
};

#if defined(_WIN32)
#define LEDGERTREE_EXPORT __declspec(dllexport)
#else
#define LEDGERTREE_EXPORT __attribute__((visibility("default")))
#endif

/* The function that a plug-in exports. Returns 0 where it refuses: what it has made known doesn't count then.
 */
LEDGERTREE_EXPORT int32_t ledgertree_register_components(const struct LedgerTreeRegistry* registry);

#ifdef __cplusplus
}
#endif

#endif
