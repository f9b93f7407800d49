// Free functions over the database classes that let no exception through:
// each catches what the engine raises, shows a message in fixed words (the
// engine's text appended) through VxAfxMessageBox, and answers with a plain
// result. The functions own what they create: after a failed creation the
// object is freed and the caller's pointer is null.
//
//   CDaoDatabase* db = nullptr;
//   switch (openDatabase(&db, "C:\\data\\parts.mdb", 1, 0)) {
//   case 1: ...              // opened
//   case 2: ...              // a copy in the temporary directory was opened
//   default: ...             // 0 file not found, -1 another failure; db is null
//   }
//   closeDatabase(&db);      // db is null afterwards
//
// Filters with text values are built in two steps, so that a value holding
// an apostrophe still gets a delimiter that works:
//
//   CString f = FormatDAOFilter1("[Name]='") ;       // "[Name]=\x01"
//   f += "O'Brien"; f += FormatDAOFilter1("'");       // ...\x01
//   FormatDAOFilter2(f);                              // [Name]="O'Brien"
#pragma once

#include "platform/framework/cstring.h"
#include "platform/dao/daodatabase.h"
#include "platform/dao/daoquerydef.h"
#include "platform/dao/daotabledef.h"
#include "vxbase_export.h"

// 1 (default): show the engine's exception messages; 0 suppresses most of
// them (see each function), for silent probing.
VXBASE_EXPORT extern int showerrorDatabase;

namespace vx {
// The marker that stands for a text delimiter in a filter under construction.
constexpr char kDaoFilterMarker = '\x01';
// How often openDatabase falls back on a copy in the temporary directory.
constexpr int kOpenDatabaseCopies = 1;
} // namespace vx

// Opens `file` into a new database object at *db (an old one is closed and
// freed first). 1 opened; 2 a copy in the temporary directory was opened
// (read-only only: where the file can't be read in place, it is opened
// exclusively on a CD-ROM, else copied to $TEMP or $TMPDIR, once); 0 file
// not found (string 6713 and the engine's text, if `showError` and
// showerrorDatabase); -1 another failure (6713 and the text if
// showerrorDatabase; 6714 for lack of memory). On 0 and -1 *db is null.
VXBASE_EXPORT int openDatabase(CDaoDatabase** db, CString file, int showError, int readOnly);
// Creates `file` with the fixed locale ";LANGID=0x0409;CP=1252;COUNTRY=0".
// 1, or 0 with *db null. An existing file is a failure.
VXBASE_EXPORT int createDatabase(CDaoDatabase** db, CString file, int options);
// Closes and frees *db if there is one; *db is null afterwards.
VXBASE_EXPORT void closeDatabase(CDaoDatabase** db);

// 1 unless the engine says there is no such item; any other failure is 1 too.
VXBASE_EXPORT int IsExistentTable(CDaoDatabase* db, CString name);
VXBASE_EXPORT int IsExistentQuery(CDaoDatabase* db, CString name);

// A new table definition, not yet appended. An existing name shows "A table
// by that name already exists." (whatever showerrorDatabase) and gives 0.
VXBASE_EXPORT int createNewTableDef(CDaoDatabase* db, CDaoTableDef** def, CString name);
VXBASE_EXPORT int openTableDef(CDaoDatabase* db, CDaoTableDef** def, CString name, int showError);
VXBASE_EXPORT int appendTableDef(CDaoDatabase* db, CDaoTableDef* def);
// All information on table number `index`.
VXBASE_EXPORT int getTableInfo(CDaoDatabase* db, CDaoTableDefInfo* info, int index, int showError);
// Deletes the table if it exists.
VXBASE_EXPORT void deleteTable(CDaoDatabase* db, CString name);
VXBASE_EXPORT int createNewQueryDef(CDaoDatabase* db, CDaoQueryDef** def, CString name, CString sql);
VXBASE_EXPORT int openQueryDef(CDaoDatabase* db, CDaoQueryDef** def, CString name);

// A copy of `text` with every apostrophe replaced by the marker.
VXBASE_EXPORT CString FormatDAOFilter1(const char* text);
// Turns each pair of markers into apostrophes, or into double quotes where
// the text between them holds an apostrophe. 0 (with the text changed as
// far as it got) if a pair has no closing marker, else 1.
VXBASE_EXPORT int FormatDAOFilter2(CString& text);
