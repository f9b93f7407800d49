// The partner link: how one program of the suite (AT or IT) finds, starts,
// addresses and outlives the other.
//
// A host reads its start state from its command line, opens its main frame
// and calls Init; from then on its frame is published on the window bus
// (platform/ipc/windowbus.h), where the partner finds it by title. Requests are
// KData blocks sent by WM_COPYDATA; a reply arrives as a WM_COPYDATA of its
// own while the request is still being sent:
//
//   CString project;
//   int show = KProcessIO::GetStartState(commandLine, &project);
//   KProcessIO::Init(MainframeAT, &frame, "/opt/vexal/", show);
//
//   KProcessIO::KData* request = KProcessIO::InitPartner(ProcessIDType(1000), KProcessIO::KData::GetSize(text), nullptr);
//   request->Write(text);
//   int result = KProcessIO::SendPartner(KProcessIO::GetVxProg(MainframeType(0), 1, 0), request);
//   if (KProcessIO::KData* reply = KProcessIO::ExitPartner(request, result)) {
//       reply->Read(answer);
//       KProcessIO::ClosePartner(reply);
//   }
//
// The receiving side lies in the host's frame: for WM_COPYDATA it takes the
// block with vx::AcceptPartnerBlock (which refuses malformed blocks), hands
// replies (IDs -1 and -2) to ClosePartner and answers the other IDs; a reply
// is built by InitPartner(ProcessIDType(-1), size, request) and sent by
// SendPartner to the window in wParam, then freed by ExitPartner(reply, 0).
//
// The link's settings are in the section "PROCESS" of the suite file; its
// log is "VxProcess.log" in the suite's settings directory.
#pragma once

#include "base/vxglobals.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "platform/framework/rect.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <atomic>
#include <memory>

class CWnd;
struct COPYDATASTRUCT;

// The kind of a message, a 32-bit value. The library uses the values in
// namespace vx below; the host programs add their own (ProcessIDType(1000)).
enum ProcessIDType : int {};
// The detail level of a log line: 1 the life of the link, 4 each message,
// 6 each window search.
enum ProcessLevelType : int {};

namespace vx {
constexpr ProcessIDType kPartnerFound = ProcessIDType(1);      // after a start: the partner is up
constexpr ProcessIDType kPartnerMessageBox = ProcessIDType(101); // show this box for me
constexpr ProcessIDType kPartnerGetProfile = ProcessIDType(102); // read a profile value
constexpr ProcessIDType kPartnerWriteProfile = ProcessIDType(103); // write a profile value
constexpr ProcessIDType kPartnerActivate = ProcessIDType(222); // you are being activated
constexpr ProcessIDType kPartnerDeActivate = ProcessIDType(223); // wParam of 0x40A posted to oneself
constexpr ProcessIDType kPartnerReply = ProcessIDType(-1);     // a reply on the wire
constexpr ProcessIDType kPartnerReplyTaken = ProcessIDType(-2); // a reply taken over by the requester
// The message that DeActivate posts to the program's own window.
constexpr UINT kDeActivateMessage = 0x40A;
// GetProfileIntA's answers of the partner for the value 0, and for "the
// value follows as a reply".
constexpr unsigned kPartnerIntZero = 0xEEEEEEEEu;
constexpr unsigned kPartnerIntInReply = 0xEEEEEEEFu;
constexpr ProcessLevelType kLogLink = ProcessLevelType(1);
constexpr ProcessLevelType kLogMessage = ProcessLevelType(4);
constexpr ProcessLevelType kLogSearch = ProcessLevelType(6);
} // namespace vx

