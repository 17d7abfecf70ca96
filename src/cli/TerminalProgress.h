// Progress on the command line: a one-line bar on stderr when it is a
// terminal, nothing in a pipe. Ctrl-C asks the running work to cancel; a
// second Ctrl-C ends the program at once.
#pragma once

#include <string>

#include "media/Progress.h"

namespace quillet::cli {

class TerminalProgress : public ProgressSink {
public:
    TerminalProgress();
    ~TerminalProgress() override;
    void setRange(int low, int high) override;
    void setMainText(const std::string& text) override;
    void setSecondaryText(const std::string& text) override;
    void step(int position) override;
    bool cancelled() const override;
    // Ends the bar's line (call before printing anything else).
    void finish();

private:
    void draw();
    bool tty_ = false;
    bool drawn_ = false;
    int low_ = 0, high_ = 0, position_ = 0;
    std::string main_, secondary_;
};

}  // namespace quillet::cli
