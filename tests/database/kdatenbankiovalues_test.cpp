// KDatenbankIO: typed reads and writes, text forms, record copies.
#include "dbtestutil.h"

#include "database/kdatenbankio.h"
#include "platform/framework/coledatetime.h"

#include <cstring>

namespace {

// One field of each type, in the catalogue order of `Field`.
enum Field { Flag, Small, Short, Count, Price, Ratio, Exact, When, Name, Note, Id };

// On a database file and on a server database alike.
class Values : public dbtest::EngineTest {
protected:
    void SetUp() override
    {
        dbtest::EngineTest::SetUp();
        if (IsSkipped())
            return;
        const struct {
            const char* name;
            DWORD parameter;
        } fields[] = {
            {"Flag", MAKELONG(1, 1)},   {"Small", MAKELONG(1, 2)}, {"Short", MAKELONG(2, 3)},
            {"Count", MAKELONG(4, 4)},  {"Price", MAKELONG(8, 5)}, {"Ratio", MAKELONG(4, 6)},
            {"Exact", MAKELONG(8, 7)},  {"When", MAKELONG(8, 8)},  {"Name", MAKELONG(10, 10)},
            {"Note", MAKELONG(0, 12)},  {"Id", MAKELONG(4, 255)},
        };
        db.m_TableName = "All";
        for (const auto& f : fields) {
            db.m_FeldNamen.Add(f.name);
            db.m_FeldParameter.Add(f.parameter);
        }
        file = Db("values");
        ASSERT_EQ(db.DbAnlegen(file.c_str(), -1), 1);
        ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    }

    // Adds a record through `fill` and makes it the current one.
    template <class Fill>
    void Add(Fill fill)
    {
        db.m_pDbRecordset->AddNew();
        fill();
        db.m_pDbRecordset->Update();
        db.m_pDbRecordset->MoveLast();
    }

    std::string file;
    KDatenbankIO db;
};

VX_ON_BOTH_ENGINES(Values);

} // namespace

TEST_P(Values, NullFieldsReadAsFixedEmptyValues)
{
    Add([] {});
    EXPECT_EQ(db.DbGetBoolValue(Flag), 0);
    EXPECT_EQ(db.DbGetByteValue(Small), 0);
    EXPECT_EQ(db.DbGetShortValue(Short), 0);
    EXPECT_EQ(db.DbGetLongValue(Count), 0);
    EXPECT_EQ(db.DbGetCurrencyValue(Price).int64, 0);
    EXPECT_EQ(db.DbGetSingleValue(Ratio), 0.0f);
    EXPECT_EQ(db.DbGetDoubleValue(Exact), 0.0);
    EXPECT_EQ(db.DbGetDateValue(When), 0.0);
    EXPECT_STREQ(db.DbGetTextValue(Name), "");
    COleVariant buffer;
    EXPECT_STREQ(db.DbGetTextValue("Note", buffer), "");
    EXPECT_EQ(db.DbGetLongValue(Id), 1); // numbered by the database
    EXPECT_EQ(db.DbGetFieldValue(Price), "0,00");
    EXPECT_EQ(db.DbGetFieldValue(Name), "");
}

