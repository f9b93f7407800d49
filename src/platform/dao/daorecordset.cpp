#include "platform/dao/daorecordset.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoquerydef.h"
#include "platform/dao/daorecordset_p.h"
#include "platform/dao/daotabledef.h"

#include <algorithm>
#include <cstring>

using vx::DaoDatabasePrivate;
using vx::DaoValue;

CDaoRecordset::CDaoRecordset(CDaoDatabase* database)
    : m_pDatabase(database), d(std::make_unique<vx::DaoRecordsetPrivate>())
{
}

CDaoRecordset::~CDaoRecordset()
{
    Close();
}

void CDaoRecordset::Open(int type, const char* sql, int options)
{
    if (!m_pDatabase)
        vx::ThrowDao(vx::kDaoObjectInvalid, "Object invalid or no longer set.");
    DaoDatabasePrivate* db = m_pDatabase->d_func();
    db->RequireOpen();
    const std::string text = vx::TrimSql(sql ? sql : "");
    if (text.empty())
        vx::ThrowDao(vx::kDaoInvalidArgument, "Invalid argument.");
    Close();
    try {
        d->Open(*db, type, text, options);
    } catch (...) {
        d->Reset();
        d->open = false;
        d->db = nullptr;
        throw;
    }
    db->recordsets.push_back(this);
}

void CDaoRecordset::Open(CDaoQueryDef* queryDef, int type, int options)
{
    if (!queryDef || !queryDef->IsOpen())
        vx::ThrowDao(vx::kDaoObjectInvalid, "Object invalid or no longer set.");
    Open(type, queryDef->GetSQL(), options);
}

void CDaoRecordset::Open(CDaoTableDef* tableDef, int type, int options)
{
    if (!tableDef || !tableDef->IsOpen())
        vx::ThrowDao(vx::kDaoObjectInvalid, "Object invalid or no longer set.");
    const std::string sql = "SELECT * FROM " + vx::BracketName(tableDef->GetName().StdString());
    Open(type == dbOpenTable ? dbOpenDynaset : type, sql.c_str(), options);
    d->type = type;
}

void CDaoRecordset::Close()
{
    if (!d->open)
        return;
    if (d->db)
        std::erase(d->db->recordsets, this);
    d->Reset();
    d->open = false;
    d->db = nullptr;
}

BOOL CDaoRecordset::IsOpen() const
{
    return d->open;
}

void CDaoRecordset::Requery()
{
    d->RequireOpen();
    const std::string sql = d->sql;
    const int type = d->type;
    const int options = d->options;
    Open(type == dbOpenTable ? dbOpenDynaset : type, sql.c_str(), options);
    d->type = type;
}

BOOL CDaoRecordset::IsBOF() const
{
    d->RequireOpen();
    return d->bof;
}

BOOL CDaoRecordset::IsEOF() const
{
    d->RequireOpen();
    return d->eof;
}

void CDaoRecordset::MoveFirst()
{
    d->RequireOpen();
    if (d->Count() == 0)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    d->lastPending = false;
    d->pos = 0;
    d->bof = d->eof = d->currentDeleted = false;
}

void CDaoRecordset::MoveLast()
{
    d->RequireOpen();
    if (d->Count() == 0)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    d->bof = d->eof = d->currentDeleted = false;
    if (d->streaming) {
        // Where the last member is, is read only if something asks.
        d->lastPending = true;
        return;
    }
    d->pos = d->Count() - 1;
}

void CDaoRecordset::MoveNext()
{
    d->RequireOpen();
    d->Settle();
    if (d->eof)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    if (d->bof)
        d->pos = 0;
    else if (!d->currentDeleted)
        ++d->pos;
    d->currentDeleted = false;
    d->bof = false;
    if (d->pos >= d->Count() && d->streaming)
        d->Advance();
    if (d->pos >= d->Count()) {
        d->pos = d->Count();
        d->eof = true;
    }
}

void CDaoRecordset::MovePrev()
{
    d->RequireOpen();
    d->Settle();
    if (d->bof)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    --d->pos;
    d->currentDeleted = false;
    d->eof = false;
    if (d->pos < 0) {
        d->pos = -1;
        d->bof = true;
    }
}

void CDaoRecordset::Move(long rows)
{
    d->RequireOpen();
    d->Settle();
    d->RequireCurrent();
    d->LeaveEdit();
    const long target = d->pos + rows;
    d->AdvanceTo(target);
    if (target < 0) {
        d->pos = -1;
        d->bof = true;
    } else if (target >= d->Count()) {
        d->pos = d->Count();
        d->eof = true;
    } else {
        d->pos = target;
    }
}

