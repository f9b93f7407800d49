// CDaoWorkspace: the session that database objects belong to, and the scope
// of transactions. A database made without a workspace joins the default
// workspace, as in DAO:
//
//   CDaoDatabase db;
//   db.Open(path);
//   db.m_pWorkspace->BeginTrans();
//   ... many AddNew / Update ...
//   db.m_pWorkspace->CommitTrans();     // one commit for all of them
//
// Without a transaction every Update, Delete and Execute is committed on
// its own. Transactions nest; Rollback undoes the innermost one.
#pragma once

#include "platform/framework/cobject.h"
#include "vxbase_export.h"

#include <vector>

class CDaoDatabase;

class VXBASE_EXPORT CDaoWorkspace : public CObject {
public:
    CDaoWorkspace() = default;
    ~CDaoWorkspace() override;
    CDaoWorkspace(const CDaoWorkspace&) = delete;
    CDaoWorkspace& operator=(const CDaoWorkspace&) = delete;

    // Starts a transaction on every open database of the workspace.
    void BeginTrans();
    // Commits the innermost transaction. Without one: error 3034.
    void CommitTrans();
    // Undoes the innermost transaction. Without one: error 3034.
    void Rollback();
    // The number of open transactions.
    int GetTransactionDepth() const { return m_depth; }

    // The workspace of databases made without one.
    static CDaoWorkspace* GetDefault();

private:
    friend class CDaoDatabase;
    void Attach(CDaoDatabase* database);
    void Detach(CDaoDatabase* database);
    // Ends the innermost transaction on every open database.
    void EndTrans(bool undone);
    std::vector<CDaoDatabase*> m_databases;
    int m_depth = 0;
};
