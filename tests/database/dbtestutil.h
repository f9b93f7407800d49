// Helpers of the database tests: a temporary directory that goes away with
// the test, a message box handler that records what would be shown, the
// DAO error a piece of work raises, and tests on the run's PostgreSQL
// server or on both engines.
#pragma once

#include "platform/dao/daoexception.h"
#include "platform/dao/daotabledef.h"
#include "platform/windows/messagebox.h"

#include "support/pgserver.h"
#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace dbtest {

// A temporary directory whose files are named as `dir / "parts.mdb"`.
class TempDir : public vxtest::TempDir {
public:
    std::string operator/(const std::string& name) const { return Path(name); }
    const std::string& path() const { return Path(); }
};

// Records every box; answers OK.
class Boxes {
public:
    Boxes()
    {
        old_ = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            texts.push_back(r.text);
            return IDOK;
        });
    }
    ~Boxes() { vx::SetMessageBoxHandler(old_); }
    std::vector<std::string> texts;

private:
    vx::MessageBoxHandler old_;
};

using vxtest::WriteBytes;

// The DAO error number `work` raises; 0 if it raises none. Any other
// exception fails the test.
inline long ErrorOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (CDaoException& e) {
        return e.m_pErrorInfo->m_lErrorCode;
    } catch (...) {
        ADD_FAILURE() << "an exception other than CDaoException";
        return -1;
    }
    return 0;
}

// The text of the DAO error `work` raises; "" if it raises none.
inline std::string DescriptionOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (CDaoException& e) {
        return e.m_pErrorInfo->m_strDescription.StdString();
    }
    return std::string();
}

enum class IndexKind { Plain, Unique, Primary };

// Adds index `name` on the one field `field` to `def`; throws as
// CDaoTableDef::CreateIndex does.
inline void AddIndex(CDaoTableDef& def, const char* name, const char* field, IndexKind kind,
                     bool descending = false)
{
    CDaoIndexFieldInfo fieldInfo{field, descending ? TRUE : FALSE};
    CDaoIndexInfo index;
    index.m_strName = name;
    index.m_pFieldInfos = &fieldInfo;
    index.m_nFields = 1;
    index.m_bPrimary = kind == IndexKind::Primary ? TRUE : FALSE;
    index.m_bUnique = kind == IndexKind::Unique ? TRUE : FALSE;
    def.CreateIndex(index);
}

// A test on the test run's PostgreSQL server; without one it skips.
class ServerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string why;
        server = vxtest::PgServer::Get(&why);
        if (!server)
            GTEST_SKIP() << "no PostgreSQL server for the tests: " << why;
    }
    vxtest::PgServer* server = nullptr;
};

// A test whose body runs on a database file and on a database of the test
// run's PostgreSQL server: the parameter names the engine, "File" or
// "Server" (instantiate with VX_ON_BOTH_ENGINES). Without a server the
// server's runs skip.
class EngineTest : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override
    {
        if (IsServer()) {
            std::string why;
            m_server = vxtest::PgServer::Get(&why);
            if (!m_server)
                GTEST_SKIP() << "no PostgreSQL server for the tests: " << why;
        }
    }
    bool IsServer() const { return std::string(GetParam()) == "Server"; }
    // The name of database `stem` of this test: a file, or a connect text
    // of a database no other test uses.
    std::string Db(const std::string& stem)
    {
        auto it = m_names.find(stem);
        if (it != m_names.end())
            return it->second;
        const std::string name =
            IsServer() ? m_server->Connect(m_server->FreshName(stem)) : m_dir / (stem + ".mdb");
        return m_names.emplace(stem, name).first->second;
    }

    TempDir m_dir;
    vxtest::PgServer* m_server = nullptr;
    std::map<std::string, std::string> m_names;
};

#define VX_ON_BOTH_ENGINES(Suite)                                                                                     \
    INSTANTIATE_TEST_SUITE_P(Engines, Suite, ::testing::Values("File", "Server"),                                     \
                             [](const ::testing::TestParamInfo<const char*>& info) { return std::string(info.param); })

} // namespace dbtest
