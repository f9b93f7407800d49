// KProcessIO: messages, replies, the profile relays and the receiving check.
#include "process/kprocessio.h"

#include "base/libraryframe.h"
#include "config/kprofile.h"
#include "platform/framework/mbstring.h"
#include "platform/files/privateprofile.h"
#include "platform/ipc/windowbus.h"
#include "platform/windows/windows.h"
#include "process/kprocessio_p.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

using KData = KProcessIO::KData;
using namespace vx::detail;

namespace {

constexpr int kMargin = 1000;
constexpr int kFixed = 38;
char g_sourceName[] = "ProcessIO.cpp";

int Length(const char* text)
{
    return text ? static_cast<int>(std::strlen(text)) : 0;
}

// The partner's settings file on disk for a scope: its global file for 0,
// its project file for any other.
const char* PartnerFile(int scope)
{
    if (g_MainframeType == MainframeAT)
        return scope != 0 ? g_projectprofiledirIT : g_profiledirIT;
    return scope != 0 ? g_projectprofiledirAT : g_profiledirAT;
}

// The running partner's window, never starting it; null sends a relay to
// the disk.
HWND RelayTarget()
{
    if (!std::atomic_ref<int>(KProcessIO::m_Active).load())
        return nullptr;
    return KProcessIO::GetVxProg(MainframeType(0), 0, 0);
}

KData* RelayRequest(ProcessIDType id, int size, int first, int scope, const char* section, const char* key)
{
    KData* data = KProcessIO::InitPartner(id, size, nullptr);
    if (!data)
        return nullptr;
    data->m_Param1 = first;
    data->m_Param2 = scope;
    data->Write(section);
    data->Write(key);
    return data;
}

} // namespace

KData* KProcessIO::InitPartner(ProcessIDType id, int size, KData* origin)
{
    if (!std::atomic_ref<int>(m_Active).load())
        return nullptr;
    WriteLog("INIT", id, vx::kLogMessage);
    // The margin is always there and is sent along; the whole block must
    // stay within what the window bus carries.
    if (size < 0 || static_cast<long long>(size) + kMargin + kFixed > static_cast<long long>(vx::kMaxCopyDataBytes))
        return nullptr;
    void* memory = std::malloc(static_cast<std::size_t>(size) + kMargin + kFixed);
    if (!memory)
        return nullptr;
    auto* data = static_cast<KData*>(memory);
    data->Init(id, size + kMargin, origin);
    return data;
}

int KProcessIO::SendPartner(HWND target, KData* data)
{
    if (!data)
        return 0;
    if (target == m_hProgWnd)
        VexalAssert(g_sourceName, __LINE__);
    WriteLog("SEND", data->m_ID, vx::kLogMessage);
    // The platform's COPYDATASTRUCT has pointer-sized fields, so it is made
    // here rather than read from the block's 32-bit image of it.
    COPYDATASTRUCT cds{data->m_dwData, data->m_cbData, data};
    const auto from = reinterpret_cast<WPARAM>(m_hProgWnd);
    int result;
    if (data->m_ID == vx::kPartnerReply) {
        // The requester hands a reply to ClosePartner, whose answer is always
        // 1, so there is nothing to wait for: it arrives within the
        // requester's send all the same, ahead of that send's own answer.
        result = SendNotifyMessageA(target, WM_COPYDATA, from, reinterpret_cast<LPARAM>(&cds)) ? 1 : 0;
    } else {
        // The answer is a 32-bit value, as on the original platform.
        result = static_cast<int>(SendMessageA(target, WM_COPYDATA, from, reinterpret_cast<LPARAM>(&cds)));
    }
    if (result == 0)
        WriteLog("SEND-FALSE", data->m_ID, vx::kLogMessage);
    return result;
}

KData* KProcessIO::ExitPartner(KData* data, int takeReply)
{
    if (!data)
        return nullptr;
    if (!takeReply) {
        WriteLog("EXIT", data->m_ID, vx::kLogMessage);
        std::free(data);
        return nullptr;
    }
    WriteLog("EXIT-REC", data->m_ID, vx::kLogMessage);
    KData* reply = m_pReceiver;
    if (!reply) {
        VexalAssert(g_sourceName, __LINE__);
    } else {
        reply->m_ID = vx::kPartnerReplyTaken;
        reply->Rewind();
    }
    std::free(data);
    return reply;
}

int KProcessIO::ClosePartner(KData* data)
{
    if (!data)
        return 1;
    WriteLog("CLOSE", data->m_ID, vx::kLogMessage);
    if (data->m_ID == vx::kPartnerReply) {
        const std::size_t size = static_cast<std::size_t>(std::max<LONG>(data->m_Capacity, 0)) + kFixed;
        void* copy = std::malloc(size);
        if (copy) {
            std::memcpy(copy, data, size);
            // A reply that was never taken over goes; one handed to a caller
            // is the caller's to close.
            if (m_pReceiver && m_pReceiver->m_ID == vx::kPartnerReply)
                std::free(m_pReceiver);
            m_pReceiver = static_cast<KData*>(copy);
        }
    } else if (data->m_ID == vx::kPartnerReplyTaken) {
        if (m_pReceiver == data)
            m_pReceiver = nullptr;
        std::free(data);
    }
    return 1;
}

