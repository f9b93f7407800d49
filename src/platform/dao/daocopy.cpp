// Copying a database: the design through the DAO classes, so that each
// engine makes it its own way, and the records straight from engine to
// engine in one transaction, counters and all.
#include "platform/dao/daocopy.h"

#include "platform/dao/daoconnect.h"
#include "platform/dao/daodatabase.h"
#include "platform/dao/daodatabase_p.h"
#include "platform/dao/daoquerydef.h"
#include "platform/dao/daotabledef.h"
#include "platform/files/fileapi.h"

#include <vector>

namespace vx {

namespace {

void CopyTable(CDaoDatabase& from, CDaoDatabase& to, const std::string& name)
{
    CDaoTableDef source(&from);
    source.Open(name.c_str());
    CDaoTableDef target(&to);
    target.Create(name.c_str());
    for (int i = 0; i < source.GetFieldCount(); ++i) {
        CDaoFieldInfo info;
        source.GetFieldInfo(i, info, AFX_DAO_ALL_INFO);
        target.CreateField(info);
    }
    target.Append();
    for (int i = 0; i < source.GetIndexCount(); ++i) {
        CDaoIndexInfo info;
        source.GetIndexInfo(i, info, AFX_DAO_ALL_INFO);
        target.CreateIndex(info);
    }

    // The records, every field written as it is stored (counters too).
    Engine& in = *from.d_func()->engine;
    Engine& out = to.d_func()->Writing();
    const std::vector<DaoColumn> columns = out.Columns(out.FindTable(name));
    const std::string table = in.FindTable(name);
    std::string select;
    for (const DaoColumn& c : in.Columns(table))
        select += (select.empty() ? "SELECT " : ", ") + BracketName(c.name);
    std::unique_ptr<Cursor> rows = in.OpenQuery(select + " FROM " + BracketName(table));
    std::unique_ptr<RowWriter> writer =
        out.PrepareInsert(out.FindTable(name), columns, std::string(columns.size(), '1'), false);
    std::vector<DaoValue> values(columns.size());
    while (rows->Next()) {
        for (std::size_t i = 0; i < columns.size() && i < rows->Width(); ++i)
            values[i] = Owned(rows->Value(i));
        writer->Insert(values.data());
    }
    out.CountersFollow(out.FindTable(name));
}

} // namespace

std::string CopyDatabase(const std::string& source, const std::string& target)
{
    bool created = false;
    try {
        CDaoDatabase from;
        from.Open(source.c_str(), FALSE, TRUE);
        CDaoDatabase to;
        to.Create(target.c_str(), from.GetLocale());
        created = true;
        std::vector<std::string> tables;
        for (int i = 0; i < from.GetTableDefCount(); ++i) {
            CDaoTableDefInfo info;
            from.GetTableDefInfo(i, info);
            if (!(info.m_lAttributes & dbSystemObject))
                tables.push_back(info.m_strName.StdString());
        }
        to.m_pWorkspace->BeginTrans();
        try {
            for (const auto& t : tables)
                CopyTable(from, to, t);
            to.m_pWorkspace->CommitTrans();
        } catch (...) {
            to.m_pWorkspace->Rollback();
            throw;
        }
        // Queries last: a select query names the tables it reads.
        for (int i = 0; i < from.GetQueryDefCount(); ++i) {
            CDaoQueryDefInfo info;
            from.GetQueryDefInfo(i, info, AFX_DAO_ALL_INFO);
            CDaoQueryDef query(&to);
            query.Create(info.m_strName, info.m_strSQL);
            query.Append();
        }
        to.Close();
        return std::string();
    } catch (CDaoException& e) {
        if (created && !IsServerConnect(target))
            DeleteFileA(target.c_str());
        return e.m_pErrorInfo->m_strDescription.StdString();
    }
}

} // namespace vx