long CDaoRecordset::GetAbsolutePosition() const
{
    d->RequireOpen();
    d->Settle();
    if (d->bof || d->eof || d->currentDeleted || d->pos < 0 || d->pos >= d->Count() ||
        d->editMode == dbEditAdd)
        return -1;
    return d->pos;
}

void CDaoRecordset::SetAbsolutePosition(long position)
{
    d->RequireOpen();
    if (position >= 0)
        d->AdvanceTo(position);
    if (position < 0 || position >= d->Count())
        vx::ThrowDao(vx::kDaoInvalidArgument, "Invalid argument.");
    d->LeaveEdit();
    d->lastPending = false;
    d->pos = position;
    d->bof = d->eof = d->currentDeleted = false;
}

long CDaoRecordset::GetRecordCount() const
{
    d->RequireOpen();
    d->Settle();
    d->Complete();
    return d->Count();
}

COleVariant CDaoRecordset::GetBookmark() const
{
    d->RequireOpen();
    d->Settle();
    d->RequireCurrent();
    COleVariant mark;
    mark.vt = VT_I8;
    mark.llVal = d->rows.RowId(static_cast<std::size_t>(d->pos));
    return mark;
}

COleVariant CDaoRecordset::GetLastModifiedBookmark() const
{
    d->RequireOpen();
    if (d->lastModified == 0)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    COleVariant mark;
    mark.vt = VT_I8;
    mark.llVal = d->lastModified;
    return mark;
}

void CDaoRecordset::SetBookmark(const COleVariant& bookmark)
{
    d->RequireOpen();
    long row = bookmark.vt == VT_I8 ? d->rows.Find(bookmark.llVal) : -1;
    if (row < 0 && bookmark.vt == VT_I8 && d->streaming) {
        d->Settle();
        d->Complete();
        row = d->rows.Find(bookmark.llVal);
    }
    if (row < 0)
        vx::ThrowDao(3159, "Not a valid bookmark.");
    SetAbsolutePosition(row);
}

void CDaoRecordset::AddNew()
{
    d->RequireOpen();
    if (!d->CanUpdate())
        vx::ThrowDao(vx::kDaoReadOnly, "Cannot update. Database or object is read-only.");
    // The record stays where it was, so the last member must be known.
    d->Settle();
    d->editMode = dbEditAdd;
    // The buffer is reused, so that its texts keep their memory.
    d->edit.resize(d->Width());
    for (DaoValue& v : d->edit) {
        v.kind = DaoValue::Null;
        v.s.clear();
    }
    d->assigned.assign(d->Width(), '0');
}

void CDaoRecordset::Edit()
{
    d->RequireOpen();
    if (!d->CanUpdate() || (d->options & dbAppendOnly))
        vx::ThrowDao(vx::kDaoReadOnly, "Cannot update. Database or object is read-only.");
    d->Settle();
    d->RequireCurrent();
    d->edit.clear();
    if (d->OnStreamRow()) {
        for (std::size_t i = 0; i < d->Width(); ++i)
            d->edit.push_back(vx::Owned(d->stream->Value(i)));
    } else {
        const vx::Cell* row = d->Current(d->pos);
        for (std::size_t i = 0; i < d->Width(); ++i)
            d->edit.push_back(vx::Owned(d->rows.View(row[i])));
    }
    // What the record held when the edit began: the engine writes only if
    // no other program changed it since.
    d->original = d->edit;
    d->assigned.assign(d->Width(), '0');
    d->editMode = dbEditInProgress;
}

