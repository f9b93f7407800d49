// vxhost as one program of the suite: the main frame of AT or IT, which
// publishes itself through KProcessIO::Init, answers the partner's messages
// (the library's IDs and a few of vxhost's own) and the library's queries.
//
//   vxhost::PartnerFrame frame(MainframeIT);
//   frame.Open("@@C:\\Projekte\\Demo", "/opt/vexal/");   // hidden: started by the partner
//   frame.Ready();                                       // "X" to "Partner"
//   vx::RunMessageLoop();                                // until the frame closes
//
// The tests of the link use the same frame on both sides.
#pragma once

#include <vxbase.h>

#include <functional>
#include <string>
#include <vector>

namespace vxhost {

// Messages of vxhost's own, beside the library's.
constexpr ProcessIDType kEcho = ProcessIDType(1000);      // a string array; the reply holds it as it came
constexpr ProcessIDType kAskBack = ProcessIDType(1001);   // the receiver asks the requester kQuestion, replies with the answer
constexpr ProcessIDType kQuestion = ProcessIDType(1002);  // reply: "answer from AT" or "answer from IT"
constexpr ProcessIDType kReport = ProcessIDType(1003);    // reply: command line, start state, project, visibility, partner
constexpr ProcessIDType kRelayBack = ProcessIDType(1004); // the receiver relays to the requester: a string array of
                                                          // section, key, value; it writes the value, reads it back
                                                          // as string and as int, and replies with both
constexpr ProcessIDType kQuit = ProcessIDType(1005);      // the receiver closes its frame
// A registered message of vxhost's own: wParam is a file mapping handle; the
// receiver writes the text at the block's start in capitals and answers the
// block's size (0 if it cannot map it).
constexpr const char* kUpperBlockMessage = "VXHOST_UPPER_BLOCK";

class PartnerFrame : public CMDIFrameWnd {
public:
    explicit PartnerFrame(MainframeType type);
    ~PartnerFrame() override;

    // How the frame answers the previews (vxbase-ui's part of the host).
    class PreviewHost {
    public:
        virtual ~PreviewHost() = default;
        // Draws a file into the device context that came with the preview
        // message (an HDC, as a number); true once drawn.
        virtual bool Paint(LPARAM dc, const char* path, MainframeType drawer) = 0;
        // Answers the library's request WM_USER + 6 with a code 0x50 to 0x53.
        virtual LRESULT Request(WPARAM code, LPARAM lParam, MainframeType drawer) = 0;
    };
    // Installs the host of the preview message this program answers (IT:
    // "VEXALIT_PREVIEW", AT: "VXW_PREVIEW") and of the library's requests;
    // without one the frame answers the message with 0 and a request for a
    // drawing with 1 (not drawn). Not owned.
    static void SetPreviewHost(PreviewHost* host);

    // Makes the frame titled with the program's stem (strings 6706 and
    // 6707), fills the host globals and starts the link with the start state
    // of `commandLine`, shown or hidden by it. Returns the start state.
    int Open(const char* commandLine, const char* exePath);
    // Writes "X" to "Partner": ready for the program that started this one.
    void Ready();
    // Destroys the frame and clears the host globals.
    void Close();
    MainframeType Type() const { return m_type; }

    // Where the frame's lines go; the default prints "[AT] ..." on stdout.
    std::function<void(const std::string&)> m_say;
    CString m_project = "C:\\Projekte\\Demo";
    CString m_commandLine;
    int m_startState = -1;
    std::vector<CString> m_messages; // texts of CommonMessage
    std::vector<CString> m_boxes;    // boxes shown for the partner
    int m_closeRequests = 0;
    int m_activations = 0; // IDs 1 and 222 received
    bool m_quitOnClose = true;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnClose() override;
    // A message of vxhost's own; the default answers the IDs above, 0 for
    // others.
    virtual LRESULT OnHostMessage(KProcessIO::KData& block, HWND from);
    void Say(const std::string& line);

private:
    LRESULT OnPartnerBlock(HWND from, const COPYDATASTRUCT* data);
    LRESULT AnswerQuery(WPARAM code, LPARAM lParam);
    LRESULT ReadProfile(KProcessIO::KData& block, HWND from);
    LRESULT WriteProfile(KProcessIO::KData& block);
    LRESULT ShowBox(KProcessIO::KData& block);
    LRESULT ReplyStrings(KProcessIO::KData& request, HWND to, CStringArray& strings);
    LRESULT UpperBlock(HANDLE block);
    LRESULT AnswerPreview(HANDLE block, LPARAM dc);

    MainframeType m_type;
    CString m_answerText;
};

// Points the program files at the suite's settings directory:
// "VXWIN55AT.INI", "VXWIN55IT.INI" and the project files "PROJEKTAT.INI",
// "PROJEKTIT.INI" next to "VEXAL55.INI". Call after vx::AttachLibrary.
void UseSuiteDirectoryForProgramFiles();
// The directory a program was started from (with "/" at its end), from its
// argv[0]; the executable's own directory when argv[0] has none.
std::string ProgramDirectory(const char* argv0);
// The program a file name stands for: AT or IT when it begins with them
// (in any case), else 0.
MainframeType ProgramOfFileName(const char* path);
// Pumps until the frame's loop ends (WM_QUIT) or `lifetimeMs` passed (0:
// no limit). Returns the exit code.
int RunPartnerLoop(int lifetimeMs);

// vxhost's entry for the suite's programs: "vxhost --as AT|IT [--demo]
// [COMMAND LINE]", or a program file named AT or IT (a link to vxhost).
// Returns false if argv asks for none; else runs it and stores its exit code.
bool PartnerMain(int argc, char** argv, int& exitCode);

} // namespace vxhost