class VXBASE_EXPORT KProcessIO {
public:
    // A message block, whose memory image is the wire format: 32-bit
    // little-endian fields, a header of 36 bytes, then the payload. The
    // fixed part counts 38 bytes (two belong to the payload area), so m_cbData
    // is the capacity + 38 and the payload area is the capacity + 2 bytes.
    // Blocks are made by InitPartner only; a received one comes from
    // vx::AcceptPartnerBlock.
    //
    // The address fields of the original are 32-bit values here that mean
    // nothing in another process: m_lpData holds the low half of the block's
    // address, m_Cursor the offset of the next byte from the block's start
    // (36 after Rewind), and m_Origin a token of the requester's process that
    // a reply copies and that comes back unchanged.
    //
    // Values follow one another without tags, so writer and reader agree per
    // ID on their order. Reading or writing past the capacity raises
    // VexalAssert("ProcessIO"); the copy then goes on only as far as the
    // block's own bytes, and what lies beyond reads as zero bytes.
    class VXBASE_EXPORT KData {
    public:
        ProcessIDType m_ID; // -1 a reply on the wire, -2 a reply taken over
        DWORD m_dwData;     // the ID again, for a receiver that does not open the block
        DWORD m_cbData;     // bytes sent: the whole block
        DWORD m_lpData;
        DWORD m_Origin;
        LONG m_Param1; // free for the message kind
        LONG m_Param2;
        LONG m_Capacity; // payload bytes that may be used
        DWORD m_Cursor;

        // Fills the header: ID, cbData = capacity + 38, parameters 0, the
        // origin token new (or copied from `origin`), cursor at the payload.
        // The block must hold capacity + 38 bytes.
        void Init(ProcessIDType id, int capacity, KData* origin);
        // Sets the cursor to the payload start. A receiver's first step.
        void Rewind();

        // Bytes a value takes in the payload: 4 for the integers, 8 for a
        // POINT or a double, 16 for a RECT, 6 for a float, length + 1 for a
        // string, 4 + the strings for a string array.
        static int GetSize(int value);
        static int GetSize(const long& value);
        static int GetSize(const unsigned long& value);
        static int GetSize(const double& value);
        static int GetSize(const POINT& value);
        static int GetSize(const RECT& value);
        static int GetSize(const float& value);
        static int GetSize(const CString& value);
        static int GetSize(const char* value); // null counts as ""
        static int GetSize(const CStringArray& value);

        // A long travels as 4 bytes. A float takes a slot of six bytes: the
        // value, then two zero bytes. A null text is written as "".
        void Write(int value);
        void Write(long value);
        void Write(const POINT& value);
        void Write(const RECT& value);
        void Write(double value);
        void Write(float value);
        void Write(const CString& value);
        void Write(const char* value);
        void Write(const CStringArray& value);
        void Write(const void* data, int size);

        // A long reads 4 bytes sign-extended, an unsigned long zero-extended.
        // A string array whose count cannot be in the block is an overrun.
        void Read(int& value);
        void Read(long& value);
        void Read(unsigned long& value);
        void Read(POINT& value);
        void Read(RECT& value);
        void Read(double& value);
        void Read(float& value);
        void Read(CString& value);
        void Read(CStringArray& value);
        void Read(void* data, int size);

        // The payload area and the whole block as bytes.
        char* Payload() { return reinterpret_cast<char*>(this) + 36; }
        const char* Bytes() const { return reinterpret_cast<const char*>(this); }

    private:
        // Room left before the capacity is passed by `size` more bytes; the
        // alarm fires when it is negative. Returns how many of them lie
        // within the block.
        long long Check(long long size, unsigned line);
    };

    // The watch thread: started by Init, it waits for the run flag, then
    // watches the partner's window every 500 ms and closes this program's
    // main window when the partner has gone.
    class VXBASE_EXPORT KClosePartnerThread {
    public:
        KClosePartnerThread();
        // Ends the thread without a log line (at the end of the process).
        ~KClosePartnerThread();
        KClosePartnerThread(const KClosePartnerThread&) = delete;
        KClosePartnerThread& operator=(const KClosePartnerThread&) = delete;

        // Starts the thread for a program of `type` with the run flag down
        // (a thread of an earlier Create is ended first). Returns 1.
        int Create(MainframeType type);
        // Raises (1) or lowers (0) the run flag; lowering ends the watch.
        void SetRun(int run);
        // Ends the thread and waits for it; the state goes back to that of
        // a thread never created. Does nothing if none runs.
        void Join();
        static unsigned long ThreadFunc(KClosePartnerThread* self);

        DWORD m_dwStatus = 0;         // STILL_ACTIVE (259) once created
        std::atomic<int> m_bIdle{1};  // 1 while the thread is not in its watch loop
        std::atomic<int> m_bRun{0};   // the run flag
        MainframeType m_Type = MainframeType(0);

    private:
        struct Private;
        std::unique_ptr<Private> d;
    };