namespace {

// A request with its two parameters to the partner (started first if
// `startIfMissing`); null when the link is down or there is no partner.
KData* PartnerRequest(ProcessIDType id, int size, int first, int second, int startIfMissing, HWND& partner)
{
    if (!std::atomic_ref<int>(KProcessIO::m_Active).load())
        return nullptr;
    partner = KProcessIO::GetVxProg(MainframeType(0), startIfMissing, 0);
    KData* data = partner ? KProcessIO::InitPartner(id, size, nullptr) : nullptr;
    if (data) {
        data->m_Param1 = first;
        data->m_Param2 = second;
    }
    return data;
}

} // namespace

int KProcessIO::SendFunction(ProcessIDType id, int first, int second, int startIfMissing)
{
    HWND partner = nullptr;
    KData* data = PartnerRequest(id, 0, first, second, startIfMissing, partner);
    if (!data)
        return 0;
    const int result = SendPartner(partner, data);
    ExitPartner(data, 0);
    return result;
}

int KProcessIO::SendStringArray(ProcessIDType id, CStringArray& strings, int first, int second, int startIfMissing)
{
    HWND partner = nullptr;
    KData* data = PartnerRequest(id, KData::GetSize(strings), first, second, startIfMissing, partner);
    if (!data)
        return 0;
    data->Write(strings);
    SendPartner(partner, data);
    ExitPartner(data, 0);
    return 1;
}

int KProcessIO::GetStringArray(ProcessIDType id, CStringArray& strings, int first, int second, int startIfMissing)
{
    // Sized by the array as it stands, which is not sent.
    HWND partner = nullptr;
    KData* data = PartnerRequest(id, KData::GetSize(strings), first, second, startIfMissing, partner);
    if (!data)
        return 0;
    KData* reply = ExitPartner(data, SendPartner(partner, data));
    if (!reply)
        return 0;
    reply->Read(strings);
    ClosePartner(reply);
    return 1;
}

CString KProcessIO::GetProfileStringA(const char* section, const char* key, const char* defaultValue, int scope)
{
    if (const HWND partner = RelayTarget()) {
        const int size = Length(section) + Length(key) + Length(defaultValue) + 3;
        if (KData* data = RelayRequest(vx::kPartnerGetProfile, size, 1, scope, section, key)) {
            data->Write(defaultValue);
            const int result = SendPartner(partner, data);
            if (KData* reply = ExitPartner(data, result)) {
                CString value;
                reply->Read(value);
                ClosePartner(reply);
                return value;
            }
        }
    }
    char buffer[2048] = {};
    GetPrivateProfileStringA(section, key, defaultValue, buffer, sizeof buffer, PartnerFile(scope));
    return buffer;
}

unsigned int KProcessIO::GetProfileIntA(const char* section, const char* key, int defaultValue, int scope)
{
    if (const HWND partner = RelayTarget()) {
        const int size = Length(section) + Length(key) + 6;
        if (KData* data = RelayRequest(vx::kPartnerGetProfile, size, 2, scope, section, key)) {
            data->Write(defaultValue);
            const auto result = static_cast<unsigned>(SendPartner(partner, data));
            if (result == vx::kPartnerIntInReply) {
                if (KData* reply = ExitPartner(data, 1)) {
                    int value = 0;
                    reply->Read(value);
                    ClosePartner(reply);
                    return static_cast<unsigned>(value);
                }
            } else {
                ExitPartner(data, 0);
                // 0 would be a failure, so the partner answers 0 by a token.
                if (result != 0)
                    return result == vx::kPartnerIntZero ? 0 : result;
            }
        }
    }
    return GetPrivateProfileIntA(section, key, defaultValue, PartnerFile(scope));
}

int KProcessIO::WriteProfileStringA(const char* section, const char* key, const char* value, int scope)
{
    if (const HWND partner = RelayTarget()) {
        const int size = Length(section) + Length(key) + Length(value) + 3;
        if (KData* data = RelayRequest(vx::kPartnerWriteProfile, size, 2, scope, section, key)) {
            data->Write(value);
            const int result = SendPartner(partner, data);
            ExitPartner(data, 0);
            return result;
        }
    }
    return WritePrivateProfileStringA(section, key, value, PartnerFile(scope));
}

int KProcessIO::WriteProfileInt(const char* section, const char* key, int value, int scope)
{
    if (const HWND partner = RelayTarget()) {
        const int size = Length(section) + Length(key) + 6;
        if (KData* data = RelayRequest(vx::kPartnerWriteProfile, size, 2, scope, section, key)) {
            data->Write(value);
            const int result = SendPartner(partner, data);
            ExitPartner(data, 0);
            return result;
        }
    }
    char text[16];
    _itoa(value, text, 10);
    return WritePrivateProfileStringA(section, key, text, PartnerFile(scope));
}

KData* vx::AcceptPartnerBlock(const COPYDATASTRUCT* data)
{
    const char* fault = nullptr;
    const auto* block = data ? static_cast<KData*>(data->lpData) : nullptr;
    const std::size_t length = data ? data->cbData : 0;
    if (!data || !data->lpData)
        fault = "no block";
    else if (length < static_cast<std::size_t>(kFixed))
        fault = "shorter than 38 bytes";
    else if (length > kMaxCopyDataBytes)
        fault = "longer than 16 MiB";
    else if (block->m_cbData != length)
        fault = "cbData disagrees with its length";
    else if (static_cast<long long>(block->m_Capacity) + kFixed != static_cast<long long>(length))
        fault = "capacity disagrees with its length";
    if (fault) {
        CString line;
        line.Format("REFUSED %u bytes: %s", static_cast<unsigned>(length), fault);
        LogLine(line, 0, kLogLink);
        return nullptr;
    }
    auto* accepted = static_cast<KData*>(data->lpData);
    accepted->Rewind();
    return accepted;
}