TEST_P(Values, ReadsWhatEachTypedWriteStored)
{
    tagCY price;
    price.int64 = 123450000;
    const double when = COleDateTime(2024, 3, 1, 0, 0, 0).m_dt;
    Add([&] {
        db.DbSetBoolValue(Flag, 1);
        db.DbSetByteValue(Small, 200);
        db.DbSetShortValue(Short, -300);
        db.DbSetLongValue(Count, 123456);
        db.DbSetCurrencyValue(Price, price);
        db.DbSetSingleValue(Ratio, 1.5f);
        db.DbSetDoubleValue(Exact, 2.5);
        db.DbSetDateValue(When, when);
        db.DbSetFeldValue(Name, "Motor", 0);
        db.DbSetFeldValue(Note, "a long note", 0);
    });
    EXPECT_EQ(db.DbGetBoolValue(Flag), -1); // true, as the engine delivers it
    EXPECT_EQ(db.DbGetByteValue("Small"), 200);
    EXPECT_EQ(db.DbGetShortValue(Short), -300);
    EXPECT_EQ(db.DbGetLongValue("Count"), 123456);
    EXPECT_EQ(db.DbGetCurrencyValue(Price).int64, 123450000);
    EXPECT_EQ(db.DbGetSingleValue(Ratio), 1.5f);
    EXPECT_EQ(db.DbGetDoubleValue("Exact"), 2.5);
    EXPECT_EQ(db.DbGetDateValue(When), when);
    EXPECT_STREQ(db.DbGetTextValue(Name), "Motor");
    EXPECT_STREQ(db.DbGetTextValue(Note), "a long note");

    EXPECT_EQ(db.DbGetFieldValue(Flag), "-1");
    EXPECT_EQ(db.DbGetFieldValue(Small), "200");
    EXPECT_EQ(db.DbGetFieldValue(Short), "-300");
    EXPECT_EQ(db.DbGetFieldValue("Count"), "123456");
    EXPECT_EQ(db.DbGetFieldValue(Price), "12345,00");
    EXPECT_EQ(db.DbGetFieldValue(Ratio), "1,50");
    EXPECT_EQ(db.DbGetFieldValue(Exact), "2,500000");
    EXPECT_EQ(db.DbGetFieldValue(When), "2024.3.1");
    EXPECT_EQ(db.DbGetFieldValue(Name), "Motor");
    EXPECT_EQ(db.DbGetFieldValue(Id), "1");
    db.m_pDbRecordset->Close();
    EXPECT_EQ(db.DbGetFieldValue(Name), "");
}

TEST_P(Values, DbSetFeldValueConvertsByTheFieldType)
{
    // The check put the file's type into the catalogue: a counter is a long
    // there, which can't be written. Declared as 255 it is left alone.
    unsigned short length = 0, type = 0;
    db.GetFeldPara(Id, length, type);
    EXPECT_EQ(type, 4);
    db.SetFeldPara(Id, 4, 255);
    Add([&] {
        db.DbSetFeldValue(Flag, "5", 0);
        db.DbSetFeldValue(Small, "300", 0); // the low byte
        db.DbSetFeldValue(Short, "3", 2.5);
        db.DbSetFeldValue(Count, "3", 2.5);
        db.DbSetFeldValue(Price, "12.5", 0);
        db.DbSetFeldValue(Ratio, "1.25", 2);
        db.DbSetFeldValue(Exact, "1,5", 0); // atof stops at the comma
        db.DbSetFeldValue(When, "2024-03-01", 0);
        db.DbSetFeldValue(Id, "99", 0);
    });
    EXPECT_EQ(db.DbGetBoolValue(Flag), -1);
    EXPECT_EQ(db.DbGetByteValue(Small), 44);
    EXPECT_EQ(db.DbGetShortValue(Short), 7);
    EXPECT_EQ(db.DbGetLongValue(Count), 7);
    EXPECT_EQ(db.DbGetCurrencyValue(Price).int64, 125000);
    EXPECT_EQ(db.DbGetSingleValue(Ratio), 2.5f);
    EXPECT_EQ(db.DbGetDoubleValue(Exact), 1.0);
    EXPECT_EQ(db.DbGetFieldValue(When), "2024.3.1");
    EXPECT_EQ(db.DbGetLongValue(Id), 1); // the database numbers it

    // Currency goes through the low word only.
    db.m_pDbRecordset->Edit();
    db.DbSetFeldValue(Price, "-1", 0);
    db.m_pDbRecordset->Update();
    EXPECT_EQ(db.DbGetCurrencyValue(Price).int64, 0xFFFFD8F0LL);
}