    // --- start and state --------------------------------------------------------
    // The show command to start with: 3 (and m_Single) for "/SINGLE" or when
    // "Enable" is 0; 5 for "@@@project", 0 (hidden) for "@@project", storing
    // the project; 1 otherwise.
    static int GetStartState(const char* commandLine, CString* project);
    // Whether "AutoStart" of "PROCESS" is 1.
    static int AutoStart();
    // Brings the link up for this program and its frame: publishes the
    // frame, starts the watch thread, notes the classes, and, when started by
    // the partner (startState not 1), takes the partner's window from
    // "Partner". Returns 1, or 0 if the program runs alone.
    static int Init(MainframeType type, CWnd* frame, const char* exePath, int startState);
    // The window of a program (0: the partner): the known one, else a search
    // by title (and process name, in search mode 0). With startIfMissing the
    // partner is started when not found. Null if none.
    static HWND GetVxProg(MainframeType type, int startIfMissing, int forceSearch);
    // Brings the partner forward, starting it from m_ExePath (or
    // "HomeProgAT"/"HomeProgIT") if none runs. Returns its window, or null
    // after showing message 6708 or 6709.
    static HWND ActivatePartner(MainframeType type, int showCommand);
    // Hides this program's window if `hide`, and posts 0x40A with 223 to it.
    static int DeActivate(int hide);

    // --- messages ------------------------------------------------------------
    // A new block with the capacity size + 1000; null when the link is down,
    // the size is negative or the block would pass the window bus's limit.
    static KData* InitPartner(ProcessIDType id, int size, KData* origin);
    // Sends the block by WM_COPYDATA and returns the receiver's answer, after
    // any reply has arrived; 0 on failure.
    static int SendPartner(HWND target, KData* data);
    // Frees the request; with a non-zero `takeReply` returns the reply that
    // arrived (ID -2, rewound), else null.
    static KData* ExitPartner(KData* data, int takeReply);
    // A reply on the wire (ID -1) is copied and kept for ExitPartner; a reply
    // taken over (ID -2) is freed. Always 1.
    static int ClosePartner(KData* data);
    static int SendFunction(ProcessIDType id, int first, int second, int startIfMissing);
    static int SendStringArray(ProcessIDType id, CStringArray& strings, int first, int second, int startIfMissing);
    static int GetStringArray(ProcessIDType id, CStringArray& strings, int first, int second, int startIfMissing);

    // The partner's settings, through the partner while it runs, else from
    // its files on disk (its global file for scope 0, its project file for
    // any other).
    static CString GetProfileStringA(const char* section, const char* key, const char* defaultValue, int scope);
    static unsigned int GetProfileIntA(const char* section, const char* key, int defaultValue, int scope);
    static int WriteProfileStringA(const char* section, const char* key, const char* value, int scope);
    static int WriteProfileInt(const char* section, const char* key, int value, int scope);

    // A line of "VxProcess.log" if `level` is not above m_WriteLogState:
    // 1 if the level suppresses it, else whether the file could be opened.
    static int WriteLog(const char* text, ProcessIDType id, ProcessLevelType level);

    static int m_Active;
    static int m_Single;
    static int m_ExecuteTimeout;
    static int m_MessageTimeout;
    static ProcessLevelType m_WriteLogState;
    static HWND m_hProgWnd;
    static HWND m_hPartnerWnd;
    static KData* m_pReceiver;
    static int m_InReceiving;
    static CString m_ExePath;
    static CString m_Name_AT;
    static CString m_Name_IT;
    static CString m_Name1_AT;
    static CString m_Name1_IT;
    static const char* m_sTitleChars;
    static CString m_sPartnerClass;
    static KClosePartnerThread s_ClosePartner;
    static CArray<CWnd*, CWnd*> s_arWnd;
};

namespace vx {

// The block of a received WM_COPYDATA (its lParam), rewound, or null if it
// is no sound block: shorter than 38 bytes, longer than the bus carries,
// with m_cbData or the capacity disagreeing with its length. A refused
// block is logged and never read past.
VXBASE_EXPORT KProcessIO::KData* AcceptPartnerBlock(const COPYDATASTRUCT* data);

// Brings the link back to its state at load: the watch thread ended, the
// members at their initial values, the search mode unread. For tests and
// for a host that ends the link before it ends.
VXBASE_EXPORT void ResetPartnerLink();

} // namespace vx