void CDaoRecordset::Update()
{
    d->RequireOpen();
    if (d->editMode == dbEditNone)
        vx::ThrowDao(vx::kDaoUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
    if (d->editMode == dbEditAdd)
        d->Insert();
    else
        d->UpdateCurrent();
    d->editMode = dbEditNone;
}

void CDaoRecordset::CancelUpdate()
{
    d->RequireOpen();
    if (d->editMode == dbEditNone)
        vx::ThrowDao(vx::kDaoUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
    d->editMode = dbEditNone;
}

void CDaoRecordset::Delete()
{
    d->RequireOpen();
    if (!d->CanUpdate() || (d->options & dbAppendOnly))
        vx::ThrowDao(vx::kDaoReadOnly, "Cannot update. Database or object is read-only.");
    d->Settle();
    d->RequireCurrent();
    d->LeaveEdit();
    auto& p = *d;
    p.db->Writing().DeleteRow(p.table, p.rows.RowId(static_cast<std::size_t>(p.pos)));
    p.rows.EraseRow(static_cast<std::size_t>(p.pos));
    // The stream stands on the last member; a deleted one is no longer it.
    if (p.streaming)
        p.streamRow = p.pos == p.streamRow ? -1 : p.streamRow - 1;
    p.currentDeleted = true;
    p.Wrote(-1);
}

short CDaoRecordset::GetEditMode() const
{
    return d->editMode;
}

BOOL CDaoRecordset::CanUpdate() const
{
    return d->CanUpdate() && !(d->options & dbAppendOnly);
}

BOOL CDaoRecordset::CanAppend() const
{
    return d->CanUpdate();
}

void CDaoRecordset::GetFieldValue(const char* name, COleVariant& value)
{
    d->RequireOpen();
    d->Read(static_cast<std::size_t>(d->FindColumn(name)), value);
}

void CDaoRecordset::GetFieldValue(int index, COleVariant& value)
{
    d->RequireOpen();
    d->CheckIndex(index);
    d->Read(static_cast<std::size_t>(index), value);
}

COleVariant CDaoRecordset::GetFieldValue(const char* name)
{
    COleVariant value;
    GetFieldValue(name, value);
    return value;
}

COleVariant CDaoRecordset::GetFieldValue(int index)
{
    COleVariant value;
    GetFieldValue(index, value);
    return value;
}

void CDaoRecordset::SetFieldValue(const char* name, const COleVariant& value)
{
    d->RequireOpen();
    SetFieldValue(d->FindColumn(name), value);
}

void CDaoRecordset::SetFieldValue(int index, const COleVariant& value)
{
    d->RequireOpen();
    d->CheckIndex(index);
    if (d->editMode == dbEditNone)
        vx::ThrowDao(vx::kDaoUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
    const auto i = static_cast<std::size_t>(index);
    vx::VariantToValue(value, d->columns[i], d->edit[i]);
    d->assigned[i] = '1';
}

void CDaoRecordset::SetFieldValue(const char* name, const char* value)
{
    d->RequireOpen();
    SetFieldValue(d->FindColumn(name), value);
}

void CDaoRecordset::SetFieldValue(int index, const char* value)
{
    d->RequireOpen();
    d->CheckIndex(index);
    const auto i = static_cast<std::size_t>(index);
    const vx::DaoColumn& column = d->columns[i];
    if (d->editMode != dbEditNone && (column.type == dbText || column.type == dbMemo) && !column.autoIncrement) {
        // A text field takes the bytes as they are, as from a text variant.
        DaoValue& out = d->edit[i];
        out.kind = DaoValue::Text;
        out.s.assign(value ? value : "");
        vx::CheckFits(out, column);
        d->assigned[i] = '1';
        return;
    }
    // Through a variant of the set's own, whose text buffer is reused.
    d->text.SetString(value ? value : "", value ? std::strlen(value) : 0);
    SetFieldValue(index, d->text);
}

void CDaoRecordset::SetFieldValueNull(const char* name)
{
    COleVariant null;
    null.SetNull();
    SetFieldValue(name, null);
}

void CDaoRecordset::SetFieldValueNull(int index)
{
    COleVariant null;
    null.SetNull();
    SetFieldValue(index, null);
}

short CDaoRecordset::GetFieldCount() const
{
    d->RequireOpen();
    return static_cast<short>(d->Width());
}

void CDaoRecordset::GetFieldInfo(int index, CDaoFieldInfo& info, DWORD)
{
    d->RequireOpen();
    d->CheckIndex(index);
    vx::FillFieldInfo(d->columns[static_cast<std::size_t>(index)], index, info);
    if (!d->table.empty())
        info.m_strSourceTable = CString(d->table);
}

void CDaoRecordset::GetFieldInfo(const char* name, CDaoFieldInfo& info, DWORD options)
{
    d->RequireOpen();
    GetFieldInfo(d->FindColumn(name), info, options);
}

CString CDaoRecordset::GetName() const
{
    return CString(d->table.empty() ? d->sql : d->table);
}

CString CDaoRecordset::GetSQL() const
{
    return CString(d->sql);
}

short CDaoRecordset::GetType() const
{
    return static_cast<short>(d->type);
}