TEST_P(Values, CutsTextsToOneLessThanTheLimit)
{
    Add([&] { db.DbSetFeldValue(Name, "0123456789", 0); });
    EXPECT_STREQ(db.DbGetTextValue(Name), "012345678");
    db.m_pDbRecordset->Edit();
    db.DbSetFeldValue(Name, "abcde", 5);
    db.m_pDbRecordset->Update();
    EXPECT_STREQ(db.DbGetTextValue(Name), "abcd");
    db.m_pDbRecordset->Edit();
    db.DbSetFeldValue(Name, "abcd", 0.5); // a factor below 1 is no limit
    db.m_pDbRecordset->Update();
    EXPECT_STREQ(db.DbGetTextValue(Name), "abcd");
    db.m_pDbRecordset->Edit();
    db.DbSetFeldValue(Note, std::string(300, 'x').c_str(), 0); // a memo has no limit
    db.m_pDbRecordset->Update();
    EXPECT_EQ(std::strlen(db.DbGetTextValue(Note)), 300u);
}

TEST_P(Values, DbSetLongValueConvertsOrLeavesAlone)
{
    Add([&] {
        db.DbSetLongValue(Small, 0x1FF);
        db.DbSetLongValue(Ratio, 3);
        db.DbSetLongValue(Exact, -4);
        db.DbSetLongValue(Name, -42);
        db.DbSetLongValue(Price, 5); // currency: nothing
    });
    EXPECT_EQ(db.DbGetByteValue(Small), 0xFF);
    EXPECT_EQ(db.DbGetSingleValue(Ratio), 3.0f);
    EXPECT_EQ(db.DbGetDoubleValue(Exact), -4.0);
    EXPECT_STREQ(db.DbGetTextValue(Name), "-42");
    COleVariant v;
    db.m_pDbRecordset->GetFieldValue("Price", v);
    EXPECT_EQ(v.vt, VT_NULL);
}

TEST_P(Values, EngineErrorsReachTheCaller)
{
    Add([] {});
    EXPECT_THROW(db.DbSetLongValue(Count, 1), CDaoException); // no Edit
    EXPECT_THROW(db.DbGetLongValue("Nowhere"), CDaoException);
    EXPECT_THROW(db.DbGetLongValue(99), CDaoException);
}

TEST_P(Values, SatzKopierenCopiesAllButTheSkippedFields)
{
    Add([&] {
        db.DbSetLongValue(Count, 1);
        db.DbSetFeldValue(Name, "first", 0);
    });
    Add([&] {
        db.DbSetLongValue(Count, 2);
        db.DbSetFeldValue(Name, "second", 0);
    });
    EXPECT_EQ(db.SatzVorhanden(), 1);
    db.m_pDbRecordset->SetAbsolutePosition(0);
    CDWordArray skip;
    for (DWORD f = 0; f <= Id; ++f)
        skip.Add(f);
    ASSERT_EQ(db.SatzKopieren(1, 0, skip), 1); // everything skipped: unchanged
    EXPECT_EQ(db.m_pDbRecordset->GetAbsolutePosition(), 0);
    db.m_pDbRecordset->SetAbsolutePosition(1);
    EXPECT_STREQ(db.DbGetTextValue(Name), "second");

    skip.RemoveAll();
    skip.Add(Id); // a counter can't be written
    skip.Add(Count);
    ASSERT_EQ(db.SatzKopieren(1, 0, skip), 1);
    EXPECT_EQ(db.m_pDbRecordset->GetAbsolutePosition(), 1);
    EXPECT_STREQ(db.DbGetTextValue(Name), "first");
    EXPECT_EQ(db.DbGetLongValue(Count), 2);
    EXPECT_EQ(db.DbGetLongValue(Id), 2);
}

TEST_P(Values, SatzVorhandenAndDbAddNewField)
{
    EXPECT_EQ(db.SatzVorhanden(), 0);
    db.m_FeldNamen.Add("Weight");
    db.m_FeldParameter.Add(MAKELONG(8, 7));
    EXPECT_EQ(db.DbAddNewField(Id + 1, 1), 1);
    EXPECT_EQ(db.FeldVorhanden("Weight"), 1);
    EXPECT_TRUE(db.m_pDbRecordset->IsOpen());
    Add([&] { db.DbSetDoubleValue(Id + 1, 0.25); });
    EXPECT_EQ(db.DbGetDoubleValue("Weight"), 0.25);
    EXPECT_EQ(db.DbAddNewField(Id + 5, 0), 0);
}
