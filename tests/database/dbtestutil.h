// Helpers of the database tests: a temporary directory that goes away with
// the test, and a message box handler that records what would be shown.
#pragma once

#include "platform/windows/messagebox.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

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

} // namespace dbtest
